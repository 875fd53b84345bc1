#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <gtest/gtest.h>

namespace {

constexpr int kPatienceMs = 30000;

using Words = QList<QByteArray>;

QStringList words(const Words &all)
{
    QStringList texts;
    for (const QByteArray &word : all)
        texts.append(QString::fromUtf8(word));
    return texts;
}

struct Outcome {
    int status;
    QByteArray out;
    QByteArray err;

    QJsonObject reply() const { return QJsonDocument::fromJson(out).object(); }
};

/// Waits for a whole line, and returns what has been printed.
QByteArray readLine(QProcess &process)
{
    QByteArray text;
    while (!text.endsWith('\n') && process.waitForReadyRead(kPatienceMs))
        text += process.readAllStandardOutput();
    return text;
}

Outcome run(const Words &arguments)
{
    QProcess call;
    call.start(QStringLiteral(CALL_BINARY), words(arguments));
    EXPECT_TRUE(call.waitForFinished(kPatienceMs));
    EXPECT_EQ(QProcess::NormalExit, call.exitStatus());
    return {call.exitCode(), call.readAllStandardOutput(), call.readAllStandardError()};
}

/// A running simulator.
class CallTest : public testing::Test {
protected:
    CallTest()
    {
        simulator.start(QStringLiteral(SIMULATOR_BINARY), words({"--port", "0", "--speed", "20"}));
        const QByteArray line = readLine(simulator); // ends with the port and "/\n"
        port = line.mid(line.lastIndexOf(':') + 1).chopped(2);
    }

    ~CallTest() override
    {
        simulator.kill();
        simulator.waitForFinished(kPatienceMs);
    }

    Words withPort(const Words &arguments) const { return Words{"--port", port} + arguments; }
    Outcome call(const Words &arguments) const { return run(withPort(arguments)); }

    QProcess simulator;
    QByteArray port;
};

QJsonObject eventIn(const QByteArray &line)
{
    return QJsonDocument::fromJson(line).object();
}

} // namespace

TEST_F(CallTest, PrintsTheReplyAndSucceeds)
{
    const Outcome outcome = call({"Data_getToken_REQ"});
    EXPECT_EQ(0, outcome.status);
    EXPECT_EQ(QByteArray("{\n    \"code\": \"0\",\n    \"msg\": \"\",\n    \"resultData\": \"SIM-7f3a9c41-T1001\",\n"
                         "    \"uuid\": \"varnel-call\"\n}\n"),
              outcome.out);
    EXPECT_EQ(QByteArray(), outcome.err);
}

TEST_F(CallTest, ArgumentsAreTextsUnlessTheyAreReadAsJson)
{
    const Outcome text = call({"Data_getOPStation_REQ", "[1]", "-5"});
    EXPECT_TRUE(text.reply().value(QLatin1String("resultData")).toString().endsWith(QLatin1String(";[1];-5")))
        << text.out.toStdString();
    // An array arrives as the empty text, which the station leaves out.
    const Outcome json = call({"--json", "Data_getOPStation_REQ", "[1]", "5"});
    EXPECT_TRUE(json.reply().value(QLatin1String("resultData")).toString().endsWith(QLatin1String("PCN=SIM-DESK-01;5")))
        << json.out.toStdString();
}

TEST_F(CallTest, ALateReplyIsWaitedFor)
{
    const Outcome outcome = call({"Data_getKLineData_REQ", "609001.SH", "20250228", "20250228", "2"});
    EXPECT_EQ(0, outcome.status) << outcome.err.toStdString();
    EXPECT_EQ(1, outcome.reply().value(QLatin1String("resultData")).toArray().size());
}

TEST_F(CallTest, ARefusalIsPrintedAndFails)
{
    const Outcome outcome = call({"Data_getEntrustList_REQ", "no object", "0", "1"});
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ(QStringLiteral("-1"), outcome.reply().value(QLatin1String("code")).toString());
    EXPECT_EQ(QStringLiteral("varnel-call: refused: 过滤条件参数转换错误\n"), QString::fromUtf8(outcome.err));
}

TEST_F(CallTest, AnEmptyAnswerIsARefusalWhereItIsNotTheOnlyOne)
{
    const Outcome refused = call({"Data_getSetting_REQ"});
    EXPECT_EQ(1, refused.status);
    EXPECT_EQ(QByteArray("\"\"\n"), refused.out);
    EXPECT_EQ(QByteArray("varnel-call: the answer is empty: the call has too few arguments\n"), refused.err);
    EXPECT_EQ(0, call({"Data_getUpsDownsAnalysis_REQ", "a", "b", "c"}).status);
}

TEST_F(CallTest, ACallWithoutAnAnswerFailsAfterItsTime)
{
    const Outcome outcome = call({"--timeout", "1", "Data_getNothing_REQ"});
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ(QByteArray("varnel-call: no answer to Data_getNothing_REQ within 1 s\n"), outcome.err);
}

TEST_F(CallTest, ACallThatIsNeverAnsweredSucceedsInSilence)
{
    const Outcome outcome = call({"Vlx_sendCustomInfo_REQ", "none", "hello"});
    EXPECT_EQ(0, outcome.status);
    EXPECT_EQ(QByteArray(), outcome.out);
    // The simulator has read it: it logs a message for a strategy that does not run.
    QByteArray log;
    simulator.setReadChannel(QProcess::StandardError);
    while (!log.contains("no strategy \"none\" is running") && simulator.waitForReadyRead(kPatienceMs))
        log += simulator.readAllStandardError();
    EXPECT_TRUE(log.contains("no strategy \"none\" is running"));
}

