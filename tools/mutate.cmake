# Read only by the build of tools/mutate.py, which compiles one source file of the library again for each change: Qt's
# headers are compiled once, and nobody debugs a mutant or reads its warnings.
function(varnel_build_quickly)
    foreach(target varnel_websdk_objects varnel_json)
        target_precompile_headers(${target} PRIVATE
            <QtCore/QtCore> <QtWidgets/QWidget> <algorithm> <functional> <memory> <mutex>)
        target_compile_options(${target} PRIVATE -g0 -w)
    endforeach()
endfunction()
cmake_language(DEFER CALL varnel_build_quickly) # once the targets are there
