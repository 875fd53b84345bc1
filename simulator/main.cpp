#include "CommandLine.h"
#include "Shutdown.h"
#include "gateway/Gateway.h"
#include "recording/Recorder.h"
#include "recording/Replay.h"
#include "recording/SettingsFolder.h"
#include "terminal/Terminal.h"

#include <QApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QSocketNotifier>

#include <cstdio>

#include <unistd.h>

namespace {

constexpr int kCannotListen = 1;
constexpr int kRecordingFailed = 1;
constexpr int kDifferent = 1;
constexpr int kBadCommandLine = 2;
constexpr int kBrokenRecording = 2;

/// The pages of browsers get the numbers after this in a replay, so that few recordings have a page of the same number.
constexpr int kPagesOfRecording = 10000;

void print(FILE *stream, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

/// Nothing is shown on the screen, so the simulator also runs without a display.
void chooseDisplay()
{
    const auto missing = [](const char *name) { return qEnvironmentVariableIsEmpty(name); };
    if (missing("QT_QPA_PLATFORM") && missing("DISPLAY") && missing("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

void printError(const QString &sentence)
{
    print(stderr, QStringLiteral("varnel-simulator: %1\n").arg(sentence));
}

/// Begins to listen, and prints the address. False when it cannot.
bool listen(sim::Gateway &gateway, quint16 port)
{
    if (!gateway.listen(port)) {
        printError(QStringLiteral("cannot listen on 127.0.0.1:%1: %2").arg(port).arg(gateway.errorString()));
        return false;
    }
    print(stdout, QStringLiteral("listening on http://127.0.0.1:%1/\n").arg(gateway.port()));
    return true;
}

std::unique_ptr<sim::Recorder> recorderFor(const sim::CommandLine &options)
{
    sim::RecordingHead head;
    head.simulator = QCoreApplication::applicationVersion();
    head.scenario = options.scenarioText;
    head.seed = options.scenario.seed;
    head.speed = options.speed;
    head.login = options.login.account;
    head.settings = sim::SettingsFolder::read(options.login.account);
    const QString file = options.recordTo;
    return std::make_unique<sim::Recorder>(file, head, [file](const QString &problem) {
        printError(QStringLiteral("the recording ends here: cannot write %1: %2").arg(file, problem));
    });
}

int serve(const sim::CommandLine &options)
{
    std::unique_ptr<sim::Recorder> recorder; // first, because it also records how the others end
    if (!options.recordTo.isEmpty()) {
        recorder = recorderFor(options);
        if (!recorder->isOpen()) {
            printError(QStringLiteral("cannot write %1: %2").arg(options.recordTo, recorder->errorString()));
            return kBadCommandLine;
        }
    }
    int status = 0;
    {
        sim::Terminal terminal(options.scenario, options.login, options.speed);
        sim::Gateway gateway(options.root, options.allowedOrigins);
        sim::quitOnSignals(); // before the address is printed, which callers wait for
        if (!listen(gateway, options.port))
            return kCannotListen;
        status = QApplication::exec();
    }
    if (recorder && !recorder->finish() && status == 0)
        status = kRecordingFailed;
    return status;
}

/// A step for each line on standard input; at its end the program ends.
void stepOnLines(sim::Replay &replay)
{
    auto *const input = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, &replay);
    QObject::connect(input, &QSocketNotifier::activated, &replay, [&replay, input] {
        char bytes[256];
        const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0) {
            input->setEnabled(false);
            QObject::connect(&replay, &sim::Replay::ended, [] { QCoreApplication::quit(); });
            replay.endAfterSteps();
        }
        for (ssize_t i = 0; i < count; ++i) {
            if (bytes[i] == '\n')
                replay.step();
        }
    });
    QObject::connect(&replay, &sim::Replay::called, [](int line, const sim::RecordedEntry &call) {
        const QByteArray args = QJsonDocument(QJsonArray::fromVariantList(call.args)).toJson(QJsonDocument::Compact);
        print(stdout, QStringLiteral("line %1  %2  page %3  %4 %5\n")
                          .arg(line)
                          .arg(call.time.toString(QStringLiteral("HH:mm:ss.zzz")))
                          .arg(call.page)
                          .arg(call.name, QString::fromUtf8(args)));
    });
}

int statusOf(sim::Replay::Outcome::Kind kind)
{
    switch (kind) {
    case sim::Replay::Outcome::Done:
        return 0;
    case sim::Replay::Outcome::Different:
        return kDifferent;
    case sim::Replay::Outcome::Broken:
        return kBrokenRecording;
    }
    return kBrokenRecording;
}

int replay(sim::CommandLine &options, char *argv[])
{
    const QString problem = sim::SettingsFolder::enterOwn(argv);
    if (!problem.isEmpty()) {
        printError(problem);
        return kCannotListen;
    }
    sim::SettingsFolder::write(options.login.account, options.recording.head().settings);

    const bool stands = true; // the recording says where time goes
    sim::Terminal terminal(options.scenario, options.login, options.speed, stands);
    sim::Gateway gateway(options.root, options.allowedOrigins, std::chrono::seconds(10), kPagesOfRecording);
    sim::quitOnSignals();
    if (options.listens && !listen(gateway, options.port))
        return kCannotListen;
    sim::Replay replay(options.recording, terminal, options.mode);
    QObject::connect(&replay, &sim::Replay::ended, [&](const sim::Replay::Outcome &outcome) {
        const int status = statusOf(outcome.kind);
        if (status == 0)
            print(stdout, outcome.text + QLatin1Char('\n'));
        else
            printError(outcome.text);
        if (status != 0 || options.mode == sim::Replay::Verify)
            QCoreApplication::exit(status);
        else
            terminal.liftTimeLimit(); // the simulator runs on from there
    });
    if (options.mode == sim::Replay::Stepwise)
        stepOnLines(replay);
    replay.start();
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    chooseDisplay();
    qSetMessagePattern(QStringLiteral("%{time hh:mm:ss.zzz} %{type} %{category}: %{message}"));
    // Outside a login session Qt would warn about a missing runtime folder, which nothing here uses.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    QApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("varnel.*.debug=false")); // QT_LOGGING_RULES overrides this
    QCoreApplication::setApplicationName(QStringLiteral("varnel-simulator"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VARNEL_VERSION));
    QGuiApplication::setQuitOnLastWindowClosed(false);

    sim::CommandLine options;
    switch (options.parse(QCoreApplication::arguments())) {
    case sim::CommandLine::Refuse:
        print(stderr, QStringLiteral("varnel-simulator: %1\n").arg(options.text));
        return kBadCommandLine;
    case sim::CommandLine::ShowText:
        print(stdout, options.text);
        return 0;
    case sim::CommandLine::Run:
        break;
    }

    return options.isReplay ? replay(options, argv) : serve(options);
}