TEST_F(CallTest, FollowPrintsOneEventOnEachLine)
{
    const Outcome outcome = call({"--follow", "--subscribe", "609001.SH,609801.SH", "--count", "4", "on_tickUpdate"});
    EXPECT_EQ(0, outcome.status) << outcome.err.toStdString();
    const QList<QByteArray> lines = outcome.out.split('\n');
    ASSERT_EQ(5, lines.size()); // the last one is empty
    for (int i = 0; i < 4; ++i) {
        const QJsonObject event = eventIn(lines[i]);
        EXPECT_EQ(QStringLiteral("on_tickUpdate"), event.value(QLatin1String("event")).toString());
        const QString symbol =
            event.value(QLatin1String("args")).toArray().first().toObject().value(QLatin1String("symbol")).toString();
        EXPECT_TRUE(symbol == QLatin1String("609001.SH") || symbol == QLatin1String("609801.SH"))
            << lines[i].toStdString();
    }
}

TEST_F(CallTest, FollowGivesUpWhenTheSimulatorEnds)
{
    QProcess follower;
    follower.start(QStringLiteral(CALL_BINARY),
                   words(withPort({"--follow", "--subscribe", "609801.SH", "on_tickUpdate"})));
    readLine(follower);
    simulator.terminate();
    ASSERT_TRUE(follower.waitForFinished(kPatienceMs));
    EXPECT_EQ(1, follower.exitCode());
    EXPECT_EQ(QByteArray("varnel-call: the simulator has ended the connection\n"), follower.readAllStandardError());
}

TEST(CallCommandLine, NoSimulatorIsAFailure)
{
    const Outcome outcome = run({"--port", "1", "Data_getToken_REQ"});
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ(QByteArray("varnel-call: no simulator answers on 127.0.0.1:1: Connection refused\n"), outcome.err);
}

TEST(CallCommandLine, AMistakeGivesOneLineAndStatusTwo)
{
    const struct {
        Words arguments;
        const char *error;
    } table[] = {
        {{}, "no call was named; --help shows how"},
        {{"--port", "0", "X_REQ"}, "--port \"0\" is not a port number"},
        {{"--timeout", "soon", "X_REQ"}, "--timeout \"soon\" is not a whole number of seconds"},
        {{"--count", "0", "--follow", "e"}, "--count \"0\" is not a number of events"},
        {{"--follow"}, "--follow needs the name of an event, such as on_tickUpdate"},
        {{"--follow", "--json", "e"}, "--json is for calls, and not for --follow"},
        {{"--subscribe", "a", "X_REQ"}, "--subscribe is for --follow only"},
        {{"--json", "X_REQ", "{"}, "the argument \"{\" is not JSON"},
        {{"--json", "X_REQ", "1,2"}, "the argument \"1,2\" is not JSON"},
        {{"--colour", "X_REQ"}, "Unknown option 'colour'."},
    };
    for (const auto &row : table) {
        const Outcome outcome = run(row.arguments);
        EXPECT_EQ(2, outcome.status) << row.error;
        EXPECT_EQ(QByteArray("varnel-call: ") + row.error + '\n', outcome.err);
        EXPECT_EQ(QByteArray(), outcome.out);
    }
}

TEST(CallCommandLine, HelpAndVersionGoToStandardOutput)
{
    const Outcome help = run({"--help"});
    EXPECT_EQ(0, help.status);
    for (const char *option : {"--port", "--timeout", "--json", "--follow", "--subscribe", "--count"})
        EXPECT_TRUE(help.out.contains(option)) << option;
    EXPECT_TRUE(run({"--version"}).out.startsWith("varnel-call "));
}

TEST_F(CallTest, CommandsControlTheSimulator)
{
    const auto state = [this] { return call({"--control"}); };
    const auto refusals = [](const QJsonObject &state) {
        for (const QJsonValue fault : state[QLatin1String("faults")].toArray()) {
            if (fault[QLatin1String("name")] == QLatin1String("refuse-orders"))
                return fault[QLatin1String("value")].toInt();
        }
        return -1;
    };
    EXPECT_FALSE(state().reply()[QLatin1String("isPaused")].toBool(true));
    const Outcome paused = call({"--control", "pause"});
    EXPECT_EQ(0, paused.status) << paused.err.toStdString();
    EXPECT_EQ(QByteArray(), paused.out);
    EXPECT_TRUE(state().reply()[QLatin1String("isPaused")].toBool());
    EXPECT_EQ(0, call({"--control", "fault", "refuse-orders=2"}).status);
    EXPECT_EQ(2, refusals(state().reply()));
    EXPECT_EQ(0, call({"--control", "jump", "2025-03-03", "14:57:00"}).status);
}

TEST_F(CallTest, ACommandThatCannotBeCarriedOutFails)
{
    const Outcome late = call({"--control", "jump", "09:30:00"});
    EXPECT_EQ(1, late.status);
    EXPECT_TRUE(late.err.startsWith("varnel-call: 09:30:00 has passed: it is 2025-03-03 ")) << late.err.toStdString();
    const Outcome wrong = call({"--control", "burst", "many"});
    EXPECT_EQ(2, wrong.status);
    EXPECT_EQ(QByteArray("varnel-call: burst needs a number of orders from 1 to 100000\n"), wrong.err);
}

TEST(CallHelp, ListsCommandsAndFaults)
{
    const Outcome help = run({"--help"});
    EXPECT_EQ(0, help.status);
    for (const char *word : {"--control", "  pause", "  jump TIME", "  burst N", "  refuse-orders-silently"})
        EXPECT_TRUE(help.out.contains(word)) << word;
}
