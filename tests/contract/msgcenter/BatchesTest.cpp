#include "EventsTest.h"

#include <QJsonArray>
#include <QTimer>

using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using namespace Tessar_Fields;

const QString entrustUpdate = u"on_entrustUpdate"_qs;
const QString executionUpdate = u"on_executionUpdate"_qs;

const QString mark = u"mark"_qs; ///< what a record shows in its first cell

QVariantMap order(const QVariant &id, const QVariant &shown)
{
    return {{Security::orderID, id}, {mark, shown}};
}

QVariantMap execution(const QVariant &id, const QVariant &shown)
{
    return {{Security::execID, id}, {Security::orderID, u"one order"_qs}, {mark, shown}};
}

/// The report generators put the mark into the first cell, the time.
bool fillMark(const QVariantMap &record, QMap<int, QVariantMap> &lineData)
{
    lineData[0] = {{u"0"_qs, record.value(mark)}};
    return true;
}

/// The marks of the records of a push.
QVariantList marksOf(const ViewEvent &event, const QString &timeKey)
{
    EXPECT_EQ(event.arguments.size(), 1);
    EXPECT_EQ(event.arguments.value(0).userType(), int(QMetaType::QString));
    const QJsonDocument document = QJsonDocument::fromJson(event.arguments.value(0).toString().toUtf8());
    EXPECT_TRUE(document.isArray());
    QVariantList marks;
    const QJsonArray records = document.array();
    for (const QJsonValue &record : records)
        marks << record.toObject().value(timeKey).toObject().value(u"displayRole"_qs).toVariant();
    return marks;
}

QVariantList ordersOf(const ViewEvent &event)
{
    EXPECT_EQ(event.name, entrustUpdate);
    return marksOf(event, u"entrustTime"_qs);
}

QVariantList executionsOf(const ViewEvent &event)
{
    EXPECT_EQ(event.name, executionUpdate);
    return marksOf(event, u"dealTime"_qs);
}

class BatchesTest : public EventsTest {
protected:
    void expectOrders(int count)
    {
        EXPECT_CALL(host, VarnelEntrustReportGen_fillLineData(_, IsEmpty(), testing::SizeIs(22), _, false))
            .Times(count)
            .WillRepeatedly(testing::WithArgs<0, 1>(fillMark));
    }

    void expectExecutions(int count)
    {
        EXPECT_CALL(host, VarnelDealReportGen_fillLineData(_, IsEmpty(), testing::SizeIs(16), _, false))
            .Times(count)
            .WillRepeatedly(testing::WithArgs<0, 1>(fillMark));
    }

    bool invoke(const char *method) { return QMetaObject::invokeMethod(center, method); }
};

TEST_F(BatchesTest, LatestRecordStandsWhereItsOrderFirstCame)
{
    expectOrders(3);
    deliver(orderEvent, order(u"A"_qs, 1));
    deliver(orderEvent, order(u"B"_qs, 2));
    deliver(orderEvent, order(u"A"_qs, 3));
    EXPECT_THAT(view.events(), IsEmpty());
    log.clear();
    ASSERT_TRUE(view.waitForEvent(entrustUpdate));
    EXPECT_EQ(ordersOf(view.events().first()), (QVariantList{3, 2}));
    EXPECT_EQ(view.eventsAfterDraining().size(), 1);
    EXPECT_EQ(view.events().first().thread, QThread::currentThread());
    EXPECT_THAT(logged(), ElementsAre(u"WebMsgCenter::slotEntrustTimeout 2 2"_qs));
}

