#include "Browser.h"
#include "CommandLine.h"
#include "Shutdown.h"
#include "Window.h"
#include "gateway/Gateway.h"
#include "terminal/Terminal.h"

#include <QApplication>
#include <QLoggingCategory>

#include <cstdio>

namespace {

constexpr int kCannotListen = 1;
constexpr int kNoWindow = 1;
constexpr int kBadCommandLine = 2;

void print(FILE *stream, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

} // namespace

int main(int argc, char *argv[])
{
    const QString problem = sim::Window::prepare(argc, argv);
    if (!problem.isEmpty()) {
        print(stderr, QStringLiteral("varnel-simulator: %1\n").arg(problem));
        return kNoWindow;
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
        print(stderr, options.text + QLatin1Char('\n'));
        return kBadCommandLine;
    case sim::CommandLine::ShowText:
        print(stdout, options.text);
        return 0;
    case sim::CommandLine::Run:
        break;
    }

    sim::Terminal terminal(options.scenario, options.login, options.speed);
    sim::Gateway gateway(options.root, options.allowedOrigins, options.inspector);
    if (!gateway.listen(options.port)) {
        print(stderr, QStringLiteral("varnel-simulator: cannot listen on 127.0.0.1:%1: %2\n")
                          .arg(options.port)
                          .arg(gateway.errorString()));
        return kCannotListen;
    }
    sim::quitOnSignals();
    const auto window = sim::Window::open(options, terminal, gateway);
    const QString address = QStringLiteral("http://127.0.0.1:%1/").arg(gateway.port());
    print(stdout, QStringLiteral("listening on %1\n").arg(address));
    if (options.open && !sim::openInBrowser(address))
        print(stderr, QStringLiteral("varnel-simulator: no browser could be started; open %1 yourself\n").arg(address));
    return QApplication::exec();
}
