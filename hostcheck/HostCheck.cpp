#include "hostcheck/HostCheck.h"

#include "hostcheck/CommandLine.h"
#include "hostcheck/Report.h"
#include "hostcheck/Runner.h"
#include "hostcheck/Supervisor.h"
#include "hostcheck/Waiting.h"

#include <QApplication>
#include <QFile>

#include <memory>

#ifdef Q_OS_WIN
#    include <windows.h>
#endif

namespace HostCheck {

namespace {

constexpr int kNothingFailed = 0;
constexpr int kSomethingFailed = 1;
constexpr int kBadCommandLine = 2;

/// The checks show nothing on the screen, so that they also run without one.
void chooseDisplay()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    const auto missing = [](const char *name) { return qEnvironmentVariableIsEmpty(name); };
    if (missing("QT_QPA_PLATFORM") && missing("DISPLAY") && missing("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
}

/// Lets a crash end the process at once. Windows would first ask the user what to do.
void leaveOutCrashDialogs()
{
#ifdef Q_OS_WIN
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
#endif
}

/// Only a process that runs checks needs widgets.
std::unique_ptr<QCoreApplication> makeApplication(int &argc, char *argv[])
{
    if (QCoreApplication::instance())
        return nullptr;
    if (!CommandLine::runsChecks(argc, argv))
        return std::make_unique<QCoreApplication>(argc, argv);
    chooseDisplay();
    auto application = std::make_unique<QApplication>(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return application;
}

void runInProcess(const CommandLine &line, const Options &options, Report &report)
{
    runChecks(line.selected, options, line.known, line.hostArguments,
              {[](const QString &) {},
               [&](const Result &result) {
                   // The start is no news unless it was asked for or has failed.
                   if (line.selected.contains(result.name) || result.outcome != Outcome::Ok)
                       report.add(result);
               }});
    if (line.selected.contains(QLatin1String(kEndCheck)))
        report.add({QLatin1String(kEndCheck), Outcome::Skipped, {}, QStringLiteral("needs a child process")});
}

int refuse(const QString &reason)
{
    printError(QStringLiteral("varnel-host-check: %1\n").arg(reason));
    return kBadCommandLine;
}

} // namespace

int run(int argc, char *argv[], const Options &options)
{
    const std::unique_ptr<QCoreApplication> application = makeApplication(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const CommandLine line = CommandLine::parse(arguments);
    switch (line.action) {
    case CommandLine::Refuse:
        return refuse(line.text);
    case CommandLine::ShowText:
        print(line.text);
        return kNothingFailed;
    case CommandLine::List:
        print(listOfChecks());
        return kNothingFailed;
    case CommandLine::Run:
        break;
    }
    setPatience(line.timeLimit / 2);
    if (!line.childToken.isEmpty()) {
        leaveOutCrashDialogs();
        runChecks(line.selected, options, line.known, line.hostArguments, listenerForParent(line.childToken));
        return kNothingFailed;
    }

    Report report;
    if (!line.junitFile.isEmpty() && !report.writeJUnit(line.junitFile)) // before the checks take their time
        return refuse(QStringLiteral("cannot write %1").arg(line.junitFile));
    if (line.isInProcess)
        runInProcess(line, options, report);
    else
        Supervisor(line, arguments, report).run();
    report.printSummary();
    if (!line.junitFile.isEmpty() && !report.writeJUnit(line.junitFile))
        return refuse(QStringLiteral("cannot write %1").arg(line.junitFile));
    return report.hasFailure() ? kSomethingFailed : kNothingFailed;
}

} // namespace HostCheck
