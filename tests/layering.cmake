# Fails when a folder below the host includes a host header: effects, the registries, the render
# core, the tools, the platform layer and Kinetra are all built without knowing the host.
cmake_policy(VERSION 3.25)
file(GLOB_RECURSE sources RELATIVE "${SOURCE_DIR}"
     "${SOURCE_DIR}/Common/*.h" "${SOURCE_DIR}/Common/*.cpp"
     "${SOURCE_DIR}/Kinetra/*.h" "${SOURCE_DIR}/Kinetra/*.cpp")
set(bad "")
foreach(source IN LISTS sources)
    if(source MATCHES "^Common/Native/")
        continue()
    endif()
    file(STRINGS "${SOURCE_DIR}/${source}" includes REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"]Common/Native/")
    if(includes)
        list(APPEND bad "${source}: ${includes}")
    endif()
endforeach()
if(bad)
    list(JOIN bad "\n  " text)
    message(FATAL_ERROR "Lower folders include the host:\n  ${text}")
endif()
