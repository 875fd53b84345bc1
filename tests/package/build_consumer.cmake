# Builds the consumer against an installed package and runs it. The sources are copied first, so that no relative path
# reaches the tree.
#   cmake -DSOURCE=… -DWORK=… -DPREFIX=… -DVERSION=… -DGENERATOR=… -DCOMPILER=… -DBUILD_TYPE=… -DLAUNCHER=…
#         -P build_consumer.cmake
file(REMOVE_RECURSE "${WORK}")
file(COPY "${SOURCE}/" DESTINATION "${WORK}/source")
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${WORK}/source" -B "${WORK}/build" -G "${GENERATOR}"
        "-DCMAKE_PREFIX_PATH=${PREFIX}" "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_BUILD_TYPE=${BUILD_TYPE}"
        "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}" "-DEXPECTED_VERSION=${VERSION}"
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK}/build" COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${WORK}/build/consumer" OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
set(expected "a token of the consumer")
if(NOT output MATCHES "${expected}")
    message(FATAL_ERROR "The consumer printed \"${output}\", which has no \"${expected}\".")
endif()
