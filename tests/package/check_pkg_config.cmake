# Compiles a source with the flags of the installed pkg-config file. It is linked by whoever brings a host, so the
# linker is only asked whether it finds the library.
#   cmake -DPREFIX=… -DCOMPILER=… -DVERSION=… -DWORK=… -DSOURCE=… -P check_pkg_config.cmake
file(MAKE_DIRECTORY "${WORK}")
set(ENV{PKG_CONFIG_PATH} "${PREFIX}/lib/pkgconfig")
find_program(PKG_CONFIG pkg-config REQUIRED)
execute_process(COMMAND "${PKG_CONFIG}" --modversion varnel-websdk
    OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
if(NOT version STREQUAL VERSION)
    message(FATAL_ERROR "pkg-config says version ${version}, not ${VERSION}.")
endif()
foreach(what IN ITEMS cflags libs)
    execute_process(COMMAND "${PKG_CONFIG}" --${what} varnel-websdk
        OUTPUT_VARIABLE ${what} OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(${what} UNIX_COMMAND "${${what}}")
endforeach()
execute_process(COMMAND "${COMPILER}" -std=c++17 -fPIC ${cflags} -c "${SOURCE}" -o "${WORK}/main.o"
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${COMPILER}" "${WORK}/main.o" -o "${WORK}/program" ${libs} -Wl,--unresolved-symbols=ignore-all
    COMMAND_ERROR_IS_FATAL ANY)
