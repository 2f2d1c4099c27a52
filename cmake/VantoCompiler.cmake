# SPDX-License-Identifier: Apache-2.0
# Language level, warnings, sanitizers and where results go: the same for every target.
get_property(multiple_configurations GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
if(NOT CMAKE_BUILD_TYPE AND NOT multiple_configurations)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Debug, Release, RelWithDebInfo or MinSizeRel" FORCE)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# Most of this waits for a serial line, a disk or a person: there the optimizer takes longer than all that it could save.
# vanto_optimize is for what is computed with each register and each pixel.
add_compile_options($<$<CONFIG:Release>:-O1>)
function(vanto_optimize target)
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-O3>)
    set_target_properties(${target} PROPERTIES VANTO_OPTIMIZED ON)
endfunction()

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib/static")

if(WIN32)
    # "GCBase.dll", as the system and others who load it expect, not "libGCBase.dll".
    set(CMAKE_SHARED_LIBRARY_PREFIX "")
    set(CMAKE_SHARED_MODULE_PREFIX "")
    add_compile_definitions(_WIN32_WINNT=0x0A00 WINVER=0x0A00 WIN32_LEAN_AND_MEAN NOMINMAX)
endif()

# A library finds its neighbours from where it lies itself, so a tree can be moved.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

find_program(VANTO_CCACHE ccache)
if(VANTO_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${VANTO_CCACHE}")
    set(CMAKE_C_COMPILER_LAUNCHER "${VANTO_CCACHE}")
endif()

add_library(vanto_flags INTERFACE)
target_compile_options(
    vanto_flags
    INTERFACE -Wall
              -Wextra
              -Wpedantic
              -Wshadow
              -Wconversion
              $<$<BOOL:${VANTO_WERROR}>:-Werror>
              $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
              $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>
              # g++ 12 sees overlaps in std::string's operator+ where there are none (GCC bug 105651).
              $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-restrict>)
if(VANTO_SANITIZE)
    add_compile_options(-fsanitize=${VANTO_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all -O1)
    add_link_options(-fsanitize=${VANTO_SANITIZE})
endif()
