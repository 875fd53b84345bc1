#include "Program.h"

#include <QDir>
#include <QFile>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#ifdef QT_NETWORK_LIB
#    include <QTcpServer>
#    include <QTcpSocket>
#endif

#ifdef Q_OS_UNIX
#    include <csignal>
#endif

namespace {

struct Mistake {
    const char *name;
    const char *options; ///< separated by blanks
    const char *error;
};

void PrintTo(const Mistake &mistake, std::ostream *stream)
{
    *stream << mistake.name;
}

class CommandLineMistake : public testing::TestWithParam<Mistake> {};

const Mistake kMistakes[] = {
    {"UnknownOption", "--colour blue", "Unknown option 'colour'."},
    {"MissingValue", "--port", "Missing value after '--port'."},
    {"NoOption", "8900", "\"8900\" is not an option"},
    {"PortNoNumber", "--port http", "--port \"http\" is not a port number"},
    {"PortTooLarge", "--port 65536", "--port \"65536\" is not a port number"},
    {"PortNegative", "--port=-1", "--port \"-1\" is not a port number"},
    {"SpeedZero", "--speed 0", "--speed \"0\" is not a number from 0.01 to 1000"},
    {"SpeedNan", "--speed nan", "--speed \"nan\" is not a number from 0.01 to 1000"},
    {"SpeedHuge", "--speed 1e9", "--speed \"1e9\" is not a number from 0.01 to 1000"},
    {"SeedNoNumber", "--seed x", "--seed \"x\" is not a whole number"},
    {"SeedNegative", "--seed=-1", "--seed \"-1\" is not a whole number"},
    {"LoginUnknown", "--login nobody", "--login \"nobody\" is not an account of the scenario: it has T1001, T1002"},
    {"LoginEmpty", "--login=", "--login \"\" is not an account of the scenario: it has T1001, T1002"},
    {"RootMissing", "--root /no/such/folder", "--root \"/no/such/folder\" is not a folder"},
    {"InspectorMissing", "--inspector /no/such/folder", "--inspector \"/no/such/folder\" is not a folder"},
    {"OriginWithPath", "--allow-origin http://a.example/x",
     "--allow-origin \"http://a.example/x\" is not an origin such as http://localhost:5173"},
    {"ConfirmOrdersWithoutWindow", "--confirm-orders", "--confirm-orders needs --window"},
    {"OriginWithSeparator", "--allow-origin http://a.example;x",
     "--allow-origin \"http://a.example;x\" is not an origin such as http://localhost:5173"},
    {"OriginNull", "--allow-origin null", "--allow-origin \"null\" is not an origin such as http://localhost:5173"},
    {"StepWithoutReplay", "--step", "--step is for replay only"},
    {"VerifyWithoutReplay", "--verify", "--verify is for replay only"},
    {"ReplayWithoutFile", "replay", "replay needs one file"},
    {"ReplayOfTwoFiles", "replay a b", "replay needs one file"},
    {"ReplayWithSeed", "replay a --seed 5", "--seed is not for replay: the recording has it"},
    {"ReplayWithFault", "replay a --fault silent-klines", "--fault is not for replay: the recording has it"},
    {"ReplayThatIsRecorded", "replay a --record b", "--record is not for replay: the recording has it"},
    {"ReplayInTwoWays", "replay a --step --verify", "only one of --speed, --step and --verify can be chosen"},
    {"VerifyInABrowser", "replay a --verify --open", "--open is not for --verify, which ends at once"},
    {"ReplayWithQuestions", "replay a --confirm-orders", "--confirm-orders needs --window"},
    {"ScenarioMissing", "--scenario /no/such.json",
     "--scenario \"/no/such.json\" is neither a file nor a built-in scenario: there are default, quiet, storm, "
     "bad-day, large, week"},
    {"FaultWithoutMilliseconds", "--fault slow-answers",
     "--fault the value of slow-answers must be a whole number from 0 to 600000, such as slow-answers=1000"},
    {"FaultUnknown", "--fault x",
     "--fault \"x\" is not a fault: there are slow-answers, silent-klines, refuse-orders, refuse-orders-silently, "
     "late-cancels, fill-in-parts, answer-after-push, late-pushes, fail-permissions, silent-strategies, drop-in-call"},
};

} // namespace

