# Makes the Debian packages and looks at what each says of itself and brings.
#   cmake -DBUILD=… -DWORK=… -DVERSION=… -DSOVERSION=… -DWINDOW=… -DSOURCE=… -P check_packages.cmake
file(REMOVE_RECURSE "${WORK}")
# The lists of what the packages consist of are made from the npm packages, which a run of the C++ tests alone lacks.
if(EXISTS "${SOURCE}/node_modules")
    execute_process(COMMAND node "${SOURCE}/tools/sbom.mjs" "${SOURCE}/build/sbom" COMMAND_ERROR_IS_FATAL ANY)
    set(library_bill "share/doc/VarnelWebSDK/sbom/library\\.cdx\\.json")
    set(simulator_bill "share/doc/VarnelWebSDK/sbom/simulator\\.cdx\\.json"
        "share/doc/VarnelWebSDK/sbom/npm-licences\\.txt")
endif()
execute_process(COMMAND "${CMAKE_CPACK_COMMAND}" -G DEB -B "${WORK}" --config "${BUILD}/CPackConfig.cmake"
    WORKING_DIRECTORY "${BUILD}" COMMAND_ERROR_IS_FATAL ANY)

# expect(package ARCHITECTURE a [DEPENDS regex…] FILES regex… [ONLY regex])
#   ONLY: every file matches it
function(expect package)
    cmake_parse_arguments(arg "" "ARCHITECTURE;ONLY" "DEPENDS;FILES" ${ARGN})
    set(file "${WORK}/${package}_${VERSION}_${arg_ARCHITECTURE}.deb")
    execute_process(COMMAND dpkg-deb --field "${file}" Depends OUTPUT_VARIABLE depends COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND dpkg-deb --fsys-tarfile "${file}" COMMAND tar --list
        OUTPUT_VARIABLE files COMMAND_ERROR_IS_FATAL ANY)
    foreach(pattern IN LISTS arg_DEPENDS)
        if(NOT depends MATCHES "(^|, )${pattern}")
            message(SEND_ERROR "${package} depends on \"${depends}\", but not on ${pattern}.")
        endif()
    endforeach()
    foreach(pattern IN LISTS arg_FILES)
        if(NOT files MATCHES "\n\\./usr/${pattern}\n")
            message(SEND_ERROR "${package} has no ${pattern}, but\n${files}")
        endif()
    endforeach()
    if(arg_ONLY)
        string(REGEX REPLACE "\n$" "" lines "${files}")
        string(REPLACE "\n" ";" lines "${lines}")
        list(FILTER lines EXCLUDE REGEX "/$|${arg_ONLY}")
        if(lines)
            message(SEND_ERROR "${package} also has ${lines}")
        endif()
    endif()
endfunction()

string(REPLACE "." "\\." version "${VERSION}")
string(REPLACE "." "\\." soversion "${SOVERSION}")
execute_process(COMMAND dpkg --print-architecture
    OUTPUT_VARIABLE here OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
set(runtime "libvarnel-websdk${SOVERSION}")

expect(${runtime} ARCHITECTURE ${here} DEPENDS libqt5core5a libc6
    FILES "lib/libVarnelWebSDK\\.so\\.${soversion}" "lib/libVarnelWebSDK\\.so\\.${version}" ${library_bill}
    ONLY "/libVarnelWebSDK\\.so\\.|/sbom/library\\.cdx\\.json$")
expect(libvarnel-websdk-dev ARCHITECTURE ${here} DEPENDS "${runtime} \\(= ${version}\\)" qtbase5-dev
    FILES "lib/libVarnelWebSDK\\.so" "lib/pkgconfig/varnel-websdk\\.pc" "lib/cmake/VarnelWebSDK/VarnelWebSDKConfig\\.cmake"
        "include/VarnelWebSDK/host/QvCore\\.h" "share/VarnelWebSDK/starter/QvCore\\.cpp"
        "lib/libvarnel_host_check\\.a")
expect(varnel-simulator ARCHITECTURE ${here} DEPENDS "${runtime} \\(= ${version}\\)" libqt5widgets5
    FILES "bin/varnel-simulator" "bin/varnel-call" "share/VarnelWebSDK/scenarios/scenario\\.schema\\.json"
        "lib/varnel-simulator/libVarnelSimHost\\.so" ${simulator_bill})
if(WINDOW)
    expect(varnel-simulator-window ARCHITECTURE ${here} DEPENDS "varnel-simulator \\(= ${version}\\)"
            libqt5webenginewidgets5 libqt5webchannel5
        FILES "bin/varnel-simulator-window" ONLY "/bin/varnel-simulator-window$")
endif()
expect(varnel-websdk-doc ARCHITECTURE all
    FILES "share/doc/VarnelWebSDK/docs/hosting\\.md" "share/doc/VarnelWebSDK/examples/01-embed/main\\.cpp")
