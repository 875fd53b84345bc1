# Compares a binary with the description of its binary interface, or writes the description.
#   cmake -DABIDW=… -DABIDIFF=… -DBINARY=… -DDESCRIPTION=… -DSUPPRESSIONS=… -DNOW=… [-DWRITE=ON] -P abi.cmake
if(WRITE)
    set(NOW "${DESCRIPTION}")
endif()
execute_process(COMMAND "${ABIDW}" --suppressions "${SUPPRESSIONS}" --exported-interfaces-only --drop-private-types
        --no-show-locs --no-comp-dir-path --no-corpus-path --no-elf-needed --type-id-style hash
        --out-file "${NOW}" "${BINARY}"
    COMMAND_ERROR_IS_FATAL ANY)
if(WRITE)
    return()
endif()
# Description against description: abidiff would apply the suppressions of a binary to the description too, where types
# have no locations, and then see nothing.
execute_process(COMMAND "${ABIDIFF}" "${DESCRIPTION}" "${NOW}" OUTPUT_VARIABLE report RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "The binary interface has changed:\n${report}\n"
        "If that is meant, tell hosts in the CHANGELOG and build the target abi_descriptions.")
endif()
