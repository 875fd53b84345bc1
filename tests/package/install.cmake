# Installs a build tree into an empty prefix. With SOURCE it configures and builds the static library there first.
#   cmake -DBUILD=… -DPREFIX=… [-DSOURCE=… -DGENERATOR=… -DCOMPILER=… -DBUILD_TYPE=…] -P install.cmake
if(SOURCE)
    execute_process(COMMAND "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${BUILD}" -G "${GENERATOR}"
            "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_BUILD_TYPE=${BUILD_TYPE}" -DVARNEL_BUILD_STATIC=ON
            -DVARNEL_BUILD_SIMULATOR=OFF -DVARNEL_BUILD_TESTS=OFF
        COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND "${CMAKE_COMMAND}" --build "${BUILD}" COMMAND_ERROR_IS_FATAL ANY)
endif()
file(REMOVE_RECURSE "${PREFIX}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${PREFIX}" COMMAND_ERROR_IS_FATAL ANY)
