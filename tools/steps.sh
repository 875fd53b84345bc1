# shellcheck shell=bash
# Sourced by `dev`: running a step so that one sees that it lives and why it failed, and installing what is missing.

# ---- Steps: what runs, how long it takes, and what it said when it failed -------------------------------------------

logs=$PWD/build/logs # sourced from the root

die() {
    printf 'dev: %s\n' "$1" >&2
    exit "${2:-1}"
}

ticker_pid=
stop_ticker() {
    [[ -n $ticker_pid ]] || return 0
    kill "$ticker_pid" 2>/dev/null || true
    wait "$ticker_pid" 2>/dev/null || true
    ticker_pid=
    [[ ! -t 1 ]] || printf '\r\033[K'
}
trap stop_ticker EXIT
trap 'exit 130' INT # a tool that handles Ctrl-C itself must not let the next step begin

# Some tools colour what they print even where nobody asked.
without_colours() {
    sed 's/\x1b\[[0-9;]*[mK]//g'
}

# Shows that a long step lives: one line that is rewritten on a terminal, a line now and then elsewhere.
ticker() {
    local name=$1 log=$2 start=$SECONDS next=15 line
    while sleep 1 &>/dev/null && kill -0 $$ 2>/dev/null; do
        line=$(tail -n 1 -- "$log" 2>/dev/null | without_colours | tr -d '\000-\037') || line=
        if [[ -t 1 ]]; then
            printf '\r\033[K%s … %s s  %s' "$name" $((SECONDS - start)) "${line:0:60}"
        elif ((SECONDS - start >= next)); then
            next=$((SECONDS - start + 15))
            printf '    … %s s  %s\n' $((SECONDS - start)) "${line:0:90}"
        fi
    done
}

log_of() {
    printf '%s/%s.log' "$logs" "${1//[^[:alnum:].+-]/-}"
}

# logged NAME COMMAND…: runs the command with its output in a log and returns its status.
logged() {
    local name=$1 log start=$SECONDS status=0
    shift
    log=$(log_of "$name")
    mkdir -p -- "$logs"
    : >"$log"
    [[ -t 1 ]] || printf '%s\n' "$name"
    ticker "$name" "$log" &
    ticker_pid=$!
    "$@" >>"$log" 2>&1 </dev/null || status=$?
    stop_ticker
    if ((status == 0)); then
        printf '%s: done in %s s\n' "$name" $((SECONDS - start))
    else
        printf '%s: FAILED with status %s after %s s\n' "$name" "$status" $((SECONDS - start))
    fi
    return "$status"
}

# show_log NAME LINES [PATTERN]: the end of a step's log, without the lines that match the pattern.
show_log() {
    local log
    log=$(log_of "$1")
    { grep -a -v -E -- "${3:-^$}" "$log" || true; } | tail -n "$2" | without_colours | sed 's/^/    /'
    printf '    (whole log: %s)\n' "build/logs/${log##*/}"
}

# step NAME COMMAND…: a failure ends everything.
step() {
    logged "$@" && return
    show_log "$1" 60
    die "step failed: $1"
}

# ---- What must be installed ----------------------------------------------------------------------------------------

# What each group of work needs: a package, and after the colon the command that stands for it. Libraries and fonts have
# no command: dpkg is asked. Every preset configures the tests, so GoogleTest and Qt's WebSockets, which are clients in
# tests, are needed to build anything.
declare -A packages=(
    [build]='g++:g++ cmake:cmake ninja-build:ninja ccache:ccache libboost-dev qtbase5-dev libqt5websockets5-dev libgtest-dev libgmock-dev rapidjson-dev'
    [web]='nodejs:node npm:npm'
    [test]='binutils:nm pkg-config:pkg-config abigail-tools:abidiff dpkg-dev:dpkg-shlibdeps'
    [tsan]='qtbase5-private-dev'
    [package]='dpkg-dev:dpkg-shlibdeps'
    [examples]='qtwebengine5-dev libqt5webchannel5-dev'
    [window]='qtwebengine5-dev libqt5webchannel5-dev fonts-wqy-zenhei'
    [browser]='chromium:chromium fonts-wqy-zenhei'
    [clang]='clang:clang++ libclang-rt-14-dev llvm:llvm-symbolizer'
    [coverage]='llvm:llvm-cov python3:python3'
    [windows]='g++-mingw-w64-x86-64-posix:x86_64-w64-mingw32-g++-posix wine64 googletest dpkg-dev:dpkg-source xz-utils:xz'
    [mutate]='python3:python3'
    [docs]='doxygen:doxygen python3:python3'
    [bench]='libbenchmark-dev libqt5webchannel5-dev'
    [lint]='clang-format:clang-format clang-tidy:clang-tidy python3:python3 shellcheck:shellcheck'
    [format]='clang-format:clang-format'
)

present() { # PACKAGE[:COMMAND]
    case $1 in
    nodejs:*) [[ $(node -p 'process.versions.node.split(".")[0] >= 18' 2>/dev/null) == true ]] ;;
    *:*) command -v "${1#*:}" >/dev/null ;;
    *) ! command -v dpkg-query >/dev/null || [[ $(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null) == installed* ]] ;;
    esac
}

missing() { # GROUP…
    local group entry
    for group in "$@"; do
        for entry in ${packages[$group]}; do
            present "$entry" || printf '%s\n' "${entry%%:*}"
        done
    done
}

# One step, because a package that is not found is often explained by what the update before it said.
update_and_install() { # PACKAGE…
    "${apt[@]}" update && "${apt[@]}" install --no-install-recommends "$@"
}

need() { # GROUP…
    local wanted as_root=(env DEBIAN_FRONTEND=noninteractive)
    mapfile -t wanted < <(missing "$@")
    ((${#wanted[@]})) || return 0
    command -v apt-get >/dev/null || die "missing, and there is no apt-get to install it: ${wanted[*]}"
    if ((EUID != 0)); then
        command -v sudo >/dev/null ||
            die "neither root nor sudo; install this as root: apt-get install --no-install-recommends ${wanted[*]}"
        # Asks for the password here, where its prompt can be seen.
        sudo -n true 2>/dev/null || sudo -v || die "sudo refused; as root: apt-get install --no-install-recommends ${wanted[*]}"
        as_root=(sudo "${as_root[@]}")
    fi
    printf 'installing with apt-get: %s\n' "${wanted[*]}"
    # A machine that has just started may still hold the lock for its own updates.
    local apt=("${as_root[@]}" apt-get -q -y -o DPkg::Lock::Timeout=600 -o Acquire::Retries=3)
    step 'install packages' update_and_install "${wanted[@]}"
    hash -r
    mapfile -t wanted < <(missing "$@")
    ((${#wanted[@]} == 0)) || die "installed, but still missing or too old (node must be 18 or newer): ${wanted[*]}"
}