TEST_F(BatchesTest, RecordsAreTheWholePackagedOnes)
{
    expectOrders(1);
    deliver(orderEvent, order(u"A"_qs, u"09:30"_qs));
    ASSERT_TRUE(view.waitForEvent(entrustUpdate));
    const QString text = view.events().first().arguments.first().toString();
    EXPECT_TRUE(text.startsWith(uR"([{"dealAmount":{"displayRole":null,"userRole":null},)"_qs)) << qPrintable(text);
    EXPECT_TRUE(text.contains(uR"("entrustTime":{"displayRole":"09:30","userRole":null},)"_qs)) << qPrintable(text);
    EXPECT_EQ(QJsonDocument::fromJson(text.toUtf8()).array().first().toObject().size(), 22);
}

TEST_F(BatchesTest, ThreeUpdatesOfOneOrderAreOneRecord)
{
    expectOrders(3);
    for (int i = 1; i <= 3; ++i)
        deliver(orderEvent, order(u"A"_qs, i));
    ASSERT_TRUE(view.waitForEvent(entrustUpdate));
    EXPECT_EQ(ordersOf(view.events().first()), QVariantList{3});
}

TEST_F(BatchesTest, BothOrderEventsShareABatchAndBothExecutionEventsTheOther)
{
    expectOrders(2);
    expectExecutions(3);
    deliver(orderEvent, order(u"A"_qs, 1));
    deliver(executionEvent, execution(u"x"_qs, 2));
    deliver(changedOrderEvent, order(u"B"_qs, 3));
    deliver(strategyExecutionEvent, execution(u"y"_qs, 4));
    deliver(strategyExecutionEvent, execution(u"x"_qs, 5));
    log.clear();
    ASSERT_TRUE(view.waitForEvents(2));
    EXPECT_EQ(ordersOf(view.events().at(0)), (QVariantList{1, 3}));
    EXPECT_EQ(executionsOf(view.events().at(1)), (QVariantList{5, 4}));
    EXPECT_EQ(view.eventsAfterDraining().size(), 2);
    EXPECT_THAT(logged(),
                ElementsAre(u"WebMsgCenter::slotEntrustTimeout 2 2"_qs, u"WebMsgCenter::slotExecutionTimeout 2 2"_qs));
}

TEST_F(BatchesTest, RecordsWithoutAnIdCollapseIntoOne)
{
    expectOrders(5);
    expectExecutions(2);
    deliver(orderEvent, {{mark, 1}});
    deliver(orderEvent, order(u"A"_qs, 2));
    deliver(orderEvent, order(QString(), 3));
    deliver(orderEvent, order(QVariantMap{{u"no"_qs, u"text"_qs}}, 4));
    deliver(orderEvent, order(QVariant(), 5));
    deliver(executionEvent, {{Security::orderID, u"A"_qs}, {mark, 6}}); // keyed by its own id only
    deliver(executionEvent, {{Security::orderID, u"B"_qs}, {mark, 7}});
    ASSERT_TRUE(view.waitForEvents(2));
    EXPECT_EQ(ordersOf(view.events().at(0)), (QVariantList{5, 2}));
    EXPECT_EQ(executionsOf(view.events().at(1)), QVariantList{7});
}

TEST_F(BatchesTest, IdsAreComparedAsTextsInTheirCase)
{
    expectOrders(5);
    deliver(orderEvent, order(u"a"_qs, 1));
    deliver(orderEvent, order(u"A"_qs, 2));
    deliver(orderEvent, order(7, 3));
    deliver(orderEvent, order(u"7"_qs, 4));
    deliver(orderEvent, order(u"07"_qs, 5));
    ASSERT_TRUE(view.waitForEvent(entrustUpdate));
    EXPECT_EQ(ordersOf(view.events().first()), (QVariantList{1, 2, 4, 5}));
}

