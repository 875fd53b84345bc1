# Read by the Windows presets only. The headers of Qt and GoogleTest take most of the time that a source needs, and are
# compiled once for each target.
function(varnel_precompile_headers)
    target_precompile_headers(varnel_websdk_objects PRIVATE <QtCore/QtCore> <QtWidgets/QWidget>)
    foreach(target VarnelHostMock common_test contract_test)
        target_precompile_headers(${target} PRIVATE <QtCore/QtCore> "${PROJECT_SOURCE_DIR}/tests/hostmock/HostTest.h")
    endforeach()
    foreach(target varnel_websdk_objects VarnelHostMock common_test contract_test)
        target_compile_options(${target} PRIVATE -fpch-preprocess) # for ccache
    endforeach()
endfunction()
cmake_language(DEFER CALL varnel_precompile_headers) # once the targets are there
