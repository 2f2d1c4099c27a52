# SPDX-License-Identifier: Apache-2.0
# Fails when a file includes what its layer may not use. Run in the project's root: cmake -P cmake/check-layers.cmake
#
# Each line of the table: folder | include prefixes of ours that its files may use besides their own folder's.
# (Prefixes: base/ os/ clbindings/ Base/ GenApi/ CLProtocol/ vanto/ gencp/ clser/ ; "-" is none.)
cmake_minimum_required(VERSION 3.25)
set(table
    "platform/base|base/"
    "platform/os|base/ os/"
    "platform/genicam/gcbase|Base/"
    "platform/genicam/genapi|base/ Base/ GenApi/ os/LockName.h"
    "platform/genicam/clprotocol|base/ Base/ GenApi/ CLProtocol/ clser/ os/"
    "platform/vanto|base/ Base/ GenApi/ CLProtocol/Log.h vanto/ os/"
    "platform/clbindings|base/ Base/ vanto/internal/ os/ clbindings/"
    "VantoCLSer|base/ clbindings/ Base/ GenApi/ CLProtocol/ clser/ClSerial.h vanto/ os/ VantoCLSer/"
    "include/vanto|Base/ GenApi/ CLProtocol/ vanto/ os/"
    "camera/gencp|base/ gencp/"
    "camera/clsertty|base/ clser/ os/"
    "camera/driver|base/ gencp/ CLProtocol/CLProtocolC.h clser/ os/"
    "camera/simulator|base/ gencp/ os/ camera/"
    "camera/grabber|vanto/FgPlugin.h"
    "application|base/ vanto/ Base/ GenApi/ os/LockName.h"
    "gentl|base/ gentl/ vanto/ Base/ GenApi/ CLProtocol/ os/"
    "python|vanto/ Base/ GenApi/ CLProtocol/"
    "tools|base/ clbindings/ vanto/ Base/ GenApi/ CLProtocol/ gentl/GenTL.h os/ tools/"
    "examples|vanto/ Base/ GenApi/ gentl/ CLProtocol/CLProtocol.h")
set(system_headers
    "windows|shlobj|shlwapi|dlfcn|termios|pthread|unistd|fcntl|poll|pty|signal|sys/[a-z_]+|linux/[a-z_]+|X11/.*")

# The rooms of a wing: wing/room | the other rooms of the wing that its files may include. A room that has no line here is
# free; the files that lie in the wing itself see every room.
set(rooms
    "VantoCLSer/base|"
    "VantoCLSer/configuration|base"
    "VantoCLSer/stream|base"
    "VantoCLSer/module|base"
    "platform/genicam/genapi/schema|"
    "platform/genicam/genapi/formula|schema"
    "platform/genicam/genapi/core|formula schema"
    "platform/genicam/genapi/nodes|core formula schema"
    "platform/genicam/genapi/load|schema"
    "platform/vanto/log|"
    "platform/vanto/factory|"
    "platform/vanto/bindings|log"
    "platform/vanto/wait|"
    "platform/vanto/image|"
    "camera/simulator/camera|"
    "camera/simulator/line|"
    "camera/simulator/stage|camera line"
    "gentl/support|"
    "gentl/events|support"
    "gentl/ports|events support"
    "gentl/discovery|support"
    "gentl/remote|discovery ports support"
    "gentl/stream|events ports remote support"
    "gentl/modules|discovery events ports remote stream support"
    "gentl/exports|modules stream events ports support"
    "tools/error|"
    "tools/system|error"
    "tools/output|system"
    "tools/findings|output"
    "tools/configuration|error findings output system"
    "tools/cameras|configuration error output system"
    "tools/description|error findings output system"
    "tools/doctor|cameras configuration error features output system"
    "tools/features|cameras error output system"
    "tools/images|error features output system"
    "tools/commands|cameras configuration description doctor error features findings images output system"
    "tools/app|cameras commands error output system")

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
            if(header MATCHES "^(base|os|clbindings|Base|GenApi|CLProtocol|vanto|gencp|clser|VantoCLSer|tools|camera|platform)/" OR header
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
foreach(line IN LISTS rooms)
    string(REGEX REPLACE "[|].*" "" folder "${line}")
    string(REGEX REPLACE ".*[|]" "" allowed "${line}")
    string(REPLACE " " ";" allowed "${allowed}")
    get_filename_component(wing "${folder}" DIRECTORY)
    get_filename_component(room "${folder}" NAME)
    if(NOT IS_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}/${folder}")
        message(SEND_ERROR "cmake/check-layers.cmake: there is no folder ${folder}")
        math(EXPR failures "${failures} + 1")
    endif()
    file(GLOB_RECURSE files "${folder}/*.h" "${folder}/*.cpp")
    foreach(path IN LISTS files)
        file(RELATIVE_PATH name "${CMAKE_CURRENT_SOURCE_DIR}" "${path}")
        file(STRINGS "${path}" includes REGEX "^[ ]*#[ ]*include[ ]*\"")
        foreach(include IN LISTS includes)
            string(REGEX REPLACE "^[^\"]*\"([^\"]*)\".*" "\\1" header "${include}")
            if(header MATCHES "^(base|os|clbindings|Base|GenApi|CLProtocol|vanto|gencp|clser)/")
                continue()
            endif()
            # The plug-in's files name their wing, those of the other wings begin with the room.
            string(REGEX REPLACE "^${wing}/" "" header "${header}")
            string(REGEX MATCH "^[^/]+/" other "${header}")
            string(REPLACE "/" "" other "${other}")
            if(other AND NOT other STREQUAL room AND IS_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}/${wing}/${other}"
               AND NOT other IN_LIST allowed)
                message(SEND_ERROR "${name}: ${folder} may not include ${header}")
                math(EXPR failures "${failures} + 1")
            endif()
        endforeach()
    endforeach()
endforeach()
if(failures)
    message(FATAL_ERROR "${failures} forbidden includes; docs/architecture.md says what may use what")
endif()
