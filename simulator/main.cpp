#include "CommandLine.h"
#include "Console.h"
#include "ExitStatus.h"
#include "PlayRecording.h"
#include "Serving.h"
#include "Shutdown.h"
#include "Window.h"
#include "recording/Recorder.h"
#include "recording/SettingsFolder.h"
#include "terminal/Terminal.h"

#include <QApplication>
#include <QLoggingCategory>

namespace {

std::unique_ptr<sim::Recorder> recorderFor(const sim::CommandLine &options)
{
    sim::RecordingHead head;
    head.simulator = QCoreApplication::applicationVersion();
    head.scenario = options.scenarioText;
    head.seed = options.scenario.seed;
    head.speed = options.speed;
    head.login = options.login.account;
    head.settings = sim::SettingsFolder::read(options.login.account);
    head.faults = options.faults;
    const QString file = options.recordTo;
    return std::make_unique<sim::Recorder>(file, head, [file](const QString &problem) {
        sim::printError(QStringLiteral("the recording ends here: cannot write %1: %2").arg(file, problem));
    });
}

int simulate(const sim::CommandLine &options)
{
    sim::Terminal terminal(options.scenario, options.login, options.speed);
    sim::Serving serving(options, terminal);
    sim::quitOnSignals(); // before the address is printed, which callers wait for
    return serving.begin() ? QApplication::exec() : sim::ExitStatus::kCannotListen;
}

int simulateAndRecord(const sim::CommandLine &options)
{
    const std::unique_ptr<sim::Recorder> recorder = recorderFor(options);
    if (!recorder->isOpen()) {
        sim::printError(QStringLiteral("cannot write %1: %2").arg(options.recordTo, recorder->errorString()));
        return sim::ExitStatus::kBadCommandLine;
    }
    const int status = simulate(options); // how it ends is recorded, too
    return recorder->finish() || status != 0 ? status : sim::ExitStatus::kRecordingFailed;
}

} // namespace

int main(int argc, char *argv[])
{
    const QString problem = sim::Window::prepare(argc, argv);
    if (!problem.isEmpty()) {
        sim::printError(problem);
        return sim::ExitStatus::kNoWindow;
    }
    qSetMessagePattern(QStringLiteral("%{time hh:mm:ss.zzz} %{type} %{category}: %{message}"));
    // Outside a login session Qt would warn about a missing runtime folder, which nothing here uses.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    QApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("varnel.*.debug=false")); // QT_LOGGING_RULES overrides this
    QCoreApplication::setApplicationName(QStringLiteral("varnel-simulator"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VARNEL_VERSION));
    QGuiApplication::setQuitOnLastWindowClosed(false);

    sim::CommandLine options;
    options.window = sim::Window::isThere;
    switch (options.parse(QCoreApplication::arguments())) {
    case sim::CommandLine::Refuse:
        sim::printErrorLines(options.text);
        return sim::ExitStatus::kBadCommandLine;
    case sim::CommandLine::ShowText:
        sim::print(options.text);
        return 0;
    case sim::CommandLine::Run:
        break;
    }
    if (options.isReplay)
        return sim::playRecording(options, argv);
    return options.recordTo.isEmpty() ? simulate(options) : simulateAndRecord(options);
}