TEST_F(BatchesTest, WindowIsNotExtendedByLaterEvents)
{
    // The late event comes three quarters into the window. A window that it extended would end after the sentinel.
    // Timers run out in the order of their times: a stalled machine may hide an extended window, but it cannot make
    // this fail.
    expectOrders(2);
    QTimer late;
    QTimer sentinel;
    QStringList sequence;
    QObject::connect(&late, &QTimer::timeout, &late, [] { deliver(changedOrderEvent, order(u"B"_qs, 2)); });
    QObject::connect(&sentinel, &QTimer::timeout, &sentinel, [&] { sequence = view.eventNames(); });
    for (QTimer *timer : {&late, &sentinel}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    late.start(150);
    deliver(orderEvent, order(u"A"_qs, 1));
    sentinel.start(300);
    ASSERT_TRUE(spinUntil([&] { return !sentinel.isActive(); }));
    EXPECT_THAT(sequence, ElementsAre(entrustUpdate));
    EXPECT_EQ(ordersOf(view.events().first()), (QVariantList{1, 2}));
}

TEST_F(BatchesTest, WindowDoesNotStartAnotherWindow)
{
    // A timer that went on would run out before the sentinel, which starts later and takes longer.
    expectOrders(1);
    expectExecutions(1);
    deliver(orderEvent, order(u"A"_qs, 1));
    deliver(executionEvent, execution(u"x"_qs, 2));
    ASSERT_TRUE(view.waitForEvents(2));
    QTimer sentinel;
    sentinel.setSingleShot(true);
    sentinel.setTimerType(Qt::PreciseTimer);
    sentinel.start(300);
    ASSERT_TRUE(spinUntil([&] { return !sentinel.isActive(); }));
    EXPECT_THAT(view.eventNames(), ElementsAre(entrustUpdate, executionUpdate));
}

TEST_F(BatchesTest, NextWindowStartsEmpty)
{
    expectOrders(3);
    deliver(orderEvent, order(u"A"_qs, 1));
    deliver(orderEvent, order(u"B"_qs, 2));
    ASSERT_TRUE(view.waitForEvents(1));
    deliver(orderEvent, order(u"B"_qs, 3));
    ASSERT_TRUE(view.waitForEvents(2));
    EXPECT_EQ(ordersOf(view.events().at(0)), (QVariantList{1, 2}));
    EXPECT_EQ(ordersOf(view.events().at(1)), QVariantList{3});
}

TEST_F(BatchesTest, FlushWithNothingPendingPushesAnEmptyList)
{
    ASSERT_TRUE(invoke("slotEntrustTimeout"));
    ASSERT_TRUE(invoke("slotExecutionTimeout"));
    EXPECT_THAT(textsOf(view.events()), ElementsAre(entrustUpdate, u"[]"_qs, executionUpdate, u"[]"_qs));
    EXPECT_THAT(logged(),
                ElementsAre(u"WebMsgCenter::slotEntrustTimeout 0 0"_qs, u"WebMsgCenter::slotExecutionTimeout 0 0"_qs));
}

TEST_F(BatchesTest, WindowWhoseBatchWasFlushedEarlyEndsWithAnEmptyList)
{
    expectOrders(1);
    expectExecutions(1);
    deliver(orderEvent, order(u"A"_qs, 1));
    deliver(executionEvent, execution(u"x"_qs, 2));
    ASSERT_TRUE(invoke("slotEntrustTimeout")); // leaves the executions alone
    ASSERT_EQ(view.events().size(), 1);
    EXPECT_EQ(ordersOf(view.events().at(0)), QVariantList{1});
    ASSERT_TRUE(view.waitForEvents(3));
    EXPECT_EQ(ordersOf(view.events().at(1)), QVariantList());
    EXPECT_EQ(executionsOf(view.events().at(2)), QVariantList{2});
}

TEST_F(BatchesTest, WindowsCanBeStartedByName)
{
    ASSERT_TRUE(invoke("AsyncStartEntrustTimer"));
    ASSERT_TRUE(invoke("AsyncStartExecutionTimer"));
    EXPECT_THAT(view.events(), IsEmpty());
    ASSERT_TRUE(view.waitForEvents(2));
    EXPECT_THAT(textsOf(view.events()), ElementsAre(entrustUpdate, u"[]"_qs, executionUpdate, u"[]"_qs));
}

TEST_F(BatchesTest, WindowsCanBeStartedByNameFromAnotherThread)
{
    BusThread bus;
    bus.run(
        [this] { EXPECT_TRUE(QMetaObject::invokeMethod(center, "AsyncStartExecutionTimer", Qt::QueuedConnection)); });
    ASSERT_TRUE(view.waitForEvent(executionUpdate));
    EXPECT_EQ(view.events().first().thread, QThread::currentThread());
    EXPECT_THAT(log.linesOfType(QtWarningMsg), IsEmpty());
}

TEST_F(BatchesTest, EventsThatWereDroppedAreNotPending)
{
    center->unReg(&view);
    deliver(orderEvent, order(u"A"_qs, 1));
    deliver(executionEvent, execution(u"x"_qs, 1));
    center->reg(&view);
    ASSERT_TRUE(invoke("slotEntrustTimeout"));
    ASSERT_TRUE(invoke("slotExecutionTimeout"));
    EXPECT_THAT(textsOf(view.events()), ElementsAre(entrustUpdate, u"[]"_qs, executionUpdate, u"[]"_qs));
}

TEST_F(BatchesTest, PushGoesToTheViewsThatAreRegisteredWhenItIsMade)
{
    RecordingView late;
    expectOrders(1);
    deliver(orderEvent, order(u"A"_qs, 1));
    center->unReg(&view);
    center->reg(&late);
    center->reg(&late);
    ASSERT_TRUE(late.waitForEvents(2));
    EXPECT_EQ(ordersOf(late.events().at(1)), QVariantList{1});
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty());
    center->unReg(&late);
}

