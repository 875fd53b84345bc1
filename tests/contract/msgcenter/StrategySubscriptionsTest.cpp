#include "StrategiesTest.h"

#include <memory>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using namespace Varnel_Fields;

class StrategySubscriptionsTest : public StrategiesTest {
protected:
    StrategySubscriptionsTest() { center->reg(&view); }

    /// A page's call for the messages of that id; any sub type but "1" ends it.
    void subscribe(RecordingView &of, const QVariant &id, const QVariant &subType = u"1"_qs)
    {
        EXPECT_CALL(host, QvPresenterClass_PutEvent(start.pid, testing::_)).RetiresOnSaturation();
        call("Vlx_subStrategyMsg_REQ", {u"u1"_qs, id, subType}, &of);
    }

    /// What the view gets of one custom message.
    QStringList received(RecordingView &of, const QVariantMap &row)
    {
        of.clear();
        answer(VeloxValues::MSEventStrategyCustomMsg, row);
        return textsOf(of.eventsAfterDraining());
    }

    static QVariantMap message(const QVariant &id, const QVariant &text)
    {
        return {{VeloxFields::strategyCustomMsgID, id}, {VeloxFields::strategyCustomMsg, text}};
    }

    const QString customInfo = u"on_vlxRcvCustomInfo"_qs;
    RecordingView view;
};

TEST_F(StrategySubscriptionsTest, CustomMessageIsTwoTextsAndNoEnvelope)
{
    subscribe(view, u"m1"_qs);
    log.clear();
    EXPECT_THAT(received(view, message(u"m1"_qs, u"{\"a\":1}"_qs)), ElementsAre(customInfo, u"m1"_qs, u"{\"a\":1}"_qs));
    EXPECT_THAT(received(view, message(u"m1"_qs, 1.5)), ElementsAre(customInfo, u"m1"_qs, u"1.5"_qs));
    EXPECT_THAT(received(view, {{VeloxFields::strategyCustomMsgID, u"m1"_qs}}),
                ElementsAre(customInfo, u"m1"_qs, QString()));
    EXPECT_THAT(received(view, message(u"m1"_qs, QVariantMap{{u"a"_qs, 1}})),
                ElementsAre(customInfo, u"m1"_qs, QString()));
    EXPECT_EQ(log.linesWith(u"parse"_qs).size(), 0);
}

TEST_F(StrategySubscriptionsTest, MessagesWithoutSubscribersAreDropped)
{
    subscribe(view, u"m1"_qs);
    for (const QString &id : {u"m2"_qs, u"M1"_qs, QString()})
        EXPECT_THAT(received(view, message(id, u"text"_qs)), IsEmpty());
}

TEST_F(StrategySubscriptionsTest, MessageWithoutAnIdReachesSubscribersOfTheEmptyId)
{
    subscribe(view, QVariant());
    EXPECT_THAT(received(view, {}), ElementsAre(customInfo, QString(), QString()));
}

TEST_F(StrategySubscriptionsTest, OnlySubTypeOneSubscribes)
{
    for (const QVariant &subType : {QVariant(u"0"_qs), QVariant(u"2"_qs), QVariant(u"01"_qs), QVariant(u" 1"_qs),
                                    QVariant(QString()), QVariant(), QVariant(true), QVariant(QVariantList{1})}) {
        subscribe(view, u"m1"_qs, subType);
        EXPECT_THAT(received(view, message(u"m1"_qs, u"x"_qs)), IsEmpty()) << qPrintable(subType.toString());
        subscribe(view, u"m1"_qs, 1);
        EXPECT_EQ(received(view, message(u"m1"_qs, u"x"_qs)).size(), 3);
        subscribe(view, u"m1"_qs, subType); // and takes away again
        EXPECT_THAT(received(view, message(u"m1"_qs, u"x"_qs)), IsEmpty()) << qPrintable(subType.toString());
    }
}

