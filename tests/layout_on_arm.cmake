# Compiles the layout tables with Debian's cross compilers (syntax only), so the 32-bit ARM
# figures are checked as well as the 64-bit ones. Target headers first; GL, glm and GoogleTest
# headers, which are the same for every architecture, come from the build machine's tree.
foreach(compiler IN ITEMS "aarch64-linux-gnu-g++" "arm-linux-gnueabihf-g++;-mfpu=neon")
    foreach(source IN LISTS SOURCES)
        execute_process(
            COMMAND ${compiler} -std=c++17 -fsyntax-only -Wall -Wextra -Werror ${OPTIONS}
                    -I${ROOT} -I${ANDROID_HOST_INCLUDE} -idirafter /usr/include ${source}
            RESULT_VARIABLE status ERROR_VARIABLE errors)
        if(NOT status EQUAL 0)
            message(FATAL_ERROR "${compiler} rejects ${source}:\n${errors}")
        endif()
    endforeach()
endforeach()
message(STATUS "layout tables hold for arm64 and armv7")
