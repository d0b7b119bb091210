# Compiles SOURCES with Debian's cross compilers for arm64 and armv7 (syntax only, with OPTIONS):
# the NEON paths, which nothing on an x86-64 build machine otherwise sees, and the layout tables,
# whose 32-bit figures only a 32-bit compiler checks. Target headers first; GL, glm and
# GoogleTest headers, the same for every architecture, come from the build machine's tree.
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
