#!/usr/bin/env bash
# Presses Ctrl-C twice in a program that hangs after the first one.
# usage: second_ctrl_c.sh PROGRAM [ARGUMENT…]
set -euo pipefail

expect() { # LINE: the program's next one
    local line
    IFS= read -r line <&"$output"
    [[ ${line%$'\r'} == "$1" ]] || { printf 'printed "%s", not "%s"\n' "$line" "$1" && exit 1; }
}

exec {output}< <(exec "$@")
program=$!
expect ready
kill -INT "$program"
expect hanging
kill -INT "$program"
status=0
wait "$program" || status=$?
((status == 130)) || { printf 'ended with status %s, not 130\n' "$status" && exit 1; }
