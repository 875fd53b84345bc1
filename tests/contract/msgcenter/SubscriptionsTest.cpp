#include "SubscriptionsTest.h"

#include <chrono>
#include <future>
#include <memory>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;

namespace {

TEST_F(SubscriptionsTest, QuoteHandlerIsAskedBeforeTheBookkeeping)
{
    center->reg(&view);
    const QStringList symbols{u"600000.SH"_qs, u"000001.SZ"_qs};
    EXPECT_CALL(host, CommonQuotaHandler_SubscribeQuota(symbols, true, 0)).WillOnce([&] {
        emitTick(u"600000.SH"_qs, quote); // comes too early: the view does not hold the symbol yet
        EXPECT_THAT(textsOf(view.events()), IsEmpty());
        EXPECT_THAT(logged(), IsEmpty());
        return 0;
    });
    center->subscribe(&view, u"u1"_qs, symbols);
    EXPECT_THAT(textsOf(view.events()), ElementsAre(u"Sub_subscribe_RES"_qs, bareReply()));
    EXPECT_THAT(logged(), ElementsAre(logText("WebMsgCenter::subscribe", "quota truck", symbols)));
    for (const QString &symbol : symbols)
        EXPECT_THAT(ticksOf(view, symbol), ElementsAre(tick, quoteText));
}

TEST_F(SubscriptionsTest, ResultOfTheQuoteHandlerIsNotLookedAt)
{
    center->reg(&view);
    EXPECT_CALL(host, CommonQuotaHandler_SubscribeQuota(QStringList{u"S"_qs}, true, 0)).WillOnce(Return(-1));
    center->subscribe(&view, u"u1"_qs, {u"S"_qs});
    EXPECT_THAT(textsOf(view.events()), ElementsAre(u"Sub_subscribe_RES"_qs, bareReply()));
    EXPECT_THAT(ticksOf(view, u"S"_qs), ElementsAre(tick, quoteText));
}

TEST_F(SubscriptionsTest, SymbolHeldAlreadyIsAskedForAgainAndStaysOnce)
{
    subscribeRegistered(view, {u"S"_qs, u"S"_qs});
    subscribe(view, {u"S"_qs});
    EXPECT_THAT(ticksOf(view, u"S"_qs), ElementsAre(tick, quoteText));

    view.clear();
    center->unsubscribe(&view, u"u2"_qs, {u"S"_qs});
    EXPECT_THAT(textsOf(view.events()), ElementsAre(u"UnSub_subscribe_RES"_qs, bareReply(u"u2"_qs)));
    EXPECT_THAT(ticksOf(view, u"S"_qs), IsEmpty());
}

TEST_F(SubscriptionsTest, UnsubscribingTakesOnlyWhatIsNamed)
{
    subscribeRegistered(view, {u"A"_qs, u"B"_qs, u"C"_qs});
    log.clear();
    center->unsubscribe(&view, u"u1"_qs, {u"A"_qs, u"C"_qs, u"never held"_qs, u"b"_qs});
    EXPECT_THAT(logged(), ElementsAre(u"WebMsgCenter::unsubscribe"_qs));
    EXPECT_THAT(ticksOf(view, u"A"_qs), IsEmpty());
    EXPECT_THAT(ticksOf(view, u"B"_qs), ElementsAre(tick, quoteText));
    EXPECT_THAT(ticksOf(view, u"C"_qs), IsEmpty());
}

TEST_F(SubscriptionsTest, UnsubscribingAnUnknownSymbolIsAnswered)
{
    center->unsubscribe(&view, u"u1"_qs, {u"S"_qs});
    center->unsubscribe(&view, u"u2"_qs, {});
    center->unsubscribeAll(&view, u"u3"_qs);
    EXPECT_THAT(textsOf(view.events()),
                ElementsAre(u"UnSub_subscribe_RES"_qs, bareReply(), u"UnSub_subscribe_RES"_qs, bareReply(u"u2"_qs),
                            u"UnSub_subscribeAll_RES"_qs, bareReply(u"u3"_qs)));
}

TEST_F(SubscriptionsTest, UnsubscribingAllOnACallIsAnswered)
{
    subscribeRegistered(view, {u"A"_qs, u"B"_qs});
    log.clear();
    center->unsubscribeAll(&view, u"u1"_qs);
    EXPECT_THAT(textsOf(view.events()), ElementsAre(u"UnSub_subscribeAll_RES"_qs, bareReply()));
    EXPECT_THAT(logged(), ElementsAre(u"WebMsgCenter::unsubscribeAll"_qs));
    EXPECT_THAT(ticksOf(view, u"A"_qs), IsEmpty());
    EXPECT_THAT(ticksOf(view, u"B"_qs), IsEmpty());
}

TEST_F(SubscriptionsTest, UnsubscribingAllForTheHostIsSilentForThePage)
{
    RecordingView other;
    subscribeRegistered(view, {u"A"_qs});
    subscribeRegistered(other, {u"A"_qs});
    log.clear();
    center->unsubscribeAll(&view);
    EXPECT_THAT(textsOf(view.eventsAfterDraining()), IsEmpty());
    EXPECT_THAT(logged(), ElementsAre(logText("WebMsgCenter::unsubscribeAll",
                                              static_cast<const void *>(static_cast<const VarnelCefView *>(&view)))));
    EXPECT_THAT(ticksOf(view, u"A"_qs), IsEmpty());
    EXPECT_THAT(ticksOf(other, u"A"_qs), ElementsAre(tick, quoteText));
}

TEST_F(SubscriptionsTest, UnsubscribingAllForTheHostNeverFollowsThePointer)
{
    auto closed = std::make_unique<RecordingView>();
    subscribe(*closed, {u"A"_qs});
    VarnelCefView *const stale = closed.get();
    closed.reset();
    log.clear();
    center->unsubscribeAll(stale);
    EXPECT_THAT(logged(), ElementsAre(logText("WebMsgCenter::unsubscribeAll", static_cast<const void *>(stale))));
}

TEST_F(SubscriptionsTest, WithoutAViewTheHostIsNotAskedAndNothingIsAnswered)
{
    center->reg(&view);
    center->subscribe(nullptr, u"u1"_qs, {u"S"_qs});
    center->unsubscribe(nullptr, u"u1"_qs, {u"S"_qs});
    center->unsubscribeAll(nullptr, u"u1"_qs);
    EXPECT_THAT(logged(), ElementsAre(u"WebMsgCenter::subscribe nullptr"_qs, u"WebMsgCenter::unsubscribe nullptr"_qs,
                                      u"WebMsgCenter::unsubscribeAll nullptr"_qs));
    log.clear();
    center->unsubscribeAll(nullptr);
    ASSERT_EQ(logged().size(), 1);
    EXPECT_TRUE(logged().first().startsWith(u"WebMsgCenter::unsubscribeAll "_qs)) << qPrintable(logged().first());
    EXPECT_THAT(RecordingView::eventsOfAllViews(), IsEmpty());
}

TEST_F(SubscriptionsTest, RepliesGoToTheCallingViewOnlyRegisteredOrNot)
{
    RecordingView other;
    center->reg(&other);
    subscribe(view, {u"S"_qs});
    center->unsubscribe(&view, u"u1"_qs, {});
    center->unsubscribeAll(&view, u"u1"_qs);
    EXPECT_THAT(view.eventNames(), ElementsAre(u"UnSub_subscribe_RES"_qs, u"UnSub_subscribeAll_RES"_qs));
    EXPECT_THAT(other.eventsAfterDraining(), IsEmpty());
    EXPECT_EQ(view.events().first().thread, QThread::currentThread());
}

TEST_F(SubscriptionsTest, ListsAreTakenAsTheyAre)
{
    const QString huge(1 << 20, u'x');
    subscribeRegistered(view, {});
    subscribe(view, {QString()});
    subscribe(view, {u" S "_qs, u"S,T"_qs, huge});
    EXPECT_THAT(ticksOf(view, QString()), ElementsAre(tick, quoteText));
    EXPECT_THAT(ticksOf(view, u"S"_qs), IsEmpty());
    EXPECT_THAT(ticksOf(view, u" S "_qs), ElementsAre(tick, quoteText));
    EXPECT_THAT(ticksOf(view, u"S,T"_qs), ElementsAre(tick, quoteText));
    EXPECT_THAT(ticksOf(view, huge), ElementsAre(tick, quoteText));
}

TEST_F(SubscriptionsTest, AnyUuidComesBackUnchanged)
{
    const QString hostile = u"\"\\\n\u0001\u0000𝄞</script>%1"_qs;
    center->unsubscribe(&view, hostile, {});
    center->unsubscribeAll(&view, QString());
    center->unsubscribe(&view, QChar(0xD834), {}); // half of a pair: JSON can write it only so
    EXPECT_THAT(textsOf(view.events()),
                ElementsAre(u"UnSub_subscribe_RES"_qs, bareReply(uR"(\"\\\n\u0001\u0000𝄞</script>%1)"_qs),
                            u"UnSub_subscribeAll_RES"_qs, bareReply(QString()), u"UnSub_subscribe_RES"_qs,
                            bareReply(uR"(\ud834)"_qs)));
}

TEST_F(SubscriptionsTest, RepliesComeAfterTheLogLineAndWithoutTheLock)
{
    RecordingView other;
    QStringList lines;
    int replies = 0;
    view.whileBroadcasting([&] {
        ++replies;
        lines = logged();
        // A host may do this on another thread; it must not wait for this reply.
        const auto clearing = std::async(std::launch::async, [&] { center->unsubscribeAll(&other); });
        EXPECT_EQ(clearing.wait_for(std::chrono::seconds(5)), std::future_status::ready);
    });
    EXPECT_CALL(host, CommonQuotaHandler_SubscribeQuota(QStringList{u"S"_qs}, true, 0)).WillOnce(Return(0));
    center->subscribe(&view, u"u1"_qs, {u"S"_qs});
    EXPECT_THAT(lines, ElementsAre(logText("WebMsgCenter::subscribe", "quota truck", QStringList{u"S"_qs})));
    log.clear();
    center->unsubscribe(&view, u"u1"_qs, {u"S"_qs});
    EXPECT_THAT(lines, ElementsAre(u"WebMsgCenter::unsubscribe"_qs));
    log.clear();
    center->unsubscribeAll(&view, u"u1"_qs);
    EXPECT_THAT(lines, ElementsAre(u"WebMsgCenter::unsubscribeAll"_qs));
    EXPECT_EQ(replies, 3);
}

} // namespace
