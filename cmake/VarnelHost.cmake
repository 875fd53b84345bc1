# What a host's own build uses: in this project, and in every other through find_package(VarnelWebSDK).

# The host compiles the meta-objects of the interfaces that it implements: this adds them to a host's target.
#   varnel_implements_host(target)
function(varnel_implements_host target)
    get_target_property(folder VarnelWebSDK::HostInterface VARNEL_HOST_HEADERS)
    set(headers CommonQuotaHandler.h QCefView.h QvPresenterClass.h VarnelCefView.h)
    list(TRANSFORM headers PREPEND "${folder}/")
    target_sources(${target} PRIVATE ${headers})
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
    target_compile_definitions(${target} PRIVATE VARNEL_HOST_BUILD)
    target_link_libraries(${target} PUBLIC VarnelWebSDK::HostInterface)
endfunction()

# A host that does nothing yet: adds one source file for each header of the host interface, and calls
# varnel_implements_host. EXCEPT names the files that the target writes itself.
#   varnel_starter_host(target [EXCEPT QvCore.cpp QCefView.cpp …])
function(varnel_starter_host target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "EXCEPT")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "varnel_starter_host(${target}): what is \"${arg_UNPARSED_ARGUMENTS}\"?"
            " Files that the target writes itself follow EXCEPT.")
    endif()
    get_target_property(folder VarnelWebSDK::HostInterface VARNEL_STARTER_HOST)
    file(GLOB files RELATIVE "${folder}" CONFIGURE_DEPENDS "${folder}/*.cpp")
    foreach(file IN LISTS arg_EXCEPT)
        if(NOT file IN_LIST files)
            list(JOIN files ", " known)
            message(FATAL_ERROR "varnel_starter_host(${target}): the starter has no ${file}. It has ${known}.")
        endif()
    endforeach()
    list(REMOVE_ITEM files "" ${arg_EXCEPT})
    list(TRANSFORM files PREPEND "${folder}/")
    target_sources(${target} PRIVATE ${files})
    varnel_implements_host(${target})
endfunction()
