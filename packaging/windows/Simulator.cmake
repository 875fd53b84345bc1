# Everything that varnel-simulator.exe needs on a machine that has neither Qt nor a compiler. Included where the package's
# parts are installed. Qt is a set of DLLs, because its licence lets users replace it.
set(programs DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT simulator)
install(FILES $<TARGET_FILE:Qt5::Core> $<TARGET_FILE:Qt5::Gui> $<TARGET_FILE:Qt5::Widgets>
    "${CMAKE_CURRENT_LIST_DIR}/qt.conf" ${programs})
install(FILES $<TARGET_FILE:Qt5::QOffscreenIntegrationPlugin>
    DESTINATION "${CMAKE_INSTALL_BINDIR}/platforms" COMPONENT simulator)

# The compiler's libraries, without the debug information that makes them large.
foreach(library IN ITEMS libstdc++-6 libgcc_s_seh-1 libwinpthread-1)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=${library}.dll"
        OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(stripped "${CMAKE_CURRENT_BINARY_DIR}/${library}.dll")
    execute_process(COMMAND "${CMAKE_STRIP}" -o "${stripped}" "${file}" COMMAND_ERROR_IS_FATAL ANY)
    install(FILES "${stripped}" ${programs})
endforeach()

set(qt_version "${Qt5Core_VERSION}")
foreach(text IN ITEMS README.txt start-simulator.cmd)
    configure_file("${CMAKE_CURRENT_LIST_DIR}/${text}.in" "${text}" @ONLY NEWLINE_STYLE WIN32)
    install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${text}" DESTINATION . COMPONENT simulator)
endforeach()

# The licences of what others wrote, as Debian tells them of the packages that it was built from.
set(licences DESTINATION licences COMPONENT simulator)
install(FILES "${CMAKE_CURRENT_LIST_DIR}/boost.txt" /usr/share/common-licenses/GPL-3 /usr/share/common-licenses/LGPL-3
    ${licences})
foreach(entry IN ITEMS qt=libqt5core5a gcc=gcc-mingw-w64-base mingw-w64=mingw-w64-x86-64-dev rapidjson=rapidjson-dev)
    string(REGEX REPLACE "=.*" "" name "${entry}")
    string(REGEX REPLACE ".*=" "" package "${entry}")
    install(FILES "/usr/share/doc/${package}/copyright" RENAME "${name}.txt" ${licences})
endforeach()
install(FILES "${CMAKE_CURRENT_LIST_DIR}/build-libraries.sh" RENAME how-qt-was-built.sh ${licences})
