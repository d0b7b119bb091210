# Run by cmake --install: installs the public headers with their paths below
# include/talveqam. Public are the headers that mark a class or function TALVEQAM_EXPORT
# and every header of the library they include; internal ones (logging, host state, the
# headless context) stay out.
file(GLOB_RECURSE candidates RELATIVE "${TALVEQAM_SOURCE_DIR}"
     "${TALVEQAM_SOURCE_DIR}/Common/*.h" "${TALVEQAM_SOURCE_DIR}/Kinetra/*.h")
set(pending "")
foreach(header IN LISTS candidates)
    file(STRINGS "${TALVEQAM_SOURCE_DIR}/${header}" marks REGEX "TALVEQAM_EXPORT")
    if(marks)
        list(APPEND pending "${header}")
    endif()
endforeach()

set(public "")
while(pending)
    list(POP_FRONT pending header)
    list(FIND public "${header}" seen)  # no IN_LIST: install scripts run without policies
    if(seen GREATER -1)
        continue()
    endif()
    list(APPEND public "${header}")
    file(STRINGS "${TALVEQAM_SOURCE_DIR}/${header}" includes
         REGEX "^[ \t]*#[ \t]*include[ \t]*\"")
    foreach(line IN LISTS includes)
        string(REGEX REPLACE "^[^\"]*\"([^\"]+)\".*$" "\\1" included "${line}")
        if(NOT EXISTS "${TALVEQAM_SOURCE_DIR}/${included}")
            message(FATAL_ERROR "${header} includes \"${included}\", which would not be "
                                "installed: public headers include only library headers")
        endif()
        list(APPEND pending "${included}")
    endforeach()
endwhile()

list(SORT public)
foreach(header IN LISTS public)
    get_filename_component(folder "${header}" DIRECTORY)
    file(INSTALL "${TALVEQAM_SOURCE_DIR}/${header}"
         DESTINATION "${CMAKE_INSTALL_PREFIX}/${TALVEQAM_INSTALL_INCLUDEDIR}/${folder}")
endforeach()
