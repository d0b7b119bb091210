# Compiles the ARM NEON paths with Debian's cross compilers (syntax only): nothing else on an
# x86-64 build machine ever sees that code.
foreach(compiler IN ITEMS "aarch64-linux-gnu-g++" "arm-linux-gnueabihf-g++;-mfpu=neon")
    foreach(source IN LISTS SOURCES)
        execute_process(
            COMMAND ${compiler} -std=c++17 -fsyntax-only -Wall -Wextra -Werror
                    -I${ROOT} -I${ANDROID_HOST_INCLUDE} -I${GLM_INCLUDE} ${source}
            RESULT_VARIABLE status ERROR_VARIABLE errors)
        if(NOT status EQUAL 0)
            message(FATAL_ERROR "${compiler} rejects ${source}:\n${errors}")
        endif()
    endforeach()
endforeach()
message(STATUS "NEON paths compile for arm64 and armv7")
