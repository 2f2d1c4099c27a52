# SPDX-License-Identifier: Apache-2.0
# Fails when a file includes what its layer may not use. Run in the project's root: cmake -P cmake/check-layers.cmake
#
# Each line of the table: folder | include prefixes of ours that its files may use besides their own folder's.
# (Prefixes: os/ Base/ GenApi/ CLProtocol/ vanto/ gencp/ clser/ ; "-" is none.)
set(table
    "platform/os|os/"
    "platform/genicam/gcbase|Base/"
    "platform/genicam/genapi|Base/ GenApi/"
    "platform/genicam/clprotocol|Base/ GenApi/ CLProtocol/ clser/ os/"
    "platform/vanto|Base/ GenApi/ CLProtocol/Log.h vanto/ os/"
    "VantoCLSer|Base/ GenApi/ CLProtocol/ vanto/ os/ VantoCLSer/"
    "include/vanto|Base/ GenApi/ CLProtocol/ vanto/ os/"
    "camera/gencp|gencp/"
    "camera/clsertty|clser/ os/"
    "camera/driver|gencp/ CLProtocol/CLProtocolC.h clser/ os/"
    "camera/simulator|gencp/ os/ camera/"
    "camera/grabber|vanto/FgPlugin.h"
    "tools|vanto/ Base/ GenApi/ CLProtocol/ tools/"
    "examples|vanto/ Base/ GenApi/")
set(system_headers
    "windows|shlobj|shlwapi|dlfcn|termios|pthread|unistd|fcntl|poll|pty|signal|sys/[a-z_]+|linux/[a-z_]+|X11/.*")

set(failures 0)
foreach(line IN LISTS table)
    string(REPLACE "|" ";" parts "${line}")
    list(GET parts 0 folder)
    list(GET parts 1 allowed)
    string(REPLACE " " ";" allowed "${allowed}")
    file(GLOB_RECURSE files "${folder}/*.h" "${folder}/*.cpp")
    foreach(path IN LISTS files)
        file(RELATIVE_PATH name "${CMAKE_CURRENT_SOURCE_DIR}" "${path}")
        file(STRINGS "${path}" includes REGEX "^[ ]*#[ ]*include")
        foreach(include IN LISTS includes)
            string(REGEX REPLACE "^[^<\"]*[<\"]([^>\"]*)[>\"].*" "\\1" header "${include}")
            if(header MATCHES "^(${system_headers})\\.h$" AND NOT name MATCHES "/(windows|posix)/")
                message(SEND_ERROR "${name}: ${header} belongs in a posix/ or windows/ folder")
                math(EXPR failures "${failures} + 1")
            endif()
            if(header MATCHES "^(os|Base|GenApi|CLProtocol|vanto|gencp|clser|VantoCLSer|tools|camera|platform)/" OR header
                                                                                                              MATCHES
                                                                                                              "^\\.\\.")
                set(fine FALSE)
                foreach(prefix IN LISTS allowed)
                    string(FIND "${header}" "${prefix}" at)
                    if(at EQUAL 0)
                        set(fine TRUE)
                    endif()
                endforeach()
                if(NOT fine)
                    message(SEND_ERROR "${name}: ${folder} may not include ${header}")
                    math(EXPR failures "${failures} + 1")
                endif()
            endif()
        endforeach()
    endforeach()
endforeach()
if(failures)
    message(FATAL_ERROR "${failures} forbidden includes; docs/architecture.md says what may use what")
endif()
