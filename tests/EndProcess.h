#pragma once

#include <qglobal.h>

#ifdef Q_OS_WIN
#    include <windows.h>

#    include <cstdio>
#endif

/// What main() of a test program returns. On Windows the process ends here, without the destructors of statics: under
/// Wine it crashes now and then while these run after another thread has used Qt, also in tests that do not load the
/// library.
inline int endProcess(int status)
{
#ifdef Q_OS_WIN
    std::fflush(nullptr);
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
#endif
    return status;
}
