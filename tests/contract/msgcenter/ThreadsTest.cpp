#include "StrategiesTest.h"

#include "KLineMessages.h"
#include "ThreadLatch.h"
#include "ThreadState.h"
#include "dataservice/DataProcess.h"

#include <QThread>

#include <atomic>

using testing::_;
using testing::ElementsAre;
using testing::Return;
using testing::UnorderedElementsAre;

namespace {

using namespace Varnel_Fields;

/// What may be called from several threads, or while the message center is still at something.
class ThreadsTest : public StrategiesTest {
protected:
    /// The bus answers a request for candles with one, on the thread that asks.
    void expectCandlesAskedFor(const QThread *thread)
    {
        EXPECT_CALL(host, QvPresenterClass_sendRequest_Sync(isKLineRequest(start.pid, 1), _))
            .WillOnce([thread](const MessageRecord &, QVariant &reply) {
                EXPECT_EQ(QThread::currentThread(), thread);
                reply = QVariantList{QVariantMap{{u"close"_qs, 7.25}}};
                return 0;
            });
    }

    BusThread other;
};

TEST_F(ThreadsTest, CandlesCanBeWaitedForOnAnotherThread)
{
    expectCandlesAskedFor(other.qtThread());
    int status = -1;
    QList<QVariantMap> candles;
    // The owning thread waits here: had it a part in this, the test would never end.
    other.run(
        [&] { status = center->syncRequestKLineData(kLineSymbol, kLineFrom, kLineTo, MinuteKLinePeriod, candles); });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(candles, (QList<QVariantMap>{{{u"close"_qs, 7.25}}}));
}

TEST_F(ThreadsTest, DataServiceCanBeAskedForCandlesOnAnotherThread)
{
    expectCandlesAskedFor(other.qtThread());
    QString reply;
    other.run([&] {
        reply = DataProcess::instance()->processKLineData(u"u1"_qs, kLineSymbol, kLineFrom, kLineTo, MinuteKLinePeriod);
    });
    EXPECT_EQ(reply, successReply(uR"([{"close":7.25}])"_qs));
}

TEST_F(ThreadsTest, CandlesCanBeWaitedForByTwoThreadsAtOnce)
{
    ThreadLatch asked;
    ThreadLatch answered;
    EXPECT_CALL(host, QvPresenterClass_sendRequest_Sync(_, _))
        .WillOnce([&] {
            asked.open();
            answered.wait();
            return 3;
        })
        .WillOnce(Return(4));
    int first = 0;
    QList<QVariantMap> candles;
    other.post([&] {
        QList<QVariantMap> ofTheOther;
        first = center->syncRequestKLineData(kLineSymbol, kLineFrom, kLineTo, MinuteKLinePeriod, ofTheOther);
    });
    asked.wait();
    EXPECT_EQ(center->syncRequestKLineData(kLineSymbol, kLineFrom, kLineTo, MinuteKLinePeriod, candles), 4);
    answered.open();
    other.wait();
    EXPECT_EQ(first, 3);
}

TEST_F(ThreadsTest, StrategyMessagesCanBeSubscribedToByTwoThreadsAtOnce)
{
    constexpr int count = 2000;
    EXPECT_CALL(host, QvPresenterClass_PutEvent(start.pid, _)).Times(testing::AnyNumber());
    RecordingView view;
    center->reg(&view);
    // Each comes back to what it subscribed to, so that the table of subscriptions grows and shrinks.
    const auto subscribe = [&](const QString &prefix) {
        for (int i = 0; i < count; ++i) {
            const QString id = prefix + QString::number(i);
            center->Vlx_subStrategyMsg_REQ({u"u1"_qs, id, u"1"_qs}, &view);
            if (i % 2 != 0)
                center->Vlx_subStrategyMsg_REQ({u"u1"_qs, id, u"0"_qs}, &view);
        }
    };
    other.post([&] { subscribe(u"a"_qs); });
    subscribe(u"b"_qs);
    other.wait();
    for (const QString &prefix : {u"a"_qs, u"b"_qs}) {
        for (int i = 0; i < count; ++i) {
            const QString id = prefix + QString::number(i);
            answer(VeloxValues::MSEventStrategyCustomMsg,
                   {{VeloxFields::strategyCustomMsgID, id}, {VeloxFields::strategyCustomMsg, u"x"_qs}});
        }
    }
    EXPECT_EQ(view.events().size(), count); // one for each that was not ended
}

TEST_F(ThreadsTest, StrategySubscriptionOfAnotherThreadWaitsForTheMessageThatIsBeingSent)
{
    if (!threadStatesCanBeRead)
        GTEST_SKIP() << "only Linux says in /proc whether a thread sleeps";
    RecordingView view;
    center->reg(&view);
    ThreadLatch requested;
    EXPECT_CALL(host, QvPresenterClass_PutEvent(start.pid, _)).WillOnce(Return()).WillOnce([&] { requested.open(); });
    center->Vlx_subStrategyMsg_REQ({u"u1"_qs, u"m1"_qs, u"1"_qs}, &view);

    int thread = 0;
    other.run([&] { thread = thisThread(); });
    std::atomic<bool> entered{false};
    bool enteredMeanwhile = false;
    view.whileBroadcasting([&] {
        view.whileBroadcasting({});
        other.post([&] {
            center->Vlx_subStrategyMsg_REQ({u"u1"_qs, u"m2"_qs, u"1"_qs}, &view);
            entered = true;
        });
        requested.wait();
        for (bool waits = false; !waits && !enteredMeanwhile;) {
            waits = threadSleeps(thread); // asked first: it sleeps after that, too
            enteredMeanwhile = entered;
        }
    });
    answer(VeloxValues::MSEventStrategyCustomMsg, {{VeloxFields::strategyCustomMsgID, u"m1"_qs}});
    EXPECT_FALSE(enteredMeanwhile);
    other.wait();
    answer(VeloxValues::MSEventStrategyCustomMsg, {{VeloxFields::strategyCustomMsgID, u"m2"_qs}});
    EXPECT_EQ(view.events().size(), 2);
}

TEST_F(ThreadsTest, RecordThatComesWhileItsBatchIsPushedGoesIntoTheNext)
{
    EXPECT_CALL(host, VarnelEntrustReportGen_fillLineData(_, _, _, _, false)).Times(2).WillRepeatedly(Return(true));
    EXPECT_CALL(host, VarnelDealReportGen_fillLineData(_, _, _, _, false)).Times(2).WillRepeatedly(Return(true));
    RecordingView view;
    center->reg(&view);
    int toCome = 2;
    // A batch that was still locked would wait here for ever.
    view.whileBroadcasting([&] {
        if (toCome-- > 0)
            deliver(view.eventNames().last() == u"on_entrustUpdate"_qs ? orderEvent : executionEvent, {});
    });
    deliver(orderEvent, {});
    deliver(executionEvent, {});
    ASSERT_TRUE(view.waitForEvents(4));
    EXPECT_THAT(view.eventNames(), UnorderedElementsAre(u"on_entrustUpdate"_qs, u"on_executionUpdate"_qs,
                                                        u"on_entrustUpdate"_qs, u"on_executionUpdate"_qs));
    for (const ViewEvent &push : view.events())
        EXPECT_EQ(QJsonDocument::fromJson(push.arguments.first().toString().toUtf8()).array().size(), 1);
}

/// Nothing is started yet when the test begins.
class StartTest : public HostTest {};

TEST_F(StartTest, EventThatComesWithTheFirstSubscriptionIsCollected)
{
    HostStart start;
    start.dataDispatchers = 0;
    expectStart(start);
    EXPECT_CALL(host, VarnelEntrustReportGen_fillLineData(_, _, _, _, false)).WillOnce(Return(true));
    EXPECT_CALL(host, VarnelDealReportGen_fillLineData(_, _, _, _, false)).WillOnce(Return(true));
    RecordingView view;
    // The address is asked for to subscribe with.
    EXPECT_CALL(host, QvPresenterClass_pluginPid())
        .WillOnce([&] {
            static_cast<WebMsgCenter *>(HostBus::presenter().presenter)->reg(&view);
            for (const int event : {orderEvent, executionEvent})
                HostBus::deliverEvent(QString(), event, packedRow({}));
            return start.pid;
        })
        .RetiresOnSaturation();
    WebMsgCenter::instance();
    ASSERT_TRUE(view.waitForEvents(2));
    EXPECT_THAT(view.eventNames(), ElementsAre(u"on_entrustUpdate"_qs, u"on_executionUpdate"_qs));
}

} // namespace
