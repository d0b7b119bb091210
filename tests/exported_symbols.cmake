# Fails when LIBRARY exports a symbol outside the JNI functions and the vi and Kinetra namespaces,
# or lacks one of the draw classes' overrides.
cmake_policy(VERSION 3.25)
execute_process(COMMAND ${NM} -D -C --defined-only --format=posix "${LIBRARY}"
                OUTPUT_VARIABLE table RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${NM} failed on ${LIBRARY}")
endif()
string(REPLACE ";" "\\;" table "${table}")
string(REPLACE "\n" ";" lines "${table}")
set(bad "")
set(defined "")
foreach(line IN LISTS lines)
    string(REGEX REPLACE " [A-Za-z] [0-9a-f]+( [0-9a-f]+)?$" "" symbol "${line}")
    if(symbol STREQUAL "" OR symbol MATCHES "^(_init|_fini|_edata|_end|__bss_start)$")
        continue()  # empty line or a linker-made marker
    endif()
    if(symbol MATCHES "^Java_com_korvane_android_visualeffect_lock_common_Native_")
        continue()
    endif()
    # Classes of vi and Kinetra, with their vtables, typeinfo and guard variables.
    if(symbol MATCHES "^((vtable|typeinfo|typeinfo name|VTT|guard variable) for )?(vi|Kinetra)::")
        list(APPEND defined "${symbol}")
        continue()
    endif()
    list(APPEND bad "${symbol}")
endforeach()

# Every override of the draw classes is defined here: an effect library's vtable or qualified
# call may name any of them.
foreach(class IN ITEMS KNDrawBackground KNDrawBGTilt KNDrawRadialColorBrush
                       KNDrawRadialColorBrushColor KNDrawRadialWaterBrush KNDrawBrilliantAdvect
                       KNDrawBrilliantRadial KNDrawBrilliantRing)
    foreach(operation IN ITEMS "~${class}()" "contextChanged()" "initRender(float, float)"
                               "drawRender()")
        if(NOT "Kinetra::${class}::${operation}" IN_LIST defined)
            list(APPEND bad "missing: Kinetra::${class}::${operation}")
        endif()
    endforeach()
endforeach()
if(bad)
    list(JOIN bad "\n  " text)
    message(FATAL_ERROR "unexpected or missing exported symbols:\n  ${text}")
endif()
message(STATUS "exported symbols ok")
