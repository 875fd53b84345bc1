#!/usr/bin/env bash
# Runs a Windows program under Wine, headless and with settings of its own.
# usage: run.sh PROGRAM [ARGUMENT…]
set -euo pipefail

root=$(readlink -f -- "$(dirname -- "${BASH_SOURCE[0]}")/../..")
libraries=$(readlink -f -- "$root/build/windows-libraries")
export WINEPREFIX=$libraries/wine
export WINEDEBUG=-all
# Neither .NET nor a browser is looked for. Without a debugger a crash ends the program with its status.
export WINEDLLOVERRIDES='mscoree,mshtml=;winedbg.exe=d'
runtime=$(echo /usr/lib/gcc/x86_64-w64-mingw32/*-posix)
export WINEPATH="${WINEPATH-$libraries/bin;$runtime;/usr/x86_64-w64-mingw32/lib}"
# Wine keeps back variables that begin with QT_, and passes on those that begin with WINEQT_ without the letters WINE.
export WINEQT_QPA_PLATFORM=offscreen
export WINEQT_FORCE_STDERR_LOGGING=1
# The server outlives the programs by a minute: one that a program has to start would keep that program's pipes open.
/usr/lib/wine/wineserver64 -p60 &>/dev/null </dev/null || true # it runs already
exec /usr/lib/wine/wine64 "$@"
