# SPDX-License-Identifier: Apache-2.0
# A rule's test is found by the rule's file name: <path>/<File>.cpp is tested by tests/<path>/<File>_test.cpp, or, where
# that would be long, by <File><Aspect>_test.cpp beside it. Fails where fewer than nine of ten tests lie so, and names the
# others with -DVERBOSE=ON. Run in the project's root: cmake -P cmake/check-tests.cmake
cmake_minimum_required(VERSION 3.25)

# Folders of tests that look at something as a whole; CONTRIBUTING.md says of each at what.
set(wholes
    "integration|examples|soak|tools/cli|gentl|camera/driver/chain|camera/driver/exports|camera/simulator/genapi"
    "platform/genicam/genapi/maps|platform/genicam/genapi/aravis"
    ".*/library|.*/headers|.*/stress|.*/hang|.*/failures|.*/first_handle|support/.*")
list(JOIN wholes "|" wholes)

file(GLOB_RECURSE tests RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}/tests" "tests/*_test.cpp")
set(count 0)
set(found 0)
set(lonely)
foreach(test IN LISTS tests)
    get_filename_component(folder "${test}" DIRECTORY)
    string(REGEX REPLACE "(^|/)(posix|windows)$" "" folder "${folder}")
    if("${folder}" MATCHES "^(${wholes})(/|$)")
        continue()
    endif()
    math(EXPR count "${count} + 1")
    get_filename_component(name "${test}" NAME_WE)
    string(REGEX REPLACE "_test$" "" name "${name}")
    # A program of its own may have a folder below that of what it tests.
    get_filename_component(above "${folder}" DIRECTORY)
    file(GLOB sources "${above}/*.cpp" "${folder}/*.cpp" "${folder}/*.h" "${folder}/posix/*.cpp" "${folder}/windows/*.cpp"
         "${folder}/include/*/*.h" "${folder}/include/*/posix/*.h" "${folder}/interface/*/*.h")
    set(twin FALSE)
    foreach(source IN LISTS sources)
        get_filename_component(stem "${source}" NAME_WE)
        if("${name}" MATCHES "^${stem}([A-Z].*)?$")
            set(twin TRUE)
        endif()
    endforeach()
    if(twin)
        math(EXPR found "${found} + 1")
    else()
        list(APPEND lonely "tests/${test}")
    endif()
endforeach()
math(EXPR tenths "${found} * 10")
math(EXPR wanted "${count} * 9")
message(STATUS "${found} of ${count} tests lie opposite of what they test")
if(VERBOSE)
    list(JOIN lonely "\n  " lonely)
    message("the others:\n  ${lonely}")
endif()
if(tenths LESS wanted)
    message(FATAL_ERROR "fewer than nine of ten tests are found by the name of what they test; "
                        "cmake -DVERBOSE=ON -P cmake/check-tests.cmake lists the others")
endif()
