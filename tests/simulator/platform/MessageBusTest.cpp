#include "TerminalTest.h"

#include "CPackMessageCommon.h"
#include "CUnPackMessageCommon.h"
#include "QvPresenterClass.h"
#include "Tessar_Fields.h"

#include <QCoreApplication>
#include <QSemaphore>

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

using namespace sim;
using testing::ElementsAre;

namespace {

constexpr int kPatienceMs = 10000;
constexpr int kMode = 1;
constexpr int kEvent = 0x300A0;

const QString kEcho = QStringLiteral("EchoRequest");
const QString kEchoed = QStringLiteral("EchoResponse");

std::atomic<int> s_messagesAlive{0};

class CountedRequest : public CMessageCommon {
public:
    CountedRequest(int sender, const QString &type, const QVariant &what)
    {
        ++s_messagesAlive;
        CPackMessageCommon pack;
        pack.AddVaule(QStringLiteral("what"), what);
        SetType(type);
        SetMsg(pack.GetPackedMsg(0));
        SetSrcid(sender);
    }
    ~CountedRequest() override { --s_messagesAlive; }
};

class CountedEvent : public CEventMessageCommon {
public:
    CountedEvent(int id, const QVariant &what)
    {
        ++s_messagesAlive;
        SetType(id);
        SetMsg(what);
    }
    ~CountedEvent() override { --s_messagesAlive; }
};

/// Records what the bus delivers.
class Presenter : public QvPresenterClass {
public:
    explicit Presenter(const char *name)
        : QvPresenterClass(QLatin1String(name), nullptr, IMessageInterface::WebThreadType)
    {
    }

    void ProcEventMsg(QString name, QVariant type, QVariant data) override
    {
        take(QStringLiteral("%1 %2 %3").arg(name).arg(type.toInt()).arg(data.toString()));
    }

    void ProcQuotationMsg(QString name, QVariant type, QVariant data) override
    {
        take(QStringLiteral("%1 %2 %3").arg(name, type.toString(), data.toList().value(0).toString()));
    }

    /// The next n deliveries.
    std::vector<std::string> await(int n)
    {
        EXPECT_TRUE(m_arrived.tryAcquire(n, kPatienceMs));
        const std::lock_guard lock(m_mutex);
        std::vector<std::string> all;
        std::swap(all, m_deliveries);
        return all;
    }

    int ask(const QString &type, const QVariant &what)
    {
        return sendRequest_Async(new CountedRequest(pluginPid(), type, what));
    }

    std::function<void()> whenCalled = [] {};
    std::thread::id thread; ///< of the last delivery; to be read after await()

private:
    void take(const QString &delivery)
    {
        whenCalled();
        {
            const std::lock_guard lock(m_mutex);
            m_deliveries.push_back(delivery.toStdString());
            thread = std::this_thread::get_id();
        }
        m_arrived.release();
    }

    std::mutex m_mutex;
    std::vector<std::string> m_deliveries;
    QSemaphore m_arrived;
};

class MessageBusTest : public QuietTerminalTest {
protected:
    MessageBusTest()
    {
        terminal.bus()->serve(kEcho, kEchoed, [this](const QVariantMap &request) {
            whenAsked();
            return QVariantList{request.value(QStringLiteral("what"))};
        });
    }

    ~MessageBusTest() override
    {
        terminal.bus()->stop();
        EXPECT_EQ(0, s_messagesAlive) << "messages leaked";
    }

    std::function<void()> whenAsked = [] {};
};

} // namespace

TEST_F(MessageBusTest, AnswersArriveOnTheBusThreadInTheOrderOfTheRequests)
{
    Presenter presenter("p");
    for (int i = 1; i <= 3; ++i)
        EXPECT_EQ(0, presenter.ask(kEcho, i));
    EXPECT_THAT(presenter.await(3), ElementsAre("p EchoResponse 1", "p EchoResponse 2", "p EchoResponse 3"));
    EXPECT_NE(std::this_thread::get_id(), presenter.thread);
}

TEST_F(MessageBusTest, AnswersGoToTheSenderOnly)
{
    Presenter asking("asking");
    Presenter other("other");
    other.SubEvent(other.pluginPid(), kEvent, kMode);
    asking.ask(kEcho, 1);
    asking.await(1);
    asking.PutEvent(asking.pluginPid(), new CountedEvent(kEvent, QStringLiteral("sentinel")));
    EXPECT_THAT(other.await(1), ElementsAre("asking 196768 sentinel"));
}

