# Reads the includes of the simulator: a folder may include files of its own and of the folders before it in this list.
#   cmake -DROOT=… -P check_layers.cmake
cmake_policy(SET CMP0057 NEW) # IN_LIST
set(layers exchange books traffic platform services terminal host gateway recording window call)

set(problems "")
set(above ${layers})
foreach(layer IN LISTS layers)
    list(REMOVE_ITEM above ${layer})
    file(GLOB sources "${ROOT}/${layer}/*.h" "${ROOT}/${layer}/*.cpp")
    if(NOT sources)
        list(APPEND problems "  no sources: ${layer}")
    endif()
    foreach(source IN LISTS sources)
        file(STRINGS "${source}" includes REGEX "^#include \"[a-z]+/")
        foreach(include IN LISTS includes)
            string(REGEX REPLACE "^#include \"([a-z]+)/.*" "\\1" folder "${include}")
            if(folder IN_LIST above)
                list(APPEND problems "  ${source}: ${include}")
            endif()
        endforeach()
    endforeach()
endforeach()

# A folder that the list forgets would not be checked.
file(GLOB sources RELATIVE "${ROOT}" "${ROOT}/*/*.cpp")
foreach(source IN LISTS sources)
    get_filename_component(folder "${source}" DIRECTORY)
    if(NOT folder IN_LIST layers)
        list(APPEND problems "  not in the list of layers: ${folder}")
    endif()
endforeach()

if(problems)
    list(REMOVE_DUPLICATES problems)
    list(JOIN problems "\n" problems)
    message(FATAL_ERROR "Includes that run against the layers of the simulator:\n${problems}")
endif()
