# Builds an example as its reader would, in a copy of its folder and with the installed package, and runs it. It must
# print what the first text block of its README shows, and end with status 0.
#   cmake -DEXAMPLE=folder -DWORK=folder -DPREFIX=folder -DGENERATOR=name [-DLAUNCHER=command] [-DOPTIONS=-D…;-D…]
#         [-DEMULATOR=command] [-DARGUMENTS=…] -P run_example.cmake
# OPTIONS go to CMake: the compiler or a toolchain file, the build type, …
cmake_minimum_required(VERSION 3.21)

file(READ "${EXAMPLE}/README.md" expected)
if(NOT expected MATCHES "\n```text\n([^`]+)\n```")
    message(FATAL_ERROR "${EXAMPLE}/README.md does not show what the example prints")
endif()
set(expected "${CMAKE_MATCH_1}")

file(REMOVE_RECURSE "${WORK}")
file(COPY "${EXAMPLE}/" DESTINATION "${WORK}/source")

execute_process(COMMAND_ERROR_IS_FATAL ANY
    COMMAND ${CMAKE_COMMAND} -G "${GENERATOR}" -S "${WORK}/source" -B "${WORK}/build"
        "-DCMAKE_PREFIX_PATH=${PREFIX}" "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}" ${OPTIONS})
execute_process(COMMAND_ERROR_IS_FATAL ANY COMMAND ${CMAKE_COMMAND} --build "${WORK}/build" --parallel 2)

get_filename_component(name "${EXAMPLE}" NAME)
string(REGEX REPLACE "^[0-9]+-" "" name "${name}")
file(GLOB program "${WORK}/build/${name}" "${WORK}/build/${name}.exe")
execute_process(COMMAND ${EMULATOR} "${program}" ${ARGUMENTS}
    OUTPUT_VARIABLE printed RESULT_VARIABLE status ENCODING UTF-8 TIMEOUT 120)
string(REPLACE "\r\n" "\n" printed "${printed}")
string(STRIP "${printed}" printed)
if(NOT status EQUAL 0 OR NOT printed STREQUAL expected)
    message(NOTICE "It printed\n${printed}\n\nIts README shows\n${expected}\n")
    message(FATAL_ERROR "${name} ended with \"${status}\".")
endif()
