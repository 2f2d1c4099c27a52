# SPDX-License-Identifier: Apache-2.0
# Targets by folder: a folder's sources are its *.cpp files and those of its posix/ or windows/ folder.

# Where the parts of an installed tree lie below its root; the build tree has the same shape below
# build/<preset>, so that what is found by place is found in both.
if(WIN32)
    # Windows looks for a program's libraries beside the program.
    set(VANTO_DIR_LIBRARIES "bin")
    set(VANTO_DRIVER_SYSTEM "Win64_x64")
else()
    set(VANTO_DIR_LIBRARIES "lib")
    set(VANTO_DRIVER_SYSTEM "Linux64_x64")
endif()
set(VANTO_DIR_TL "${VANTO_DIR_LIBRARIES}/vanto/tl")
set(VANTO_DIR_PLUGINS "${VANTO_DIR_LIBRARIES}/vanto/plugins")
set(VANTO_DIR_GENTL "${VANTO_DIR_LIBRARIES}/vanto/gentl")
set(VANTO_DIR_DRIVERS "${VANTO_DIR_LIBRARIES}/vanto/clprotocol/${VANTO_DRIVER_SYSTEM}")

# vanto_sources(<result> <folder>...): the sources of folders, for the system that is built for.
function(vanto_sources result)
    set(found)
    foreach(folder IN LISTS ARGN)
        if(WIN32)
            set(system windows)
        else()
            set(system posix)
        endif()
        file(GLOB files CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp"
             "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/${system}/*.cpp")
        list(APPEND found ${files})
    endforeach()
    set(${result} ${found} PARENT_SCOPE)
endfunction()

# vanto_gtest(<name> [FOLDER <folders>...] [LINK <targets>...] [LABELS <labels>...] [TIMEOUT <seconds>]): one test program
# of all *_test.cpp and support files of a folder below tests/, known to CTest case by case. The label simulator says that
# it has cameras on serial lines.
#
# What is tested is built as it is shipped. The tests themselves are run a few times and compiled much more often, so the
# optimizer leaves them alone; but for Windows, whose object files have no room for all the functions that it would remove.
if(WIN32)
    set(VANTO_TEST_OPTIMIZATION -O1)
else()
    set(VANTO_TEST_OPTIMIZATION -O0)
endif()

function(vanto_gtest name)
    cmake_parse_arguments(arg "" "TIMEOUT" "FOLDER;LINK;LABELS;DEPENDS" ${ARGN})
    if(NOT arg_FOLDER)
        set(arg_FOLDER ".")
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    vanto_sources(sources ${arg_FOLDER})
    if(NOT sources)
        return()
    endif()
    add_executable(${name} ${sources})
    target_compile_options(${name} PRIVATE $<$<CONFIG:Release>:${VANTO_TEST_OPTIMIZATION}>)
    target_link_libraries(${name} PRIVATE vanto_flags ${arg_LINK} GTest::gmock GTest::gtest_main Threads::Threads)
    if(arg_DEPENDS)
        add_dependencies(${name} ${arg_DEPENDS})
    endif()
    set_property(GLOBAL APPEND PROPERTY VANTO_TEST_PROGRAMS "$<TARGET_FILE:${name}>")
    if("simulator" IN_LIST arg_LABELS)
        set_property(GLOBAL APPEND PROPERTY VANTO_SIMULATOR_PROGRAMS "$<TARGET_FILE:${name}>")
    endif()
    # For Windows they run elsewhere, under Wine or on a Windows machine, and each program as a whole.
    if(NOT WIN32)
        gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS "${arg_LABELS}")
    endif()
endfunction()
