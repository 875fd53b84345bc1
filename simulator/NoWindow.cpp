#include "Window.h"

#include <QFileInfo>

#include <algorithm>
#include <cstring>

#ifdef Q_OS_LINUX
#    include <unistd.h>
#endif

namespace sim {

namespace {

bool isAskedFor(int argc, char *argv[])
{
    return std::any_of(argv + 1, argv + argc, [](const char *option) { return std::strcmp(option, "--window") == 0; });
}

/// Goes on as the program beside this one; returns only when that is not there.
void becomeWindowProgram(char *argv[])
{
#ifdef Q_OS_LINUX
    const QString folder = QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).path();
    execv(QFile::encodeName(folder + QStringLiteral("/varnel-simulator-window")).constData(), argv);
#else
    Q_UNUSED(argv)
#endif
}

} // namespace

const bool Window::isThere = false;

QString Window::prepare(int argc, char *argv[])
{
    if (isAskedFor(argc, argv)) {
        becomeWindowProgram(argv);
#ifdef Q_OS_WIN
        return QStringLiteral("there is no --window on Windows");
#else
        return QStringLiteral(
            "--window needs the program varnel-simulator-window: install the package of that name, or "
            "qtwebengine5-dev and libqt5webchannel5-dev before you build");
#endif
    }
    const auto missing = [](const char *name) { return qEnvironmentVariableIsEmpty(name); };
#ifdef Q_OS_WIN
    const bool hasDisplay = false; // the program comes with Qt's offscreen platform only
#else
    const bool hasDisplay = !missing("DISPLAY") || !missing("WAYLAND_DISPLAY");
#endif
    if (missing("QT_QPA_PLATFORM") && !hasDisplay)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    return QString();
}

std::unique_ptr<QWidget> Window::open(const CommandLine &, Terminal &, Gateway &)
{
    return nullptr;
}

} // namespace sim
