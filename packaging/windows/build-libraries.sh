#!/usr/bin/env bash
# Builds what the library and its tests use of Qt and GoogleTest for x86-64 Windows, from Debian's source packages.
# usage: build-libraries.sh FOLDER    makes the folder when all that belongs into it is complete
set -euo pipefail

target=$1
here=$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")
jobs=${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}
mkdir -p -- "$(dirname -- "$target")"
exec {lock}>"$target.lock"
flock "$lock" # another clone may be at it
[[ ! -d $target ]] || exit 0
work=$target.partial
rm -rf -- "$work"
trap 'rm -rf -- "$work"' EXIT

# ---- Qt's source ----------------------------------------------------------------------------------------------------

# apt is told where sources are in a configuration of its own, made from where this machine has its packages from.
apt=$work/apt
mkdir -p -- "$apt/lists/partial" "$apt/sources"
for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [[ ! -f $file ]] || sed -n -E 's/^[[:blank:]]*deb[[:blank:]]/deb-src /p' "$file" >>"$apt/sources/source.list"
done
for file in /etc/apt/sources.list.d/*.sources; do
    [[ ! -f $file ]] || sed -E 's/^Types:.*/Types: deb-src/I' "$file" >"$apt/sources/$(basename -- "$file")"
done
cat >"$apt/apt.conf" <<CONF
Dir::Etc::sourcelist "/dev/null";
Dir::Etc::sourceparts "$apt/sources";
Dir::State::lists "$apt/lists";
Dir::Cache::pkgcache "";
Dir::Cache::srcpkgcache "";
Acquire::Retries "3";
APT::Sandbox::User "root"; // no other user may enter the cache of this one
CONF
mkdir -- "$work/source"
cd -- "$work/source"
APT_CONFIG=$apt/apt.conf apt-get -q update
APT_CONFIG=$apt/apt.conf apt-get -q source qtbase-opensource-src
source=$(echo "$work"/source/*/)
source=${source%/}

# ---- Qt's build ----------------------------------------------------------------------------------------------------

# Qt calls the compiler by its short name, which may stand for the one with Windows' own threads.
mkdir -- "$work/compiler"
for tool in gcc g++; do
    ln -s -- "$(command -v "x86_64-w64-mingw32-$tool-posix")" "$work/compiler/x86_64-w64-mingw32-$tool"
done
export PATH=$work/compiler:$PATH

# The tests use little of Qt and need no fast code: what takes long to compile and is not used is left out.
features=(
    sql network xml concurrent vulkan printer accessibility graphicsview statemachine pdf textodfwriter
    textmarkdownreader textmarkdownwriter movie wizard mdiarea calendarwidget colordialog fontdialog undocommand
    syntaxhighlighter columnview dial lcdnumber style-windowsvista
    tabletevent # Debian's source lacks a header that it needs
)
options=(
    -opensource -confirm-license -silent -prefix "$target"
    -platform linux-g++ -xplatform win32-g++ -device-option CROSS_COMPILE=x86_64-w64-mingw32-
    -release -shared -nomake examples -nomake tests -nomake tools
    -qt-zlib -qt-pcre -qt-libpng -qt-doubleconversion
    -qt-freetype # the offscreen platform needs it
    -no-harfbuzz -no-libjpeg -no-gif -no-opengl -no-dbus -no-icu -no-glib -no-ssl -no-direct2d
    "${features[@]/#/-no-feature-}"
    QMAKE_CFLAGS_RELEASE=-O1 QMAKE_CXXFLAGS_RELEASE=-O1
)
mkdir -- "$work/build"
cd -- "$work/build"
MAKEFLAGS=-j$jobs "$source/configure" "${options[@]}"
offscreen=src/plugins/platforms/offscreen
mkdir -p -- "$offscreen"
bin/qmake -o src/Makefile "$source/src/src.pro"
modules=(winmain corelib testlib gui widgets)
make -C src -j"$jobs" "${modules[@]/#/sub-}" sub-platformsupport
bin/qmake -o "$offscreen/Makefile" "$source/$offscreen/offscreen.pro"
make -C "$offscreen" -j"$jobs"

export INSTALL_ROOT=$work/root
installed=("${modules[@]}" moc rcc uic)
installed=("${installed[@]/#/sub-}")
make -C src "${installed[@]/%/-install_subtargets}"
make -C "$offscreen" install
# CMake asks whether these are there.
install -D -t "$INSTALL_ROOT$target/bin" bin/qmake
mkdir -p -- "$INSTALL_ROOT$target/mkspecs"
cp -r -t "$INSTALL_ROOT$target/mkspecs" "$source/mkspecs/win32-g++"

# ---- GoogleTest ----------------------------------------------------------------------------------------------------

# Shared, because a process must have it once: the host mock is a library that uses it, and so do the test programs.
cmake -G Ninja -S /usr/src/googletest -B "$work/googletest" -DCMAKE_TOOLCHAIN_FILE="$here/toolchain.cmake" \
    -DCMAKE_INSTALL_PREFIX="$target" -DBUILD_SHARED_LIBS=ON -Dgtest_disable_pthreads=ON
cmake --build "$work/googletest" --parallel "$jobs"
DESTDIR=$INSTALL_ROOT cmake --install "$work/googletest"

mv -T -- "$INSTALL_ROOT$target" "$target"
