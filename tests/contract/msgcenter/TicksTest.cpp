#include "SubscriptionsTest.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;

/// A value that reports when its text is made.
struct TextProbe {
    static int conversions;
    static std::function<void()> duringConversion;

    QString toText() const
    {
        ++conversions;
        if (duringConversion)
            duringConversion();
        return u"a probe"_qs;
    }
};
int TextProbe::conversions = 0;
std::function<void()> TextProbe::duringConversion;
Q_DECLARE_METATYPE(TextProbe)

namespace {

class TicksTest : public SubscriptionsTest {
protected:
    TicksTest() { QMetaType::registerConverter(&TextProbe::toText); }

    const QVariantMap probe{{u"probe"_qs, QVariant::fromValue(TextProbe())}};
};

TEST_F(TicksTest, WithoutARegisteredViewNothingHappens)
{
    subscribe(view, {u"S"_qs});
    log.clear();
    emitTick(u"S"_qs, quote);
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(TicksTest, AreTheBareQuoteAndLogNothing)
{
    subscribeRegistered(view, {u"S"_qs});
    log.clear();
    emitTick(u"S"_qs, {{u"名"_qs, u"浦江\"𝄞"_qs}, {u"bids"_qs, QVariantList{1.5, QVariant()}}, {u"uuid"_qs, 1}});
    emitTick(u"S"_qs, {});
    EXPECT_THAT(textsOf(view.events()),
                ElementsAre(tick, uR"({"bids":[1.5,null],"uuid":1,"名":"浦江\"𝄞"})"_qs, tick, u"{}"_qs));
    EXPECT_EQ(view.events().first().thread, QThread::currentThread());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(TicksTest, ReachOnlyTheViewsThatHoldTheSymbol)
{
    RecordingView other;
    subscribeRegistered(view, {u"A"_qs, u"B"_qs});
    subscribeRegistered(other, {u"B"_qs, u"C"_qs});
    EXPECT_THAT(ticksOf(view, u"A"_qs), ElementsAre(tick, quoteText));
    EXPECT_THAT(ticksOf(view, u"C"_qs), IsEmpty());
    EXPECT_THAT(ticksOf(view, u"nobody's"_qs), IsEmpty());
    EXPECT_THAT(other.eventNames(), ElementsAre(tick));
    EXPECT_THAT(ticksOf(view, u"B"_qs), ElementsAre(tick, quoteText));
    EXPECT_THAT(other.eventNames(), ElementsAre(tick, tick));
}

TEST_F(TicksTest, TextIsNotMadeWhenNobodyWantsIt)
{
    RecordingView unregistered;
    subscribe(unregistered, {u"S"_qs});
    subscribeRegistered(view, {u"A"_qs});
    emitTick(u"S"_qs, probe);
    EXPECT_EQ(TextProbe::conversions, 0);
    emitTick(u"A"_qs, probe);
    EXPECT_EQ(TextProbe::conversions, 1);
}

TEST_F(TicksTest, TextIsMadeOnceForAllViews)
{
    std::vector<RecordingView> views(10);
    for (RecordingView &each : views)
        subscribeRegistered(each, {u"S"_qs});
    emitTick(u"S"_qs, probe);
    EXPECT_EQ(TextProbe::conversions, 1);
    for (const RecordingView &each : views)
        EXPECT_EQ(textsOf(each.events()).last(), uR"({"probe":"a probe"})"_qs);
}

TEST_F(TicksTest, TextIsMadeWhileSubscriptionsCanChange)
{
    RecordingView leaving;
    subscribeRegistered(leaving, {u"S"_qs});
    subscribeRegistered(view, {u"S"_qs});
    leaving.clear();
    TextProbe::duringConversion = [&] { center->unsubscribeAll(&leaving); }; // would wait for ever under the lock
    emitTick(u"S"_qs, probe);
    EXPECT_THAT(textsOf(view.events()), ElementsAre(tick, uR"({"probe":"a probe"})"_qs));
    EXPECT_THAT(leaving.events(), IsEmpty());
}

TEST_F(TicksTest, SymbolsAreCaseSensitive)
{
    subscribeRegistered(view, {u"ABC"_qs, u"Ü"_qs});
    for (const QString &other : {u"abc"_qs, u"ABC "_qs, u"AB"_qs, QString(), u"U\u0308"_qs})
        EXPECT_THAT(ticksOf(view, other), IsEmpty()) << qPrintable(other);
    EXPECT_THAT(ticksOf(view, u"ABC"_qs), ElementsAre(tick, quoteText));
}

TEST_F(TicksTest, ReachViewsInTheOrderOfTheirAddresses)
{
    std::vector<std::unique_ptr<RecordingView>> views(20);
    std::generate(views.begin(), views.end(), std::make_unique<RecordingView>);
    QList<const QCefView *> expected;
    for (const auto &each : views)
        expected << each.get();
    std::sort(expected.begin(), expected.end(), std::less<>());

    // Registered and subscribed in the opposite order.
    std::sort(views.begin(), views.end(),
              [](const auto &a, const auto &b) { return std::greater<>()(a.get(), b.get()); });
    for (const auto &each : views)
        subscribeRegistered(*each, {u"S"_qs});
    RecordingView::clearAllViews();
    emitTick(u"S"_qs, quote);
    EXPECT_EQ(receivers(RecordingView::eventsOfAllViews()), expected);
}

TEST_F(TicksTest, ViewThatSubscribedButIsNotRegisteredGetsNothing)
{
    RecordingView other;
    subscribe(view, {u"S"_qs});
    subscribeRegistered(other, {u"S"_qs});
    EXPECT_THAT(ticksOf(view, u"S"_qs), IsEmpty());
    EXPECT_THAT(other.eventNames(), ElementsAre(tick));
}

TEST_F(TicksTest, SubscriptionsOutliveTheRegistration)
{
    RecordingView other;
    center->reg(&other); // so that the registry is never empty
    subscribeRegistered(view, {u"S"_qs});
    center->unReg(&view);
    EXPECT_THAT(ticksOf(view, u"S"_qs), IsEmpty());
    center->reg(&view);
    EXPECT_THAT(ticksOf(view, u"S"_qs), ElementsAre(tick, quoteText));
}

TEST_F(TicksTest, ReachAViewThatIsRegisteredTwiceOnceUnlikeOtherPushes)
{
    subscribeRegistered(view, {u"S"_qs});
    center->reg(&view);
    EXPECT_THAT(ticksOf(view, u"S"_qs), ElementsAre(tick, quoteText));
    view.clear();
    deliver(0x30001, {});
    EXPECT_THAT(view.eventNames(), ElementsAre(u"on_orderLoaded"_qs, u"on_orderLoaded"_qs));

    center->unReg(&view); // both entries go
    EXPECT_THAT(ticksOf(view, u"S"_qs), IsEmpty());
    deliver(0x30001, {});
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty());
}

TEST_F(TicksTest, OfAnotherThreadArriveOnTheOwnersThread)
{
    subscribeRegistered(view, {u"S"_qs});
    BusThread quotes;
    quotes.run([this] { emitTick(u"S"_qs, quote); });
    EXPECT_THAT(view.events(), IsEmpty());
    ASSERT_TRUE(view.waitForEvent(tick));
    EXPECT_EQ(view.events().first().thread, QThread::currentThread());
    EXPECT_THAT(textsOf(view.eventsAfterDraining()), ElementsAre(tick, quoteText));
}

TEST_F(TicksTest, OfAnotherThreadForAViewThatWentMeanwhileAreDropped)
{
    RecordingView other;
    auto closing = std::make_unique<RecordingView>();
    subscribeRegistered(other, {u"S"_qs});
    subscribeRegistered(*closing, {u"S"_qs});
    BusThread quotes;
    quotes.run([this] { emitTick(u"S"_qs, quote); });
    center->unReg(closing.get());
    closing.reset();
    ASSERT_TRUE(other.waitForEvent(tick));
}

TEST_F(TicksTest, AllArriveInOrderInAStormWhileOtherViewsComeAndGo)
{
    constexpr int count = 2000;
    subscribeRegistered(view, {u"S"_qs});
    EXPECT_CALL(host, CommonQuotaHandler_SubscribeQuota(QStringList{u"S"_qs}, true, 0)).WillRepeatedly(Return(0));

    // Made on this thread; the other thread only emits them.
    std::vector<QVariantMap> ticks;
    ticks.reserve(count);
    for (int i = 0; i < count; ++i)
        ticks.push_back({{u"n"_qs, i}});
    const QString symbol = u"S"_qs;
    BusThread quotes;
    quotes.post([&] {
        for (const QVariantMap &each : ticks)
            emitTick(symbol, each);
    });
    const auto seen = [this] { return view.events().size(); };
    for (int before = 0; before < count; before = seen()) {
        RecordingView passing;
        center->reg(&passing);
        center->subscribe(&passing, u"u1"_qs, {symbol});
        ASSERT_TRUE(view.waitForEvents(before + 1));
        center->unsubscribeAll(&passing);
        center->unReg(&passing);
    }
    quotes.wait();
    const QList<ViewEvent> all = view.eventsAfterDraining();
    ASSERT_EQ(all.size(), count);
    for (int i = 0; i < count; ++i)
        EXPECT_EQ(all.at(i).arguments, QVariantList{uR"({"n":%1})"_qs.arg(i)});
}

} // namespace
