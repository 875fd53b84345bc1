# Reads the symbol table of the shared library: the classes that hosts use must be there, and no strong symbol
# of ours outside them. Weak ones are templates and inline functions that every library repeats.
#   cmake -DNM=… -DLIBRARY=… -DCLASSES="A;B" -P check_exports.cmake
execute_process(COMMAND "${NM}" --dynamic --defined-only --demangle "${LIBRARY}"
    OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE ";" "," symbols "${symbols}")
string(REGEX REPLACE "\n$" "" symbols "${symbols}")
string(REPLACE "\n" ";" symbols "${symbols}")

string(REPLACE ";" "|" classes "${CLASSES}")
set(problems "")
# Not ours: what the linker and the address sanitizer add.
set(added "(__bss_start|_edata|_end|_init|_fini|__odr_asan\\..*)$")
foreach(symbol IN LISTS symbols)
    if(symbol MATCHES "^[0-9a-f]+ [A-Z] " AND NOT symbol MATCHES "^[0-9a-f]+ [WV] " AND NOT symbol MATCHES " ${added}"
       AND NOT symbol MATCHES "^[0-9a-f]+ [A-Z] ((vtable|typeinfo|typeinfo name|non-virtual thunk) (for|to) )?(${classes})(::|$)")
        list(APPEND problems "  exported, but not for hosts: ${symbol}")
    endif()
endforeach()
foreach(class IN LISTS CLASSES)
    if(NOT symbols MATCHES " T ${class}::metaObject\\(\\)")
        list(APPEND problems "  not exported: ${class}")
    endif()
endforeach()
if(problems)
    list(JOIN problems "\n" problems)
    message(FATAL_ERROR "The exports of ${LIBRARY} are not as they should be:\n${problems}")
endif()