TEST_F(MessageBusTest, RequestsWithoutAServiceAreRefused)
{
    Presenter presenter("p");
    QVariant reply = QStringLiteral("untouched");
    EXPECT_NE(0, presenter.ask(QStringLiteral("Unknown"), 1));
    EXPECT_NE(
        0, presenter.sendRequest_Sync(new CountedRequest(presenter.pluginPid(), QStringLiteral("Unknown"), 1), reply));
    EXPECT_EQ(QVariant(QStringLiteral("untouched")), reply);
    EXPECT_NE(0, presenter.sendRequest_Async(new CountedRequest(12345, kEcho, 1))); // an unknown sender
    EXPECT_EQ(0, s_messagesAlive);
}

TEST_F(MessageBusTest, ASynchronousRequestReturnsItsAnswer)
{
    Presenter presenter("p");
    QVariant reply;
    EXPECT_EQ(0, presenter.sendRequest_Sync(new CountedRequest(presenter.pluginPid(), kEcho, 42), reply));
    EXPECT_EQ(QVariantList{42}, reply.toList());
}

TEST_F(MessageBusTest, ASynchronousRequestMayComeFromTheBusThreadItself)
{
    Presenter presenter("p");
    QVariant reply;
    presenter.whenCalled = [&] {
        presenter.sendRequest_Sync(new CountedRequest(presenter.pluginPid(), kEcho, 7), reply);
    };
    presenter.ask(kEcho, 1);
    presenter.await(1);
    EXPECT_EQ(QVariantList{7}, reply.toList());
}

TEST_F(MessageBusTest, EventsReachEachSubscriberOnce)
{
    Presenter publisher("publisher");
    Presenter subscriber("subscriber");
    Presenter other("other");
    subscriber.SubEvent(subscriber.pluginPid(), kEvent, kMode);
    subscriber.SubEvent(subscriber.pluginPid(), kEvent, kMode);
    other.SubEvent(other.pluginPid(), kEvent + 1, kMode);
    publisher.PutEvent(publisher.pluginPid(), new CountedEvent(kEvent, QStringLiteral("a")));
    publisher.PutEvent(publisher.pluginPid(), new CountedEvent(kEvent, QStringLiteral("b")));
    publisher.PutEvent(publisher.pluginPid(), new CountedEvent(kEvent + 1, QStringLiteral("c")));
    EXPECT_THAT(other.await(1), ElementsAre("publisher 196769 c"));
    EXPECT_THAT(subscriber.await(2), ElementsAre("publisher 196768 a", "publisher 196768 b"));
}

namespace {

/// Unpacks events as the library does, and records the rows.
class RowReader : public QvPresenterClass {
public:
    RowReader() : QvPresenterClass(QStringLiteral("reader"), nullptr, IMessageInterface::WebThreadType)
    {
        SubEvent(pluginPid(), kEvent, kMode);
    }

    void ProcEventMsg(QString name, QVariant type, QVariant data) override
    {
        EXPECT_EQ(QStringLiteral("Terminal"), name);
        EXPECT_EQ(kEvent, type.toInt());
        CUnPackMessageCommon unpack;
        unpack.SetUnPackMsg(data, false);
        {
            const std::lock_guard lock(m_mutex);
            m_rows.append(unpack.GetRowValue());
        }
        m_arrived.release();
    }

    QVector<QVariantMap> await(int n)
    {
        EXPECT_TRUE(m_arrived.tryAcquire(n, kPatienceMs));
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_rows, {});
    }

private:
    std::mutex m_mutex;
    QVector<QVariantMap> m_rows;
    QSemaphore m_arrived;
};

} // namespace

TEST_F(MessageBusTest, SubscribersUnpackTheAnnouncedRow)
{
    RowReader reader;
    const QVariantMap row{{QStringLiteral("text"), QStringLiteral("t")},
                          {QStringLiteral("number"), 7},
                          {QStringLiteral("list"), QVariantList{1, QStringLiteral("two")}},
                          {QStringLiteral("pointer"), QVariant::fromValue<QObject *>(&reader)},
                          {Tessar_Fields::System::clientMsgID, QStringLiteral("its own")}};
    terminal.bus()->announce(kEvent, row);
    EXPECT_EQ(QVector<QVariantMap>{row}, reader.await(1));

    terminal.bus()->announce(kEvent, {});
    const QVariantMap bare = reader.await(1).value(0);
    EXPECT_EQ(QStringList(Tessar_Fields::System::clientMsgID), bare.keys());
}

