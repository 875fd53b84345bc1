# How every target of this project is built, and one function per kind of target.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# What was compiled before is taken from ccache, also by another clone: paths below the root are hashed as relative ones.
find_program(VARNEL_CCACHE ccache)
if(VARNEL_STANDALONE AND VARNEL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${VARNEL_CCACHE})
endif()

add_library(varnel_build_options INTERFACE)
target_compile_definitions(varnel_build_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_DEPRECATED_WARNINGS
    QT_MESSAGELOGCONTEXT) # log lines keep file, line and function in release builds too
if(MSVC)
    target_compile_options(varnel_build_options INTERFACE
        /W4 /utf-8 /permissive- /Zc:__cplusplus
        /bigobj) # tests have more sections than an object of the older format
    if(VARNEL_WARNINGS_AS_ERRORS)
        target_compile_options(varnel_build_options INTERFACE /WX)
    endif()
else()
    file(RELATIVE_PATH from_build_to_source "${CMAKE_BINARY_DIR}" "${PROJECT_SOURCE_DIR}")
    string(REGEX REPLACE "([^/])$" "\\1/" from_build_to_source "${from_build_to_source}") # CMake ends only some with /
    target_compile_options(varnel_build_options INTERFACE
        -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual
        # Qt's logging macros are called without the arguments that they could have.
        $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>
        # No path of the build machine in log lines and binaries. ccache hands the compiler relative paths.
        $<$<BOOL:${from_build_to_source}>:-fmacro-prefix-map=${from_build_to_source}=>
        -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)
    if(VARNEL_WARNINGS_AS_ERRORS)
        target_compile_options(varnel_build_options INTERFACE -Werror)
    endif()
    if(VARNEL_SANITIZE)
        target_compile_options(varnel_build_options INTERFACE
            -fsanitize=${VARNEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(varnel_build_options INTERFACE -fsanitize=${VARNEL_SANITIZE})
    endif()
    if(VARNEL_COVERAGE)
        target_compile_options(varnel_build_options INTERFACE -fprofile-instr-generate -fcoverage-mapping)
        target_link_options(varnel_build_options INTERFACE -fprofile-instr-generate)
    endif()
endif()

# Under the thread sanitizer the program tells it which threads a queued signal orders. Nothing elsewhere.
function(varnel_order_queued_signals name)
    if(VARNEL_SANITIZE STREQUAL "thread")
        target_sources(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests/QueuedSignalOrder.cpp")
        target_link_libraries(${name} PRIVATE Qt5::CorePrivate)
    endif()
endfunction()

# One GoogleTest executable; every case becomes a CTest test in a process of its own, because the library's
# singletons cannot be reset. Where no case uses these, TOGETHER_UNDER_WINE saves the start of many processes, which takes
# long there.
#   varnel_add_test(name SOURCES a.cpp … LIBRARIES lib … [TIMEOUT seconds] [TOGETHER_UNDER_WINE])
function(varnel_add_test name)
    cmake_parse_arguments(arg "TOGETHER_UNDER_WINE" "TIMEOUT" "SOURCES;LIBRARIES" ${ARGN})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 60)
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} GTest::gmock varnel_build_options)
    varnel_order_queued_signals(${name})
    # Not the tests' own property: gtest_discover_tests keeps only the first entry of a list.
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${PROJECT_SOURCE_DIR}/tests/TestEnvironment.cmake")
    if(arg_TOGETHER_UNDER_WINE AND CMAKE_CROSSCOMPILING)
        add_test(NAME ${name} COMMAND ${name})
        set_tests_properties(${name} PROPERTIES TIMEOUT 300)
        return()
    endif()
    gtest_discover_tests(${name}
        TEST_PREFIX "${name}."
        DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT ${arg_TIMEOUT})
endfunction()

# One fuzz target, <name>_fuzz, with its inputs in corpus/<name>. Where VARNEL_FUZZ is on, libFuzzer drives it; elsewhere
# it plays its inputs, as a CTest test.
#   varnel_add_fuzz_target(name SOURCES a.cpp … LIBRARIES lib …)
function(varnel_add_fuzz_target name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name}_fuzz ${arg_SOURCES})
    target_include_directories(${name}_fuzz PRIVATE "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${name}_fuzz PRIVATE ${arg_LIBRARIES} varnel_build_options)
    if(VARNEL_FUZZ)
        target_link_options(${name}_fuzz PRIVATE -fsanitize=fuzzer)
        return()
    endif()
    target_sources(${name}_fuzz PRIVATE "${PROJECT_SOURCE_DIR}/tests/fuzz/PlayCorpus.cpp")
    varnel_order_queued_signals(${name}_fuzz)
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${PROJECT_SOURCE_DIR}/tests/TestEnvironment.cmake")
    add_test(NAME fuzz.${name}.PlaysItsCorpus
        COMMAND ${name}_fuzz "${PROJECT_SOURCE_DIR}/tests/fuzz/corpus/${name}")
    set_tests_properties(fuzz.${name}.PlaysItsCorpus PROPERTIES TIMEOUT 60)
endfunction()

# One Google Benchmark executable, run by `./dev bench`.
function(varnel_add_benchmark name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} benchmark::benchmark varnel_build_options)
    set_property(GLOBAL APPEND PROPERTY VARNEL_BENCHMARKS ${name})
endfunction()
