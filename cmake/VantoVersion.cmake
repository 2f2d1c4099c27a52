# SPDX-License-Identifier: Apache-2.0
# vanto_version(<target> <description>): what Windows shows of a file under "Details". Programs are also made to use UTF-8,
# so that every name of a file can be written. Nothing on other systems.
function(vanto_version target description)
    if(NOT WIN32)
        return()
    endif()
    get_target_property(type ${target} TYPE)
    set(VERSION_DESCRIPTION "${description}")
    set(VERSION_FILE "$<TARGET_FILE_NAME:${target}>")
    set(VERSION_TEXT "${PROJECT_VERSION}")
    string(REPLACE "." "," VERSION_NUMBERS "${PROJECT_VERSION}")
    if(type STREQUAL "EXECUTABLE")
        set(VERSION_TYPE VFT_APP)
        set(VERSION_MANIFEST "1 24 \"${PROJECT_SOURCE_DIR}/cmake/utf8.manifest\"")
    else()
        set(VERSION_TYPE VFT_DLL)
        set(VERSION_MANIFEST "")
    endif()
    configure_file("${PROJECT_SOURCE_DIR}/cmake/version.rc.in" "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc.in" @ONLY)
    file(GENERATE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc"
         INPUT "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc.in")
    target_sources(${target} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc")
endfunction()
