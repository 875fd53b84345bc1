#include "CommandLine.h"
#include "Shutdown.h"
#include "gateway/Gateway.h"
#include "terminal/Terminal.h"

#include <QApplication>
#include <QLoggingCategory>

#include <cstdio>

namespace {

constexpr int kCannotListen = 1;
constexpr int kBadCommandLine = 2;

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
        print(stderr, options.text + QLatin1Char('\n'));
        return kBadCommandLine;
    case sim::CommandLine::ShowText:
        print(stdout, options.text);
        return 0;
    case sim::CommandLine::Run:
        break;
    }

    sim::Terminal terminal(options.scenario, options.login, options.speed);
    sim::Gateway gateway(options.root, options.allowedOrigins);
    if (!gateway.listen(options.port)) {
        print(stderr, QStringLiteral("varnel-simulator: cannot listen on 127.0.0.1:%1: %2\n")
                          .arg(options.port)
                          .arg(gateway.errorString()));
        return kCannotListen;
    }
    sim::quitOnSignals();
    print(stdout, QStringLiteral("listening on http://127.0.0.1:%1/\n").arg(gateway.port()));
    return QApplication::exec();
}
