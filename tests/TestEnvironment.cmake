# Read by ctest, so that it holds for listing the tests as well as for running them.
set(ENV{QT_QPA_PLATFORM} offscreen)
set(ENV{ASAN_OPTIONS} detect_stack_use_after_return=1)
set(ENV{LSAN_OPTIONS} suppressions='${CMAKE_CURRENT_LIST_DIR}/lsan.supp':print_suppressions=0)
set(ENV{UBSAN_OPTIONS} print_stacktrace=1)
set(ENV{TSAN_OPTIONS} ignore_noninstrumented_modules=1:halt_on_error=1)
