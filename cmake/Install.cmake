# cmake --install: libtalveQamCommon.so with its public headers under include/talveqam, the
# Native jar, and a package config for effect libraries built outside this tree:
#   find_package(TalveQam)
#   target_link_libraries(myEffect PRIVATE TalveQam::talveQamCommon)
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(TALVEQAM_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/talveqam)
set(TALVEQAM_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/TalveQam)

# What an installed effect library builds with: the headers, glm (found by the package
# config) and the GL libraries it calls itself.
target_include_directories(talveQamCommon INTERFACE
    $<INSTALL_INTERFACE:${TALVEQAM_INSTALL_INCLUDEDIR}>)
target_link_libraries(talveQamCommon INTERFACE $<INSTALL_INTERFACE:EGL> $<INSTALL_INTERFACE:GLESv2>)

install(TARGETS talveQamCommon EXPORT TalveQamTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT TalveQamTargets NAMESPACE TalveQam:: DESTINATION ${TALVEQAM_INSTALL_CMAKEDIR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/TalveQamConfig.cmake.in
    ${PROJECT_BINARY_DIR}/TalveQamConfig.cmake
    INSTALL_DESTINATION ${TALVEQAM_INSTALL_CMAKEDIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TalveQamConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TalveQamConfig.cmake
              ${PROJECT_BINARY_DIR}/TalveQamConfigVersion.cmake
        DESTINATION ${TALVEQAM_INSTALL_CMAKEDIR})

# The headers are picked when installing, so a new exported class needs no list kept here.
install(CODE "set(TALVEQAM_SOURCE_DIR \"${PROJECT_SOURCE_DIR}\")
set(TALVEQAM_INSTALL_INCLUDEDIR \"${TALVEQAM_INSTALL_INCLUDEDIR}\")")
install(SCRIPT ${CMAKE_CURRENT_LIST_DIR}/InstallHeaders.cmake)

if(TARGET talveQamNative)
    install_jar(talveQamNative DESTINATION ${CMAKE_INSTALL_DATADIR}/java)
endif()
