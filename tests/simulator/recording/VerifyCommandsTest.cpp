// Records a session in which somebody gives commands, and plays it again with the real program.
#include "gateway/Page.h"
#include "recording/RecordedRun.h"
#include "traffic/Log.h"

#include <algorithm>
#include <atomic>
#include <functional>

using namespace sim;

namespace {

const QString kAccount = QStringLiteral("880010001");
const QString kSymbol = QStringLiteral("609801.SH");
const QString kUuid = QStringLiteral("u");
const QString kNone;

/// Gives the commands one by one, each when the log of the traffic gets an entry that is a cue.
class Commander {
public:
    Commander(Terminal &terminal, QVector<const char *> commands, std::function<bool(const traffic::Entry &)> isCue)
        : m_terminal(terminal), m_commands(std::move(commands)), m_isCue(std::move(isCue))
    {
        m_listener = traffic::log().listen([this](const traffic::Entry &entry) {
            if (m_listens && !m_commands.isEmpty() && m_isCue(entry))
                give(m_commands.takeFirst());
        });
        m_listens = true; // and not to what has passed before
    }

    ~Commander()
    {
        traffic::log().leave(m_listener);
        EXPECT_TRUE(m_commands.isEmpty());
        m_terminal.control().awaitRuns();
    }

private:
    void give(const char *text)
    {
        Command command;
        EXPECT_EQ(QString(), Command::parse(QString::fromLatin1(text), command));
        m_terminal.control().run(command, [](const QString &) {}); // how it ends may depend on the pace
    }

    Terminal &m_terminal;
    QVector<const char *> m_commands; ///< that are still to be given; after the constructor guarded by the log
    const std::function<bool(const traffic::Entry &)> m_isCue;
    std::atomic<bool> m_listens{false};
    int m_listener = 0;
};

/// A page that calls without waiting for answers.
class BusyPage : public Page {
public:
    explicit BusyPage(const Gateway &gateway) : Page(gateway) { EXPECT_TRUE(awaitOpen()); }

    void order(const char *qty)
    {
        call("Trade_insertOrder_REQ", {kUuid, kAccount, kSymbol, kNone, QStringLiteral("Buy"), QStringLiteral("Market"),
                                       kNone, QLatin1String(qty), QStringLiteral("t")});
    }

    void token() { call("Data_getToken_REQ", {kUuid}); }

    void cancelAll()
    {
        for (const QJsonArray &reply : heard("Trade_insertOrder_RES")) {
            const QJsonObject placed = QJsonDocument::fromJson(reply.at(0).toString().toUtf8()).object();
            call("Trade_reqCancelOrder_REQ", {kUuid, placed[QLatin1String("resultData")][QLatin1String("orderID")]});
        }
    }

    void query()
    {
        call("Data_getEntrustList_REQ", {kUuid, QStringLiteral("{}"), 0, 50});
        call("Data_getExecutionList_REQ", {kUuid, QStringLiteral("{}"), 0, 50});
        call("Data_getPositionList_REQ", {kUuid, kAccount, kNone});
        call("Data_getAsset_REQ", {kUuid, kAccount});
        call("Data_getCurrentTick_REQ", {kUuid, kSymbol});
        call("Data_getKLineData_REQ", {kUuid, kSymbol, QStringLiteral("20250303"), kNone, QStringLiteral("1")});
        call("Vlx_queryStrategyStatus_REQ", {kUuid, QStringLiteral("none"), kNone});
    }

    /// Waits for the answers to all calls.
    void drain()
    {
        EXPECT_TRUE(await([&] {
            int replies = 0;
            for (int i = 0; i < frames.size(); ++i)
                replies += event(i).endsWith(QLatin1String("_RES")) ? 1 : 0;
            return replies == m_calls;
        }));
    }

private:
    void call(const char *method, const QJsonArray &args)
    {
        ++m_calls;
        invoke(method, args);
    }

