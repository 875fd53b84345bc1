# The packages that CPack makes: `./dev package` calls it.
set(CPACK_PACKAGE_NAME varnel-websdk)
set(CPACK_PACKAGE_VENDOR VarnelWebSDK)
set(CPACK_PACKAGE_CONTACT "VarnelWebSDK <varnel-websdk@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_COMPONENTS_ALL runtime development simulator documents)
if(TARGET varnel-simulator-window)
    list(APPEND CPACK_COMPONENTS_ALL window)
endif()

# One archive of everything.
set(CPACK_ARCHIVE_COMPONENT_INSTALL OFF)
string(TOLOWER "${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}" platform)
if(MINGW) # only for programs of the same compiler
    string(APPEND platform "-mingw")
endif()
set(CPACK_PACKAGE_FILE_NAME "varnel-websdk-${PROJECT_VERSION}-${platform}")

if(WIN32)
    set(CPACK_GENERATOR ZIP)
    # The simulator is for page developers, who need no library: it has an archive of its own.
    foreach(component IN ITEMS runtime development documents)
        list(APPEND CPACK_INSTALL_CMAKE_PROJECTS "${CMAKE_BINARY_DIR}" "${PROJECT_NAME}" ${component} /)
    endforeach()
    configure_file(windows/SimulatorPackage.cmake.in "${CMAKE_BINARY_DIR}/SimulatorPackage.cmake" @ONLY)
else()
    set(CPACK_GENERATOR TGZ DEB)
endif()

# One .deb for each component.
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PACKAGING_INSTALL_PREFIX_DEB /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_BINARY_DIR}/src" "${CMAKE_BINARY_DIR}/simulator")

set(runtime_package "libvarnel-websdk${VARNEL_SOVERSION}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME "${runtime_package}")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "The shared library.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_LIST_DIR}/debian/triggers")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvarnel-websdk-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION}), qtbase5-dev (>= 5.15)")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Headers, CMake files, a host to start from, and the check of a host.")

set(CPACK_DEBIAN_SIMULATOR_PACKAGE_NAME varnel-simulator)
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_SIMULATOR_DESCRIPTION "A simulated terminal that serves web pages to a browser.")

set(CPACK_DEBIAN_WINDOW_PACKAGE_NAME varnel-simulator-window)
set(CPACK_DEBIAN_WINDOW_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_WINDOW_PACKAGE_DEPENDS "varnel-simulator (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_WINDOW_DESCRIPTION "The simulated terminal's window, for varnel-simulator --window.")

set(CPACK_DEBIAN_DOCUMENTS_PACKAGE_NAME varnel-websdk-doc)
set(CPACK_DEBIAN_DOCUMENTS_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTS_PACKAGE_ARCHITECTURE all)
set(CPACK_COMPONENT_DOCUMENTS_DESCRIPTION "Documents and examples.")

include(CPack)