TEST_P(CommandLineMistake, GivesOneLineAndStatusTwo)
{
    const Mistake &mistake = GetParam();
    const Outcome outcome = run(QString::fromUtf8(mistake.options).split(QLatin1Char(' ')));
    EXPECT_EQ(2, outcome.status);
    EXPECT_EQ(QStringLiteral("varnel-simulator: %1\n").arg(QString::fromUtf8(mistake.error)), outcome.err);
    EXPECT_EQ(QString(), outcome.out);
}

INSTANTIATE_TEST_SUITE_P(All, CommandLineMistake, testing::ValuesIn(kMistakes),
                         [](const auto &info) { return std::string(info.param.name); });

TEST(CommandLine, ABadScenarioGivesALineForEachMistakeAndStatusTwo)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("bad.json")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{\n  \"name\": 5,\n  \"seed\": -1\n}\n");
    file.close();
    const Outcome outcome = run({QStringLiteral("--scenario"), file.fileName()});
    EXPECT_EQ(2, outcome.status);
    const QStringList lines = outcome.err.split(QLatin1Char('\n'));
    EXPECT_TRUE(lines.contains(file.fileName() + QStringLiteral(":2:11: name: must be a text")));
    EXPECT_TRUE(lines.contains(file.fileName() + QStringLiteral(":3:11: seed: must be a whole number from 0 to "
                                                                "9007199254740992")));
    EXPECT_EQ(QString(), outcome.out);
}

TEST(CommandLine, HelpAndVersionGoToStandardOutput)
{
    const Outcome help = run({QStringLiteral("--help")});
    EXPECT_EQ(0, help.status);
    EXPECT_EQ(QString(), help.err);
    for (const char *option :
         {"--port", "--scenario", "--seed", "--speed", "--login", "--root", "--inspector", "--allow-origin", "--fault",
          "--open", "--window", "--confirm-orders", "--record", "replay FILE", "--step", "--verify"})
        EXPECT_TRUE(help.out.contains(QLatin1String(option))) << option;
    const Outcome version = run({QStringLiteral("--version")});
    EXPECT_EQ(0, version.status);
    EXPECT_TRUE(version.out.startsWith(QStringLiteral("varnel-simulator ")));
}

#ifdef QT_NETWORK_LIB
TEST(CommandLine, APortInUseGivesOneLineAndStatusOne)
{
    QTcpServer taken;
    ASSERT_TRUE(taken.listen(QHostAddress::LocalHost, 0));
    const Outcome outcome = run({QStringLiteral("--port"), QString::number(taken.serverPort())});
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ(QStringLiteral("varnel-simulator: cannot listen on 127.0.0.1:%1: Address already in use\n")
                  .arg(taken.serverPort()),
              outcome.err);
    EXPECT_EQ(QString(), outcome.out);
}

namespace {

/// What the simulator that printed the line answers to a request for that page.
QByteArray answerOf(const QByteArray &listeningLine, const QByteArray &path)
{
    const int colon = listeningLine.lastIndexOf(':');
    const quint16 port = listeningLine.mid(colon + 1).chopped(2).toUShort(); // without "/\n"
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    socket.write("GET " + path + " HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(port) +
                 "\r\nConnection: close\r\n\r\n");
    QByteArray answer;
    while (socket.waitForReadyRead(kPatienceMs))
        answer += socket.readAll();
    return answer;
}

} // namespace

