#include "PlayRecording.h"

#include "CommandLine.h"
#include "Console.h"
#include "ExitStatus.h"
#include "Serving.h"
#include "Shutdown.h"
#include "recording/SettingsFolder.h"
#include "recording/StepInput.h"
#include "terminal/Terminal.h"

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>

namespace sim {

namespace {

void printCall(int line, const RecordedEntry &call)
{
    const QByteArray args = QJsonDocument(QJsonArray::fromVariantList(call.args)).toJson(QJsonDocument::Compact);
    print(QStringLiteral("line %1  %2  page %3  %4 %5\n")
              .arg(line)
              .arg(call.time.toString(QStringLiteral("HH:mm:ss.zzz")))
              .arg(call.page)
              .arg(call.name, QString::fromUtf8(args)));
}

/// A call for each line on standard input; at its end the program ends.
std::unique_ptr<StepInput> stepOnLines(Replay &replay)
{
    QObject::connect(&replay, &Replay::called, printCall);
    return std::make_unique<StepInput>([&replay](StepInput::Event event) {
        if (event == StepInput::Line)
            return replay.step();
        if (replay.hasEnded())
            return QCoreApplication::quit();
        QObject::connect(&replay, &Replay::ended, [] { QCoreApplication::quit(); });
        replay.endAfterSteps();
    });
}

int statusOf(Replay::Outcome::Kind kind)
{
    switch (kind) {
    case Replay::Outcome::Done:
        return 0;
    case Replay::Outcome::Different:
        return ExitStatus::kDifferent;
    case Replay::Outcome::Broken:
        return ExitStatus::kBrokenRecording;
    }
    return ExitStatus::kBrokenRecording;
}

} // namespace

int playRecording(CommandLine &options, char *argv[])
{
    QString problem;
    if (const std::optional<int> status = SettingsFolder::enterOwn(argv, problem)) {
        if (!problem.isEmpty())
            printError(problem);
        return *status;
    }
    SettingsFolder::write(options.login.account, options.recording.head().settings);

    const bool stands = true; // the recording says where time goes
    Terminal terminal(options.scenario, options.login, options.speed, stands);
    // A played page has its number in the recording; those of browsers come behind.
    Serving serving(options, terminal, options.listens ? options.recording.lastPage() : 0);
    quitOnSignals(); // before the address is printed, which callers wait for
    if (options.listens && !serving.begin())
        return ExitStatus::kCannotListen;
    Replay replay(options.recording, terminal, options.mode);
    QObject::connect(&replay, &Replay::ended, [&](const Replay::Outcome &outcome) {
        const int status = statusOf(outcome.kind);
        if (status == 0)
            print(outcome.text + QLatin1Char('\n'));
        else
            printError(outcome.text);
        if (status != 0 || options.mode == Replay::Verify)
            QCoreApplication::exit(status);
        else
            terminal.liftTimeLimit(); // the simulator runs on from there
    });
    std::unique_ptr<StepInput> input;
    if (options.mode == Replay::Stepwise)
        input = stepOnLines(replay);
    replay.start();
    return QApplication::exec();
}

} // namespace sim
