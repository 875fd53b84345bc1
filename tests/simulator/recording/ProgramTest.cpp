// The program records a run, and plays it again.
#include "Program.h"

#include <QFile>
#include <QTemporaryDir>

/// fixture/record.sh says what it has, and makes it anew.
TEST(RecordingProgram, TheKeptRecordingIsVerified)
{
    const Outcome outcome = run({QStringLiteral("replay"), QStringLiteral(KEPT_RECORDING), QStringLiteral("--verify")});
    EXPECT_EQ(QStringLiteral("30 calls, 29 replies: no difference\n"), outcome.out) << qPrintable(outcome.err);
    EXPECT_EQ(0, outcome.status);
}

#ifdef Q_OS_LINUX // elsewhere there is no varnel-call

#    include <csignal>

namespace {

/// A recording of a simulator with these options that made a call, and was then killed.
QString killedRecording(const QTemporaryDir &folder, const QStringList &options = {},
                        const QStringList &pageCall = {QStringLiteral("Data_getToken_REQ")})
{
    const QString file = folder.filePath(QStringLiteral("r.jsonl"));
    QProcess simulator;
    simulator.start(QStringLiteral(SIMULATOR_BINARY),
                    QStringList{QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--record"), file} +
                        options);
    const QByteArray line = readLine(simulator);
    QProcess call;
    call.start(
        QStringLiteral(CALL_BINARY),
        QStringList{QStringLiteral("--port"), QString::fromLatin1(line.mid(line.lastIndexOf(':') + 1).chopped(2))} +
            pageCall);
    EXPECT_TRUE(call.waitForFinished(kPatienceMs));
    simulator.setReadChannel(QProcess::StandardError);
    QByteArray log; // it says that the page has gone
    while (!log.contains("page 1 gone") && simulator.waitForReadyRead(kPatienceMs))
        log += simulator.readAllStandardError();
    QFile recording(file);
    EXPECT_TRUE(recording.open(QIODevice::ReadOnly));
    for (QByteArray text; !text.contains("\"kind\":\"reply\"");) // the recorder has a thread of its own
        text += recording.readAll();
    simulator.kill();
    EXPECT_TRUE(simulator.waitForFinished(kPatienceMs));
    return file;
}

/// Plays a recording of one call, and asks for its first step.
void playOneStep(QProcess &simulator, const QTemporaryDir &folder)
{
    simulator.start(QStringLiteral(SIMULATOR_BINARY), {QStringLiteral("replay"), killedRecording(folder),
                                                       QStringLiteral("--step"), QStringLiteral("--port=0")});
    EXPECT_TRUE(readLine(simulator).startsWith("listening on "));
    simulator.write("\n");
}

} // namespace

TEST(RecordingProgram, TheRecordingOfAKilledSimulatorCanBeVerified)
{
    QTemporaryDir folder;
    const Outcome outcome = run({QStringLiteral("replay"), killedRecording(folder), QStringLiteral("--verify")});
    EXPECT_EQ(0, outcome.status) << qPrintable(outcome.err);
    EXPECT_EQ(QStringLiteral("1 call, 1 reply: no difference\n"), outcome.out);
}

TEST(RecordingProgram, ARecordingHasTheFaultsOfTheCommandLine)
{
    QTemporaryDir folder;
    const QString file = killedRecording(folder, {QStringLiteral("--fault"), QStringLiteral("refuse-orders")},
                                         {QStringLiteral("Trade_insertOrder_REQ"), QStringLiteral("880010001"),
                                          QStringLiteral("609801.SH"), QString(), QStringLiteral("Buy"),
                                          QStringLiteral("Market"), QString(), QStringLiteral("100"), QString()});
    const Outcome outcome = run({QStringLiteral("replay"), file, QStringLiteral("--verify")});
    EXPECT_EQ(0, outcome.status) << qPrintable(outcome.err);
    EXPECT_EQ(QStringLiteral("1 call, 1 reply: no difference\n"), outcome.out);
    QFile recording(file);
    ASSERT_TRUE(recording.open(QIODevice::ReadOnly));
    const QByteArray text = recording.readAll();
    EXPECT_TRUE(text.startsWith("{\"faults\":[\"refuse-orders\"],")) << text.left(200).toStdString();
    EXPECT_TRUE(text.contains("柜台拒绝委托"));
}

TEST(RecordingProgram, AFaultThatIsUnknownBreaksTheRecording)
{
    QTemporaryDir folder;
    QFile file(killedRecording(folder, {QStringLiteral("--fault"), QStringLiteral("refuse-orders")}));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    QByteArray text = file.readAll();
    text.replace("[\"refuse-orders\"]", "[\"greet-orders\"]");
    file.resize(0);
    file.write(text);
    file.close();
    const Outcome outcome = run({QStringLiteral("replay"), file.fileName(), QStringLiteral("--verify")});
    EXPECT_EQ(2, outcome.status);
    EXPECT_TRUE(outcome.err.startsWith(
        QStringLiteral("varnel-simulator: %1: line 1: faults: \"greet-orders\" is not a fault: ").arg(file.fileName())))
        << qPrintable(outcome.err);
}

TEST(RecordingProgram, ARecordingIsPlayedStepByStep)
{
    QTemporaryDir folder;
    QProcess simulator;
    playOneStep(simulator, folder);
    const QByteArray call = readLine(simulator);
    EXPECT_TRUE(call.startsWith("line ")) << call.toStdString();
    EXPECT_TRUE(call.endsWith("  page 1  Data_getToken_REQ [\"varnel-call\"]\n")) << call.toStdString();
    simulator.closeWriteChannel();
    ASSERT_TRUE(simulator.waitForFinished(kPatienceMs));
    EXPECT_EQ(0, simulator.exitCode());
    EXPECT_EQ(QByteArray("1 call played\n"), simulator.readAllStandardOutput());
}

TEST(RecordingProgram, TheEndOfTheInputEndsTheProgramAlsoWhenAllCallsHaveBeenPlayed)
{
    QTemporaryDir folder;
    QProcess simulator;
    playOneStep(simulator, folder);
    EXPECT_TRUE(readLine(simulator).startsWith("line "));
    EXPECT_EQ(QByteArray("1 call played\n"), readLine(simulator));
    simulator.closeWriteChannel();
    ASSERT_TRUE(simulator.waitForFinished(kPatienceMs));
    EXPECT_EQ(0, simulator.exitCode());
}

TEST(RecordingProgram, AFullDiskEndsTheRecordingAndNotTheRun)
{
    QProcess simulator;
    simulator.start(QStringLiteral(SIMULATOR_BINARY), {QStringLiteral("--port"), QStringLiteral("0"),
                                                       QStringLiteral("--record"), QStringLiteral("/dev/full")});
    EXPECT_TRUE(readLine(simulator).startsWith("listening on "));
    kill(pid_t(simulator.processId()), SIGTERM);
    ASSERT_TRUE(simulator.waitForFinished(kPatienceMs));
    EXPECT_EQ(1, simulator.exitCode());
    EXPECT_EQ(
        QByteArray("varnel-simulator: the recording ends here: cannot write /dev/full: No space left on device\n"),
        simulator.readAllStandardError());
}

struct BadFile {
    const char *name;
    const char *options; ///< separated by blanks
    const char *error;
};

class RecordingProgramMistake : public testing::TestWithParam<BadFile> {};

TEST_P(RecordingProgramMistake, GivesOneLineAndStatusTwo)
{
    const Outcome outcome = run(QString::fromLatin1(GetParam().options).split(QLatin1Char(' ')));
    EXPECT_EQ(2, outcome.status);
    EXPECT_EQ(QString(), outcome.out);
    EXPECT_EQ(QStringLiteral("varnel-simulator: %1\n").arg(QLatin1String(GetParam().error)), outcome.err);
}

INSTANTIATE_TEST_SUITE_P(All, RecordingProgramMistake,
                         testing::Values(BadFile{"ReplayMissing", "replay /no/such.jsonl",
                                                 "/no/such.jsonl: No such file or directory"},
                                         BadFile{"ReplayOfNoRecording", "replay /dev/null",
                                                 "/dev/null: line 1: not the head of a recording"},
                                         BadFile{"RecordingInNoFolder", "--record /no/such/file",
                                                 "cannot write /no/such/file: No such file or directory"}),
                         [](const auto &info) { return info.param.name; });

#endif