TEST_F(BatchesTest, BatchThatIsFlushedWithoutAViewIsGone)
{
    expectOrders(1);
    deliver(orderEvent, order(u"A"_qs, 1));
    center->unReg(&view);
    log.clear();
    ASSERT_TRUE(invoke("slotEntrustTimeout"));
    EXPECT_THAT(logged(), ElementsAre(u"WebMsgCenter::slotEntrustTimeout 1 1"_qs));
    center->reg(&view);
    ASSERT_TRUE(view.waitForEvents(1)); // the window's own end
    EXPECT_EQ(ordersOf(view.events().first()), QVariantList());
}

TEST_F(BatchesTest, BurstOfTheBusThreadIsOnePush)
{
    constexpr int count = 100;
    expectOrders(count);
    BusThread bus;
    bus.run([] {
        for (int i = 0; i < count; ++i)
            deliver(orderEvent, order(i % 10, i));
    });
    EXPECT_THAT(view.events(), IsEmpty());
    ASSERT_TRUE(view.waitForEvent(entrustUpdate));
    EXPECT_EQ(ordersOf(view.events().first()), (QVariantList{90, 91, 92, 93, 94, 95, 96, 97, 98, 99}));
    EXPECT_EQ(view.events().first().thread, QThread::currentThread());
    EXPECT_THAT(log.linesOfType(QtWarningMsg), IsEmpty()); // a timer started on the wrong thread warns
}

TEST_F(BatchesTest, ManyIdsInOneWindowComeInTheOrderOfFirstArrival)
{
    constexpr int count = 10000;
    expectOrders(2 * count);
    QVariantList expected;
    expected.reserve(count);
    for (int i = 0; i < count; ++i) {
        const int id = (i * 7919) % count; // each once, in no order of their own
        deliver(orderEvent, order(id, 0));
        expected << id;
    }
    for (int id = 0; id < count; ++id)
        deliver(changedOrderEvent, order(id, id));
    log.clear();
    ASSERT_TRUE(view.waitForEvent(entrustUpdate));
    EXPECT_EQ(ordersOf(view.events().first()), expected);
    EXPECT_THAT(logged(), ElementsAre(u"WebMsgCenter::slotEntrustTimeout 10000 10000"_qs));
}

} // namespace
