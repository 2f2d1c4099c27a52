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
    "gentl|base/ gentl/ vanto/ Base/ GenApi/ CLProtocol/ clser/ClSerial.h os/"
    "python|vanto/ Base/ GenApi/ CLProtocol/"
    "tools|base/ clbindings/ vanto/ Base/ GenApi/ CLProtocol/ clser/ClSerial.h gentl/GenTL.h os/ tools/"
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
    "application/values|"
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

set(ours "^(base|os|clbindings|Base|GenApi|CLProtocol|vanto|gencp|clser|VantoCLSer|tools|camera|platform)/|^[.][.]")
set(failures 0)

macro(refuse text)
    message(SEND_ERROR "${text}")
    math(EXPR failures "${failures} + 1")
endmacro()

# includes_of(<folder> <result>): "file|header" for each include of the files below a folder.
function(includes_of folder result)
    file(GLOB_RECURSE files RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}" "${folder}/*.h" "${folder}/*.cpp")
    set(found)
    foreach(file IN LISTS files)
        file(STRINGS "${file}" lines REGEX "^[ ]*#[ ]*include")
        list(TRANSFORM lines REPLACE "^[^<\"]*[<\"]([^>\"]*)[>\"].*" "${file}|\\1")
        list(APPEND found ${lines})
    endforeach()
    set(${result} ${found} PARENT_SCOPE)
endfunction()

# parse(<row>): folder, and the list of what it may use, of a row of the tables.
macro(parse row)
    string(REGEX REPLACE "[|].*" "" folder "${row}")
    string(REGEX REPLACE ".*[|]" "" allowed "${row}")
    string(REPLACE " " ";" allowed "${allowed}")
endmacro()

foreach(row IN LISTS table)
    parse("${row}")
    includes_of("${folder}" includes)
    foreach(include IN LISTS includes)
        string(REGEX REPLACE "[|].*" "" name "${include}")
        string(REGEX REPLACE ".*[|]" "" header "${include}")
        if(header MATCHES "^(${system_headers})\\.h$" AND NOT name MATCHES "/(windows|posix)/")
            refuse("${name}: ${header} belongs in a posix/ or windows/ folder")
        endif()
        if(header MATCHES "${ours}")
            set(fine FALSE)
            foreach(prefix IN LISTS allowed)
                string(FIND "${header}" "${prefix}" at)
                if(at EQUAL 0)
                    set(fine TRUE)
                endif()
            endforeach()
            if(NOT fine)
                refuse("${name}: ${folder} may not include ${header}")
            endif()
        endif()
    endforeach()
endforeach()
foreach(row IN LISTS rooms)
    parse("${row}")
    get_filename_component(wing "${folder}" DIRECTORY)
    get_filename_component(room "${folder}" NAME)
    if(NOT IS_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}/${folder}")
        refuse("cmake/check-layers.cmake: there is no folder ${folder}")
    endif()
    includes_of("${folder}" includes)
    foreach(include IN LISTS includes)
        string(REGEX REPLACE "[|].*" "" name "${include}")
        string(REGEX REPLACE ".*[|]" "" header "${include}")
        if(header MATCHES "^(base|os|clbindings|Base|GenApi|CLProtocol|vanto|gencp|clser)/")
            continue()
        endif()
        # The plug-in's files name their wing, those of the other wings begin with the room.
        string(REGEX REPLACE "^${wing}/" "" header "${header}")
        string(REGEX MATCH "^[^/]+/" other "${header}")
        string(REPLACE "/" "" other "${other}")
        if(other AND NOT other STREQUAL room AND IS_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}/${wing}/${other}"
           AND NOT other IN_LIST allowed)
            refuse("${name}: ${folder} may not include ${header}")
        endif()
    endforeach()
endforeach()
if(failures)
    message(FATAL_ERROR "${failures} forbidden includes; docs/architecture.md says what may use what")
endif()
