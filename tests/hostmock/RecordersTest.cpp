// The recorders of the host mock: views, bus, quotes, log.

#include "CommonQuotaHandler.h"
#include "HostQuotes.h"
#include "HostTest.h"
#include "LogRecorder.h"
#include "QvPresenterClass.h"
#include "RecordingView.h"

#include <QLoggingCategory>
#include <QThread>

namespace {

class Presenter : public QvPresenterClass {
public:
    explicit Presenter(QObject *parent = nullptr)
        : QvPresenterClass(QStringLiteral("presenter"), parent, IMessageInterface::WebThreadType)
    {
    }
    void ProcEventMsg(QString name, QVariant type, QVariant) override
    {
        received.append(name + type.toString());
        thread = QThread::currentThread();
    }
    void ProcQuotationMsg(QString name, QVariant type, QVariant) override
    {
        received.append(name + type.toString());
        thread = QThread::currentThread();
    }
    QStringList received;
    QThread *thread = nullptr;
};

} // namespace

class RecordersTest : public HostTest {};

TEST_F(RecordersTest, ViewRecordsEventsOfAllThreads)
{
    RecordingView view;
    BusThread thread;
    thread.post([&] {
        QCefEvent event(QStringLiteral("second"));
        event.arguments().append(QStringLiteral("x"));
        EXPECT_TRUE(view.broadcastEvent(event));
    });
    EXPECT_TRUE(view.waitForEvent(QStringLiteral("second")));
    view.answerBroadcasts(false);
    EXPECT_FALSE(view.broadcastEvent(QCefEvent(QStringLiteral("third"))));
    EXPECT_TRUE(view.waitForEvents(2));
    ASSERT_EQ(view.eventNames(), QStringList({QStringLiteral("second"), QStringLiteral("third")}));
    EXPECT_EQ(view.events().at(0).thread, thread.qtThread());
    EXPECT_EQ(view.events().at(0).arguments, QVariantList{QStringLiteral("x")});
    EXPECT_EQ(view.events().at(1).thread, QThread::currentThread());
}

TEST_F(RecordersTest, WaitingInVainFailsAndListsTheEvents)
{
    RecordingView view;
    view.broadcastEvent(QCefEvent(QStringLiteral("other")));
    EXPECT_STREQ(view.waitForEvents(2, 1).message(), "waited for 2 events, got { other{} }");
    EXPECT_FALSE(view.waitForEvent(QStringLiteral("wanted"), 1));
}

TEST_F(RecordersTest, DrainingRunsAlsoEventsThatEventsPost)
{
    RecordingView view;
    QObject context;
    const auto broadcast = [&] { view.broadcastEvent(QCefEvent(QStringLiteral("late"))); };
    QMetaObject::invokeMethod(
        &context, [&] { QMetaObject::invokeMethod(&context, broadcast, Qt::QueuedConnection); }, Qt::QueuedConnection);
    EXPECT_TRUE(view.events().isEmpty());
    EXPECT_EQ(view.eventsAfterDraining().size(), 1);
    view.clear();
    EXPECT_TRUE(view.eventsAfterDraining().isEmpty());
}

TEST_F(RecordersTest, OrderBetweenViewsIsKept)
{
    RecordingView first;
    RecordingView second;
    second.broadcastEvent(QCefEvent(QStringLiteral("e")));
    first.broadcastEvent(QCefEvent(QStringLiteral("e")));
    second.broadcastEvent(QCefEvent(QStringLiteral("e")));
    QList<const QCefView *> order;
    for (const ViewEvent &event : RecordingView::eventsOfAllViews())
        order.append(event.view);
    EXPECT_EQ(order, QList<const QCefView *>({&second, &first, &second}));
}

TEST_F(RecordersTest, PresenterIsRecordedWithItsArguments)
{
    EXPECT_TRUE(HostBus::presenters().isEmpty());
    {
        QObject parent;
        Presenter presenter(&parent);
        EXPECT_EQ(bus.presenter().presenter, &presenter);
        EXPECT_EQ(bus.presenter().name, QStringLiteral("presenter"));
        EXPECT_EQ(bus.presenter().parent, &parent);
        EXPECT_EQ(bus.presenter().threadType, 15);
    }
    EXPECT_TRUE(HostBus::presenters().isEmpty());
}

TEST_F(RecordersTest, BusDeliversOnTheCallingThread)
{
    Presenter presenter;
    bus.deliverEvent(QStringLiteral("e"), 1, {});
    EXPECT_EQ(presenter.thread, QThread::currentThread());
    BusThread thread;
    thread.post([&] { bus.deliverEvent(QStringLiteral("e"), 2, {}); });
    thread.run([&] { bus.deliverQuotation(QStringLiteral("q"), 3, {}); });
    EXPECT_EQ(presenter.thread, thread.qtThread());
    EXPECT_NE(presenter.thread, QThread::currentThread());
    EXPECT_EQ(presenter.received.join(QLatin1Char(' ')), QStringLiteral("e1 e2 q3"));
}

TEST_F(RecordersTest, TicksAreEmittedOnTheCallingThread)
{
    const int before = tickReceivers();
    QObject context;
    QThread *emitter = nullptr;
    QObject::connect(
        CommonQuotaHandler::instance(), &CommonQuotaHandler::sigTickDataUpdate, &context,
        [&] { emitter = QThread::currentThread(); }, Qt::DirectConnection);
    EXPECT_EQ(tickReceivers(), before + 1);
    BusThread thread;
    thread.run([] { emitTick(QStringLiteral("s"), {}); });
    EXPECT_EQ(emitter, thread.qtThread());
}

TEST_F(RecordersTest, LogLinesAreRecordedWithTheirSourceLocation)
{
    static const QLoggingCategory category("mock.test");
    LogRecorder log;
    qCWarning(category, "one line 1");
    BusThread().run([] { qCCritical(category, "another"); });
    ASSERT_EQ(log.lines().size(), 2);
    const LogLine line = log.linesWith(QStringLiteral("one line")).value(0);
    EXPECT_EQ(line.type, QtWarningMsg);
    EXPECT_EQ(line.category, QStringLiteral("mock.test"));
    EXPECT_TRUE(line.file.endsWith(QStringLiteral("RecordersTest.cpp")));
    EXPECT_GT(line.line, 0);
    EXPECT_TRUE(line.function.contains(QStringLiteral("TestBody")));
    EXPECT_EQ(log.linesOfType(QtCriticalMsg).size(), 1);
    log.clear();
    EXPECT_TRUE(log.lines().isEmpty());
}
