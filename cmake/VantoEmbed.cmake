# SPDX-License-Identifier: Apache-2.0
# vanto_embed_text(<target> <file> <symbol>): the file's text as `extern const char <symbol>[]` in the target.
function(vanto_embed_text target file symbol)
    set(output "${CMAKE_CURRENT_BINARY_DIR}/${symbol}.cpp")
    get_filename_component(input "${file}" ABSOLUTE)
    add_custom_command(
        OUTPUT "${output}"
        COMMAND "${CMAKE_COMMAND}" -DINPUT=${input} -DOUTPUT=${output} -DSYMBOL=${symbol} -P
                "${PROJECT_SOURCE_DIR}/cmake/embed-text.cmake"
        DEPENDS "${input}" "${PROJECT_SOURCE_DIR}/cmake/embed-text.cmake"
        COMMENT "Embedding ${file}"
        VERBATIM)
    target_sources(${target} PRIVATE "${output}")
endfunction()