TEST(CommandLine, ThePagesThatAreInstalledBesideTheProgramAreServedByDefault)
{
    QTemporaryDir prefix;
    const QDir folder(prefix.path());
    ASSERT_TRUE(folder.mkpath(QStringLiteral("bin")));
    const QString program = folder.filePath(QStringLiteral("bin/varnel-simulator"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(SIMULATOR_BINARY), program));
    for (const char *name : {"workbench", "inspector"}) {
        const QString path = QStringLiteral("share/VarnelWebSDK/") + QLatin1String(name);
        ASSERT_TRUE(folder.mkpath(path));
        QFile page(folder.filePath(path + QStringLiteral("/index.html")));
        ASSERT_TRUE(page.open(QIODevice::WriteOnly));
        page.write(name);
    }

    QProcess simulator;
    simulator.start(program, {QStringLiteral("--port"), QStringLiteral("0")});
    const QByteArray line = readLine(simulator);
    const QByteArray workbench = answerOf(line, "/");
    const QByteArray inspector = answerOf(line, "/inspector/");
    simulator.kill();
    ASSERT_TRUE(simulator.waitForFinished(kPatienceMs));
    EXPECT_TRUE(workbench.endsWith("workbench")) << workbench.toStdString();
    EXPECT_TRUE(inspector.endsWith("inspector")) << inspector.toStdString();
}

#endif // QT_NETWORK_LIB

#ifdef Q_OS_UNIX
TEST(CommandLine, AWindowWithoutItsProgramGivesOneLineAndStatusOne)
{
    QTemporaryDir folder;
    const QString program = folder.filePath(QStringLiteral("varnel-simulator"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(SIMULATOR_BINARY), program));
    const Outcome outcome = run({QStringLiteral("--window")}, program);
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ(
        QStringLiteral("varnel-simulator: --window needs the program varnel-simulator-window: install the package "
                       "of that name, or qtwebengine5-dev and libqt5webchannel5-dev before you build\n"),
        outcome.err);
}

#    ifdef SIMULATOR_HAS_WINDOW
namespace {

/// As on a machine without a display, for the user that runs the tests.
QProcessEnvironment surroundings(const char *platform, const char *noSandbox)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY"})
        environment.remove(QLatin1String(name));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QLatin1String(platform));
    environment.insert(QStringLiteral("QTWEBENGINE_DISABLE_SANDBOX"), QLatin1String(noSandbox));
    return environment;
}

} // namespace

TEST(CommandLine, TheWindowTakesTheOptionsOfTheSimulatorAndAddresses)
{
    QProcess simulator;
    simulator.setProcessEnvironment(surroundings("offscreen", "1"));
    simulator.start(QStringLiteral(SIMULATOR_BINARY),
                    {QStringLiteral("--window"), QStringLiteral("--port"), QStringLiteral("0"),
                     QStringLiteral("--confirm-orders"), QStringLiteral("about:blank")});
    ASSERT_TRUE(simulator.waitForFinished(kPatienceMs));
    EXPECT_EQ(2, simulator.exitCode());
    EXPECT_EQ("varnel-simulator: \"about:blank\" is not an address such as http://localhost:5173\n",
              simulator.readAllStandardError().toStdString());

    simulator.start(QStringLiteral(SIMULATOR_BINARY),
                    {QStringLiteral("--window"), QStringLiteral("--port"), QStringLiteral("0"),
                     QStringLiteral("--confirm-orders"), QStringLiteral("http://localhost:1/")});
    const QByteArray line = readLine(simulator);
    EXPECT_TRUE(line.startsWith("listening on http://127.0.0.1:")) << line.toStdString();
    EXPECT_TRUE(answerOf(line, "/").startsWith("HTTP/1.1 200 "));
    simulator.terminate();
    ASSERT_TRUE(simulator.waitForFinished(kPatienceMs));
    EXPECT_EQ(QProcess::NormalExit, simulator.exitStatus());
    EXPECT_EQ(0, simulator.exitCode());
}

