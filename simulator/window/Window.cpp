#include "Window.h"

#include "CommandLine.h"
#include "gateway/Gateway.h"
#include "window/TerminalWindow.h"

#include <QApplication>

#ifdef Q_OS_UNIX
#    include <unistd.h>
#endif

namespace sim {

const bool Window::isThere = true;

QString Window::prepare(int, char *[])
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (platform.isEmpty() && qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return QStringLiteral("there is no display to open the window on");
#ifdef Q_OS_UNIX
    if (geteuid() == 0 && qEnvironmentVariableIsEmpty("QTWEBENGINE_DISABLE_SANDBOX"))
        return QStringLiteral(
            "as root, Chromium runs without its sandbox only: start the simulator as another user, or "
            "set QTWEBENGINE_DISABLE_SANDBOX=1 if you trust the pages that you open");
#endif
    // That platform has no OpenGL.
    if (platform.startsWith("offscreen") && qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
        qputenv("QT_QUICK_BACKEND", "software");
    return QString();
}

std::unique_ptr<QWidget> Window::open(const CommandLine &options, Terminal &terminal, Gateway &gateway)
{
    QGuiApplication::setQuitOnLastWindowClosed(true);
    auto window = std::make_unique<TerminalWindow>(terminal, gateway, options.allowedOrigins);
    window->setAsksBeforeOrders(options.confirmOrders);
    const QUrl own(QStringLiteral("http://127.0.0.1:%1/").arg(gateway.port()));
    for (const QUrl &page : options.pages.isEmpty() ? QVector<QUrl>{own} : options.pages)
        window->open(page);
    window->show();
    return window;
}

} // namespace sim
