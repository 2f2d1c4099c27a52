# SPDX-License-Identifier: Apache-2.0
# Targets by folder: a folder's sources are its *.cpp files and those of its posix/ or windows/ folder.

include(GNUInstallDirs)
foreach(folder BINDIR LIBDIR INCLUDEDIR DATADIR)
    if(IS_ABSOLUTE "${CMAKE_INSTALL_${folder}}")
        message(FATAL_ERROR "CMAKE_INSTALL_${folder} must lie below the prefix: the parts find each other from there")
    endif()
endforeach()

# Where the parts of an installed tree lie below its root; the build tree has the same shape below
# build/<preset>, so that what is found by place is found in both.
if(WIN32)
    # Windows looks for a program's libraries beside the program.
    set(VANTO_DIR_LIBRARIES "bin")
    set(VANTO_DRIVER_SYSTEM "Win64_x64")
else()
    set(VANTO_DIR_LIBRARIES "${CMAKE_INSTALL_LIBDIR}")
    set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/${VANTO_DIR_LIBRARIES}")
    set(VANTO_DRIVER_SYSTEM "Linux64_x64")
endif()
set(VANTO_DIR_TL "${VANTO_DIR_LIBRARIES}/vanto/tl")
set(VANTO_DIR_PLUGINS "${VANTO_DIR_LIBRARIES}/vanto/plugins")
set(VANTO_DIR_GENTL "${VANTO_DIR_LIBRARIES}/vanto/gentl")
set(VANTO_DIR_DOCUMENTS "${CMAKE_INSTALL_DATADIR}/doc/vanto")
# Headers lie in a folder of ours, so that Base/ and GenApi/ meet no others; its number is that of the interface.
set(VANTO_DIR_HEADERS "${CMAKE_INSTALL_INCLUDEDIR}/vanto-${PROJECT_VERSION_MAJOR}")
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

# vanto_find_boost(<result>): what to link for Boost's mutexes and clocks.
function(vanto_find_boost result)
    if(WIN32)
        # Its mutexes are all headers there.
        find_package(Boost REQUIRED)
        set(${result} Boost::headers PARENT_SCOPE)
    else()
        find_package(Boost REQUIRED COMPONENTS chrono thread)
        set(${result} Boost::chrono Boost::thread PARENT_SCOPE)
    endif()
endfunction()

# vanto_exports(<target>): keeps all but the names of our own name spaces out of a library's table of symbols. On Windows
# there is nothing else in it.
function(vanto_exports target)
    if(NOT WIN32)
        set(map "${PROJECT_SOURCE_DIR}/cmake/exports.map")
        target_link_options(${target} PRIVATE "LINKER:--version-script=${map}")
        set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${map}")
    endif()
endfunction()

# vanto_static_objects(<objects>): <objects>_static, an object library of the same sources that neither exports nor imports.
function(vanto_static_objects objects)
    add_library(${objects}_static OBJECT $<TARGET_PROPERTY:${objects},SOURCES>)
    add_dependencies(${objects}_static ${objects}) # makes the generated sources
    target_compile_definitions(${objects}_static PRIVATE $<TARGET_PROPERTY:${objects},COMPILE_DEFINITIONS> VANTO_STATIC)
    target_include_directories(${objects}_static PRIVATE $<TARGET_PROPERTY:${objects},INCLUDE_DIRECTORIES>)
    # <objects> itself has told all warnings, and knows which headers are not ours.
    target_compile_options(${objects}_static PRIVATE $<TARGET_PROPERTY:${objects},COMPILE_OPTIONS> -w)
endfunction()

# vanto_public(<target> NAME <name> [INCLUDES <folders>...] [ANY_LANGUAGE]): a library that other programs link as
# Vanto::<name>. Its headers are C++17, unless they look after the language level themselves; the name of its file has the number of the interface where the system has such names (docs/abi.md).
function(vanto_public target)
    cmake_parse_arguments(arg "ANY_LANGUAGE" "NAME" "INCLUDES" ${ARGN})
    add_library(Vanto::${arg_NAME} ALIAS ${target})
    get_target_property(type ${target} TYPE)
    set(scope PUBLIC)
    if(type STREQUAL "INTERFACE_LIBRARY")
        set(scope INTERFACE)
    endif()
    foreach(folder IN LISTS arg_INCLUDES)
        get_filename_component(folder "${folder}" ABSOLUTE)
        target_include_directories(${target} ${scope} "$<BUILD_INTERFACE:${folder}>")
    endforeach()
    if(NOT arg_ANY_LANGUAGE)
        target_compile_features(${target} ${scope} cxx_std_17)
    endif()
    set_target_properties(${target} PROPERTIES EXPORT_NAME ${arg_NAME})
    if(type STREQUAL "SHARED_LIBRARY")
        set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
        vanto_exports(${target})
    endif()
    set_property(GLOBAL APPEND PROPERTY VANTO_PUBLIC_TARGETS ${target})
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
    if(VANTO_PRECOMPILE)
        set(reused vanto_precompiled_tests)
        if(arg_LINK MATCHES "VantoCLSerObjects|stream_support")
            set(reused vanto_precompiled_locks)
        endif()
        set_target_properties(${name} PROPERTIES PRECOMPILE_HEADERS_REUSE_FROM ${reused})
    endif()
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