TEST_F(MessageBusTest, ABurstOfAnnouncementsArrivesCompleteAndInTheOrderOfEachThread)
{
    RowReader reader;
    constexpr int kEach = 5000;
    const QString kFrom = QStringLiteral("from");
    const QString kNumber = QStringLiteral("number");
    const auto announce = [&](int from) {
        for (int i = 0; i < kEach; ++i)
            terminal.bus()->announce(kEvent, {{kFrom, from}, {kNumber, i}});
    };
    std::thread other([&] { announce(1); });
    announce(0);
    other.join();

    const QVector<QVariantMap> rows = reader.await(2 * kEach);
    int next[2] = {0, 0};
    for (const QVariantMap &row : rows)
        EXPECT_EQ(next[row.value(kFrom).toInt()]++, row.value(kNumber).toInt());
    EXPECT_EQ(kEach, next[0]);
    EXPECT_EQ(kEach, next[1]);
}

TEST_F(MessageBusTest, TheTerminalListensBeforeTheSubscribers)
{
    RowReader reader;
    std::thread::id thread;
    QVariantMap heard;
    terminal.bus()->listen(kEvent, [&](const QVariantMap &row) {
        thread = std::this_thread::get_id();
        heard = row;
        terminal.bus()->announce(kEvent + 1, {}); // it may use the bus
    });
    terminal.bus()->announce(kEvent, {{QStringLiteral("a"), 1}});
    EXPECT_EQ(reader.await(1).value(0), heard);
    EXPECT_NE(std::this_thread::get_id(), thread);
}

TEST_F(MessageBusTest, APresenterThatHasLeftIsNotCalled)
{
    Presenter publisher("publisher");
    Presenter last("last");
    int calls = 0;
    {
        Presenter leaving("leaving");
        leaving.whenCalled = [&] { ++calls; };
        leaving.SubEvent(leaving.pluginPid(), kEvent, kMode);
        last.SubEvent(last.pluginPid(), kEvent, kMode);
        whenAsked = [&] { terminal.bus()->leave(leaving.pluginPid()); }; // while its answer is being made
        leaving.ask(kEcho, 1);
        QVariant reply;
        publisher.ask(kEcho, 2); // its answer proves that the request before was handled
        publisher.await(1);
    }
    publisher.PutEvent(publisher.pluginPid(), new CountedEvent(kEvent, QStringLiteral("sentinel")));
    last.await(1);
    EXPECT_EQ(0, calls);
}

TEST_F(MessageBusTest, LeavingWaitsForTheCurrentCall)
{
    Presenter presenter("p");
    QSemaphore entered;
    QSemaphore proceed;
    std::atomic<bool> finished{false};
    presenter.whenCalled = [&] {
        entered.release();
        proceed.acquire();
        finished = true;
    };
    presenter.ask(kEcho, 1);
    ASSERT_TRUE(entered.tryAcquire(1, kPatienceMs));
    std::thread release([&] { proceed.release(); });
    terminal.bus()->leave(presenter.pluginPid());
    EXPECT_TRUE(finished);
    release.join();
}

TEST_F(MessageBusTest, AwaitReturnWaitsForTheCurrentCall)
{
    terminal.bus()->awaitReturn(); // there is none
    Presenter presenter("p");
    QSemaphore entered;
    QSemaphore proceed;
    std::atomic<bool> finished{false};
    presenter.whenCalled = [&] {
        terminal.bus()->awaitReturn(); // must not wait for its own call
        entered.release();
        proceed.acquire();
        finished = true;
    };
    presenter.ask(kEcho, 1);
    ASSERT_TRUE(entered.tryAcquire(1, kPatienceMs));
    std::thread release([&] { proceed.release(); });
    terminal.bus()->awaitReturn();
    EXPECT_TRUE(finished);
    release.join();
}

TEST_F(MessageBusTest, AtMostSixteenAnswersAreUnacknowledged)
{
    // This thread is the presenter's thread, and it does not run its event loop.
    Presenter presenter("p");
    presenter.SubEvent(presenter.pluginPid(), kEvent, kMode);
    constexpr int kMany = 40;
    constexpr int kAtOnce = 16;
    for (int i = 0; i < kMany; ++i)
        presenter.ask(kEcho, i);
    EXPECT_EQ(kAtOnce, int(presenter.await(kAtOnce).size()));
    presenter.PutEvent(presenter.pluginPid(), new CountedEvent(kEvent, QStringLiteral("sentinel"))); // does not wait
    EXPECT_THAT(presenter.await(1), ElementsAre("p 196768 sentinel"));

    QCoreApplication::processEvents();
    EXPECT_EQ(kAtOnce, int(presenter.await(kAtOnce).size()));
}

