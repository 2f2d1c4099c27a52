# SPDX-License-Identifier: Apache-2.0
# Checks the documentation against the tree: links lead to files, packages are explained, commands exist.
# Run in the project's root: cmake -P cmake/check-docs.cmake
set(failures 0)
macro(complain text)
    message(SEND_ERROR "${text}")
    math(EXPR failures "${failures} + 1")
endmacro()

file(GLOB_RECURSE pages "docs/*.md")
list(APPEND pages README.md CONTRIBUTING.md)

foreach(page IN LISTS pages)
    get_filename_component(folder "${page}" DIRECTORY)
    if(folder STREQUAL "")
        set(folder ".")
    endif()
    file(READ "${page}" text)
    # Square brackets and semicolons mean something in CMake lists.
    string(REPLACE ";" "," text "${text}")
    string(REPLACE "](" "@LINK(" text "${text}")
    string(REPLACE "[" "<" text "${text}")
    string(REPLACE "]" ">" text "${text}")
    string(REGEX MATCHALL "@LINK\\([^)#]+" links "${text}")
    foreach(link IN LISTS links)
        string(REPLACE "@LINK(" "" target "${link}")
        if(NOT target MATCHES "^[a-z]+:" AND NOT EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/${target}"
           AND NOT EXISTS "${folder}/${target}")
            complain("${page}: there is no file ${target}")
        endif()
    endforeach()

    # Every "vanto-cl COMMAND" of a page is a command of the table.
    file(READ tools/app/CommandTable.cpp table)
    string(REGEX MATCHALL "vanto-cl (--simulate[=0-9]* )*[a-z]+" uses "${text}")
    foreach(use IN LISTS uses)
        string(REGEX REPLACE ".* " "" command "${use}")
        if(NOT table MATCHES "\"${command}[\" ]")
            complain("${page}: vanto-cl has no command '${command}'")
        endif()
    endforeach()
endforeach()

file(STRINGS packaging/debian-packages.txt lines REGEX "^[a-z]")
file(READ docs/dependencies.md explained)
foreach(line IN LISTS lines)
    string(REGEX REPLACE "[ #].*" "" package "${line}")
    string(FIND "${explained}" "`${package}`" at)
    if(at EQUAL -1)
        complain("docs/dependencies.md does not say what ${package} is for")
    endif()
endforeach()

if(failures)
    message(FATAL_ERROR "${failures} faults in the documentation")
endif()
