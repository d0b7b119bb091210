# Environment of every test: Mesa's own leaks are suppressed by name, ours are not. llvmpipe
# rasterises on the calling thread: with rasteriser threads alive at exit, LeakSanitizer's
# thread tracer crashes now and then (even with one, on a loaded machine).
set(TALVEQAM_TEST_ENVIRONMENT
    "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0"
    "UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1"
    "LP_NUM_THREADS=0")

# The same for scripts that start programs of the build themselves (scripts/fuzz.sh sources it).
list(TRANSFORM TALVEQAM_TEST_ENVIRONMENT PREPEND "export " OUTPUT_VARIABLE testExports)
list(JOIN testExports "\n" testExports)
file(WRITE ${PROJECT_BINARY_DIR}/test-environment.sh
     "${testExports}\nexport EGL_PLATFORM=surfaceless\n")

# gtest_discover_tests for `target` on a headless context, with the environment above. The
# environment goes in front of the command (env VAR=... test, or env VAR=... emulator test in
# a cross build): CMake 3.25 splits a list given as the ENVIRONMENT property of discovered tests.
include(GoogleTest)
function(talveqam_discover_tests target)
    set_target_properties(${target} PROPERTIES CROSSCOMPILING_EMULATOR
        "env;${TALVEQAM_TEST_ENVIRONMENT};EGL_PLATFORM=surfaceless;${CMAKE_CROSSCOMPILING_EMULATOR}")
    gtest_discover_tests(${target} DISCOVERY_MODE PRE_TEST)
endfunction()