TEST_F(MessageBusTest, AStoppedBusRefusesRequestsAndReleasesWaitingSenders)
{
    Presenter presenter("p");
    QSemaphore entered;
    QSemaphore proceed;
    presenter.whenCalled = [&] {
        entered.release();
        proceed.acquire();
    };
    presenter.ask(kEcho, 1);
    ASSERT_TRUE(entered.tryAcquire(1, kPatienceMs)); // the bus is busy from now on
    int result = 0;
    std::thread waiting([&] {
        QVariant reply;
        result = presenter.sendRequest_Sync(new CountedRequest(presenter.pluginPid(), kEcho, 2), reply);
    });
    std::thread stopping([&] { terminal.bus()->stop(); });
    proceed.release(2);
    stopping.join();
    waiting.join(); // it must return, with or without an answer
    EXPECT_NE(0, presenter.ask(kEcho, 3));
    presenter.PutEvent(presenter.pluginPid(), new CountedEvent(kEvent, 4));
}

TEST_F(MessageBusTest, EventIdsAreAssignedByName)
{
    MessageBus &bus = *terminal.bus();
    const int in = bus.eventId(QStringLiteral("in"));
    const int out = bus.eventId(QStringLiteral("out"));
    EXPECT_GE(in, 0x40000); // the terminal has ids already
    EXPECT_EQ(in + 1, out);
    EXPECT_EQ(in, bus.eventId(QStringLiteral("in")));
}

TEST(MessageBus, APresenterMayOutliveTheTerminal)
{
    Scenario scenario;
    QString error;
    ASSERT_TRUE(Scenario::read(Scenario::defaultFile(), scenario, error));
    auto terminal = std::make_unique<Terminal>(scenario, scenario.logins.first(), 1);
    Presenter presenter("p");
    terminal.reset();
    EXPECT_NE(0, presenter.ask(kEcho, 1));
}

namespace {

/// Time passes when the test says so.
class SkippingTerminalTest : public StandingTerminalTest {
protected:
    static constexpr int kLatencyMs = 20;

    QDateTime after(int milliseconds) const { return scenario.start.addMSecs(milliseconds); }
};

} // namespace

TEST_F(SkippingTerminalTest, AnswersAreMadeAtTheTimeAtWhichTheRequestsAreDue)
{
    QVector<QDateTime> times;
    terminal.bus()->serve(kEcho, kEchoed, [&](const QVariantMap &) {
        times.append(terminal.now());
        return QVariantList{QStringLiteral("echo")};
    });
    Presenter presenter("p");
    presenter.ask(kEcho, 1);
    terminal.skipTo(after(5));
    presenter.ask(kEcho, 2);
    terminal.skipTo(after(1000)); // however late the machine is
    presenter.await(2);
    EXPECT_EQ((QVector<QDateTime>{after(kLatencyMs), after(5 + kLatencyMs)}), times);
}

TEST_F(SkippingTerminalTest, WhatTheTerminalCausesIsDueBeforeWhatOthersSendThenOrLater)
{
    RowReader reader; // of kEvent
    const QString kText = QStringLiteral("text");
    terminal.bus()->listen(kEvent + 1, [&](const QVariantMap &) {
        terminal.bus()->announce(kEvent, {{kText, QStringLiteral("caused")}});
    });
    terminal.bus()->announce(kEvent + 1, {});
    terminal.skipTo(after(kLatencyMs - 1)); // it is not due yet
    for (const int time : {kLatencyMs + 1, kLatencyMs}) {
        const FrozenTime frozen(after(time));
        terminal.bus()->announce(kEvent, {{kText, QStringLiteral("sent at %1").arg(time)}});
    }
    terminal.skipTo(after(1000));
    QStringList texts;
    for (const QVariantMap &row : reader.await(3))
        texts.append(row.value(kText).toString());
    EXPECT_EQ(QStringList({QStringLiteral("caused"), QStringLiteral("sent at 20"), QStringLiteral("sent at 21")}),
              texts);
}

TEST_F(SkippingTerminalTest, ASenderThatWaitsGetsItsAnswerWhileTimeStandsStill)
{
    terminal.bus()->serve(kEcho, kEchoed, [](const QVariantMap &) { return QVariantList{QStringLiteral("echo")}; });
    Presenter presenter("p");
    const Terminal::Moment moment(terminal);
    QVariant reply;
    EXPECT_EQ(0, presenter.sendRequest_Sync(new CountedRequest(presenter.pluginPid(), kEcho, 1), reply));
    EXPECT_EQ(QVariantList{QStringLiteral("echo")}, reply.toList());
}

TEST_F(SkippingTerminalTest, EventsOfTheTerminalTakeNoIdsFromRequests)
{
    const auto idOfNext = [] { return CPackMessageCommon().GetValue(Tessar_Fields::System::clientMsgID).toLongLong(); };
    const qint64 before = idOfNext();
    terminal.bus()->announce(kEvent, {});
    EXPECT_EQ(before + 1, idOfNext());
}
