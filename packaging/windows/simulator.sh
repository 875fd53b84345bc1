#!/usr/bin/env bash
# Runs varnel-simulator.exe under Wine as if it were a Unix program, so that the browser tests can use it.
# `./dev windows` puts it beside the program.
set -euo pipefail

# A test that wants a folder of its own has linked this file into it: the settings lie beside the program.
here=$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")
program=$here/varnel-simulator.exe
[[ -f $program ]] || ln -- "$here/../varnel-simulator.exe" "$program"
root=$here
until [[ -f $root/packaging/windows/run.sh || $root == / ]]; do root=$(dirname -- "$root"); done

# Wine makes a Ctrl-C of SIGINT, and ends a process on SIGTERM without telling it. On SIGKILL both end at once.
setpriv --pdeathsig KILL "$root/packaging/windows/run.sh" "$program" "$@" &
trap 'kill -INT $!' INT TERM
status=0
while kill -0 $! 2>/dev/null; do # a signal ends the wait
    wait $! && status=0 || status=$?
done
exit "$status"
