# Compiles for x86-64 Windows with Debian's MinGW-w64. `./dev windows` makes the folder of libraries.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Qt and GoogleTest, and a folder that has nothing of /usr/include but Boost and RapidJSON, which are headers
# only.
get_filename_component(build "${CMAKE_CURRENT_LIST_DIR}/../../build" ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH "${build}/windows-libraries" "${build}/windows-headers" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# CTest runs the programs through it.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/run.sh")
