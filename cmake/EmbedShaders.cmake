# Each GLSL file under the source tree becomes a generated header
#   embedded/<relative path>.h  defining  qam::embedded::<File>_<ext>
# with the file's bytes unchanged, so shader text lives in its own file.
function(talveqam_embed_shaders target)
    set(outRoot "${CMAKE_BINARY_DIR}/generated")
    foreach(shader IN LISTS ARGN)
        file(RELATIVE_PATH rel "${PROJECT_SOURCE_DIR}" "${shader}")
        get_filename_component(fileName "${shader}" NAME)
        string(MAKE_C_IDENTIFIER "${fileName}" symbol)
        set(out "${outRoot}/embedded/${rel}.h")
        add_custom_command(
            OUTPUT "${out}"
            COMMAND ${CMAKE_COMMAND} -DIN=${shader} -DOUT=${out} -DNAME=${symbol} -DREL=${rel}
                    -P "${PROJECT_SOURCE_DIR}/cmake/embed_file.cmake"
            DEPENDS "${shader}" "${PROJECT_SOURCE_DIR}/cmake/embed_file.cmake"
            COMMENT "Embedding ${rel}"
            VERBATIM)
        list(APPEND outputs "${out}")
    endforeach()
    target_sources(${target} PRIVATE ${outputs})
    target_include_directories(${target} PRIVATE "${outRoot}")
endfunction()