    int m_calls = 0;
};

class VerifyCommandsTest : public testing::TestWithParam<double> {
protected:
    /// Calls and commands come as fast as they can, so that each run is another.
    void record()
    {
        run.head.faults = QStringList{QStringLiteral("refuse-orders=1"), QStringLiteral("answer-after-push=1")};
        QByteArray &scenario = run.head.scenario;
        scenario.insert(scenario.indexOf('{') + 1, R"("timeline": [{ "after": 1, "do": "burst 7" }],)");
        run.record([](Terminal &terminal) {
            Gateway gateway(QString(), {});
            EXPECT_TRUE(gateway.listen(0));
            BusyPage dropped(gateway);
            dropped.order("200"); // which is refused
            dropped.drain();      // so that the numbers of the pages are known
            BusyPage page(gateway);
            commandsBetweenCalls(terminal, page);
            commandsInACall(terminal, page);
            jumpsAndADrop(terminal, page, dropped);
        });
    }

    RecordedRun run{GetParam()};

private:
    static bool isCall(const traffic::Entry &entry) { return entry.kind == traffic::Entry::Call; }

    static void commandsBetweenCalls(Terminal &terminal, BusyPage &page)
    {
        const Commander commander(
            terminal,
            {"fault fill-in-parts=2", "burst 3", "fault late-cancels=1", "halt 609801.SH", "burst 40", "speed 50",
             "jump 10:30:00", "resume 609801.SH", "fault refuse-orders=2"},
            [calls = 0](const traffic::Entry &entry) mutable { return isCall(entry) && ++calls % 7 == 0; });
        for (int round = 0; round < 6; ++round) {
            page.order("300");
            page.order("100");
            page.query();
            page.drain();
            page.cancelAll();
        }
        page.drain();
    }

    /// A slow server holds the call, and one of the commands ends that.
    static void commandsInACall(Terminal &terminal, BusyPage &page)
    {
        {
            const Commander slow(terminal, {"fault slow-answers=600000"}, isCall);
            page.token();
            page.drain();
        } // which waits until the command has been carried out
        const Commander held(terminal, {"burst 5", "fault refuse-orders=1", "clear slow-answers"},
                             [](const traffic::Entry &entry) {
                                 return entry.name == QLatin1String("VarnelTradeLogic::orders") ||
                                        (entry.kind == traffic::Entry::Command && entry.call != 0);
                             });
        page.order("300");
        page.query();
        page.drain();
    }

    static void jumpsAndADrop(Terminal &terminal, BusyPage &page, BusyPage &dropped)
    {
        {
            const Commander commander(
                terminal,
                {"jump 11:00:00", "fault fill-in-parts=5", "jump close", "drop 1", "jump 2025-03-04 09:31:00", "clear"},
                [calls = 0](const traffic::Entry &entry) mutable { return isCall(entry) && ++calls % 5 == 0; });
            for (int round = 0; round < 4; ++round) {
                page.order("400");
                dropped.query();
                page.query();
            }
            EXPECT_TRUE(dropped.awaitClosed());
            page.drain();
        }
        page.order("200");
        page.query();
        page.drain();
    }
};

} // namespace

TEST_P(VerifyCommandsTest, EveryCallIsAnsweredAsItWas)
{
    record();
    const QList<QByteArray> commands = run.lines("command");
    EXPECT_EQ(19, commands.size()) << "those of the timeline are not recorded";
    EXPECT_LE(3, std::count_if(commands.begin(), commands.end(),
                               [](const QByteArray &line) { return line.contains("\"isInCall\":true"); }));
    const QString expected = QStringLiteral("%1 calls, %2 replies: no difference\n")
                                 .arg(run.lines("call").size())
                                 .arg(run.lines("reply").size());
    for (int times = 1; times <= 2; ++times) {
        const RecordedRun::Outcome outcome = run.verify();
        EXPECT_EQ(expected.toStdString(), outcome.out.toStdString());
        EXPECT_EQ("", outcome.error.toStdString());
        EXPECT_EQ(0, outcome.status);
    }
}

INSTANTIATE_TEST_SUITE_P(Speeds, VerifyCommandsTest, testing::Values(1, 100),
                         [](const auto &info) { return std::to_string(int(info.param)); });