TEST(CommandLine, NoRecordingIsVerifiedInAWindow)
{
    QProcess simulator;
    simulator.setProcessEnvironment(surroundings("offscreen", "1"));
    simulator.start(QStringLiteral(SIMULATOR_BINARY), {QStringLiteral("replay"), QStringLiteral("a"),
                                                       QStringLiteral("--verify"), QStringLiteral("--window")});
    ASSERT_TRUE(simulator.waitForFinished(kPatienceMs));
    EXPECT_EQ(2, simulator.exitCode());
    EXPECT_EQ("varnel-simulator: --window is not for --verify, which ends at once\n",
              simulator.readAllStandardError().toStdString());
}

TEST(CommandLine, AWindowWithoutADisplayGivesOneLineAndStatusOne)
{
    QProcess simulator;
    simulator.setProcessEnvironment(surroundings("", "1"));
    simulator.start(QStringLiteral(SIMULATOR_BINARY), {QStringLiteral("--window")});
    ASSERT_TRUE(simulator.waitForFinished(kPatienceMs));
    EXPECT_EQ(1, simulator.exitCode());
    EXPECT_EQ("varnel-simulator: there is no display to open the window on\n",
              simulator.readAllStandardError().toStdString());
}
#    endif // SIMULATOR_HAS_WINDOW

TEST(CommandLine, WithoutABrowserOpenTellsTheAddress)
{
    QProcess simulator;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PATH"), QStringLiteral("/no/such"));
    simulator.setProcessEnvironment(environment);
    simulator.start(QStringLiteral(SIMULATOR_BINARY),
                    {QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--open")});
    const QByteArray address = readLine(simulator).mid(int(qstrlen("listening on "))).chopped(1);
    simulator.terminate();
    ASSERT_TRUE(simulator.waitForFinished(kPatienceMs));
    EXPECT_EQ(0, simulator.exitCode());
    EXPECT_EQ("varnel-simulator: no browser could be started; open " + address + " yourself\n",
              simulator.readAllStandardError());
}

/// A process that has ended has the number 0, which would mean all processes of the test run.
void sendSignal(const QProcess &process, int signal)
{
    ASSERT_GT(process.processId(), 0) << "the process has ended";
    kill(pid_t(process.processId()), signal);
}

class CommandLineSignal : public testing::TestWithParam<int> {};

TEST_P(CommandLineSignal, EndsTheSimulatorWithStatusZero)
{
    QProcess simulator;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
        environment.remove(QLatin1String(name)); // as on a machine without a display
    simulator.setProcessEnvironment(environment);
    simulator.start(QStringLiteral(SIMULATOR_BINARY), {QStringLiteral("--port"), QStringLiteral("0")});
    const QByteArray line = readLine(simulator);
    EXPECT_TRUE(line.startsWith("listening on http://127.0.0.1:")) << line.toStdString();
    EXPECT_TRUE(line.endsWith("/\n")) << line.toStdString();
    sendSignal(simulator, GetParam());
    ASSERT_TRUE(simulator.waitForFinished(kPatienceMs));
    EXPECT_EQ(QProcess::NormalExit, simulator.exitStatus());
    EXPECT_EQ(0, simulator.exitCode());
    EXPECT_EQ(QByteArray(), simulator.readAllStandardError());
}

TEST_P(CommandLineSignal, EndsAHangingShutdownAtOnceWhenItComesASecondTime)
{
    QProcess hanging;
    hanging.start(QStringLiteral(HANGING_BINARY), QStringList());
    ASSERT_EQ(QByteArray("ready\n"), readLine(hanging));
    sendSignal(hanging, SIGINT);
    ASSERT_EQ(QByteArray("hanging\n"), readLine(hanging));
    sendSignal(hanging, GetParam());
    ASSERT_TRUE(hanging.waitForFinished(kPatienceMs));
    EXPECT_EQ(QProcess::NormalExit, hanging.exitStatus());
    EXPECT_EQ(128 + GetParam(), hanging.exitCode());
}

INSTANTIATE_TEST_SUITE_P(All, CommandLineSignal, testing::Values(SIGINT, SIGTERM));
#endif
