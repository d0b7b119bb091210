# talveqam::platform: GLES2, EGL and the Android log, from the NDK on Android and from
# Debian's packages (Mesa, android-liblog-dev) on Linux.
add_library(talveqam_platform INTERFACE)
add_library(talveqam::platform ALIAS talveqam_platform)

# glm is header-only; on Android point GLM_INCLUDE at a copy of its headers.
find_path(GLM_INCLUDE glm/glm.hpp REQUIRED)
target_include_directories(talveqam_platform INTERFACE ${GLM_INCLUDE})

# Loads on devices with 16 KB pages.
if(ANDROID OR CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64")
    target_link_options(talveqam_platform INTERFACE -Wl,-z,max-page-size=16384)
endif()

if(ANDROID)
    target_link_libraries(talveqam_platform INTERFACE log android EGL GLESv2 dl)
else()
    find_library(EGL_LIBRARY EGL REQUIRED)
    find_library(GLES2_LIBRARY GLESv2 REQUIRED)
    set(ANDROID_HOST_LIBDIR /usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/android)
    find_library(ANDROID_LOG_LIBRARY log PATHS ${ANDROID_HOST_LIBDIR} NO_DEFAULT_PATH REQUIRED)
    # liblog's header and the NDK's asset manager header, from Debian's android-liblog-dev and
    # android-platform-frameworks-native-headers.
    find_path(ANDROID_HOST_INCLUDE android/log.h PATHS /usr/include/android NO_DEFAULT_PATH
              REQUIRED)
    find_path(ANDROID_ASSET_INCLUDE android/asset_manager.h PATHS /usr/include/android
              NO_DEFAULT_PATH REQUIRED)
    target_include_directories(talveqam_platform INTERFACE ${ANDROID_HOST_INCLUDE}
                               ${ANDROID_ASSET_INCLUDE})
    target_link_libraries(talveqam_platform INTERFACE ${EGL_LIBRARY} ${GLES2_LIBRARY}
                          ${ANDROID_LOG_LIBRARY} ${CMAKE_DL_LIBS})
    # Where liblog was found, inside the target's root in a cross build: qemu-arm doesn't map
    # the directory checks of its dynamic loader into that root.
    get_filename_component(androidLibraryDir ${ANDROID_LOG_LIBRARY} DIRECTORY)
    target_link_options(talveqam_platform INTERFACE -Wl,-rpath,${androidLibraryDir})

    # jni.h, javac and java all from the one JDK: Debian's 17 when present.
    file(GLOB debianJdks /usr/lib/jvm/java-17-openjdk-*)
    if(NOT DEFINED JAVA_HOME AND debianJdks)
        list(GET debianJdks 0 JAVA_HOME)
    endif()
    if(CMAKE_CROSSCOMPILING)
        # jni.h alone, the same for every architecture: the JVM tests run on the build machine.
        find_path(JNI_INCLUDE jni.h PATHS ${JAVA_HOME}/include NO_DEFAULT_PATH
                  NO_CMAKE_FIND_ROOT_PATH REQUIRED)
        target_include_directories(talveqam_platform INTERFACE ${JNI_INCLUDE} ${JNI_INCLUDE}/linux)
    else()
        find_package(JNI REQUIRED COMPONENTS JVM)
        target_include_directories(talveqam_platform INTERFACE ${JNI_INCLUDE_DIRS})
    endif()
endif()
