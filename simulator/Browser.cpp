#include "Browser.h"

#ifdef Q_OS_WIN
#    include <windows.h>

#    include <objbase.h>
#    include <shellapi.h>
#else
#    include <QProcess>
#endif

namespace sim {

// Not QDesktopServices: without a display Qt cannot open anything.

#ifdef Q_OS_WIN

bool openInBrowser(const QString &address)
{
    constexpr quintptr kLastError = 32; // larger values mean success
    // Some browsers are started by components of the system.
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    const HINSTANCE result = ShellExecuteW(nullptr, L"open", reinterpret_cast<const wchar_t *>(address.utf16()),
                                           nullptr, nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<quintptr>(result) > kLastError;
}

#else

bool openInBrowser(const QString &address)
{
    return QProcess::startDetached(QStringLiteral("xdg-open"), {address});
}

#endif

} // namespace sim