TEST_F(StrategySubscriptionsTest, SecondSubscriptionKeepsOneEntry)
{
    subscribe(view, u"m1"_qs);
    subscribe(view, u"m1"_qs);
    center->reg(&view); // even when it is registered twice
    EXPECT_THAT(received(view, message(u"m1"_qs, u"x"_qs)), ElementsAre(customInfo, u"m1"_qs, u"x"_qs));
    subscribe(view, u"m1"_qs, u"0"_qs);
    EXPECT_THAT(received(view, message(u"m1"_qs, u"x"_qs)), IsEmpty());
}

TEST_F(StrategySubscriptionsTest, ViewsAreServedInTheOrderOfTheirSubscription)
{
    RecordingView views[3];
    for (RecordingView &each : views)
        center->reg(&each);
    for (RecordingView *each : {&views[2], &views[0], &views[1]})
        subscribe(*each, u"m1"_qs);
    subscribe(views[0], u"m2"_qs);
    subscribe(views[0], u"m1"_qs); // keeps its place
    answer(VeloxValues::MSEventStrategyCustomMsg, message(u"m1"_qs, u"x"_qs));
    EXPECT_EQ(receivers(RecordingView::eventsOfAllViews()), (QList<const QCefView *>{&views[2], &views[0], &views[1]}));
    EXPECT_THAT(view.events(), IsEmpty());
    for (RecordingView &each : views)
        center->unReg(&each);
}

TEST_F(StrategySubscriptionsTest, AreEnteredAfterTheRequestWasSent)
{
    EXPECT_CALL(host, QvPresenterClass_PutEvent(start.pid, testing::_)).WillOnce([this] {
        answer(VeloxValues::MSEventStrategyCustomMsg, message(u"m1"_qs, u"too early"_qs));
    });
    call("Vlx_subStrategyMsg_REQ", {u"u1"_qs, u"m1"_qs, u"1"_qs}, &view);
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty());
    EXPECT_EQ(received(view, message(u"m1"_qs, u"x"_qs)).size(), 3);
}

TEST_F(StrategySubscriptionsTest, OutliveTheRegistrationAndTheQuoteSubscriptions)
{
    RecordingView other;
    center->reg(&other); // so that the registry is never empty
    subscribe(view, u"m1"_qs);
    center->unsubscribeAll(&view);
    EXPECT_EQ(received(view, message(u"m1"_qs, u"x"_qs)).size(), 3);
    center->unReg(&view);
    EXPECT_THAT(received(view, message(u"m1"_qs, u"x"_qs)), IsEmpty());
    center->reg(&view);
    EXPECT_EQ(received(view, message(u"m1"_qs, u"x"_qs)).size(), 3);
    center->unReg(&other);
}

TEST_F(StrategySubscriptionsTest, OfAViewThatIsGoneAreNeverFollowed)
{
    auto closing = std::make_unique<RecordingView>();
    subscribe(*closing, u"m1"_qs);
    closing.reset();
    subscribe(view, u"m1"_qs);
    EXPECT_THAT(received(view, message(u"m1"_qs, u"x"_qs)), ElementsAre(customInfo, u"m1"_qs, u"x"_qs));
}

TEST_F(StrategySubscriptionsTest, WithoutAViewAreIgnored)
{
    EXPECT_CALL(host, QvPresenterClass_PutEvent(start.pid, testing::_));
    call("Vlx_subStrategyMsg_REQ", {u"u1"_qs, u"m1"_qs, u"1"_qs}, nullptr);
    EXPECT_THAT(received(view, message(u"m1"_qs, u"x"_qs)), IsEmpty());
}

TEST_F(StrategySubscriptionsTest, MessagesOfTheBusThreadAreSentOnTheOwnersThread)
{
    subscribe(view, u"m1"_qs);
    BusThread bus;
    bus.run([this] { answer(VeloxValues::MSEventStrategyCustomMsg, message(u"m1"_qs, u"x"_qs)); });
    EXPECT_THAT(view.events(), IsEmpty());
    ASSERT_TRUE(view.waitForEvent(customInfo));
    EXPECT_EQ(view.events().first().thread, QThread::currentThread());
}

} // namespace
