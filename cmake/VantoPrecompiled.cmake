# SPDX-License-Identifier: Apache-2.0
# The standard library's headers are half of what a compiler reads of most files. They are compiled once for all targets
# that are built with the same flags. What a file forgets to include is found by cmake/check-includes.py, and by clang,
# which does without.
set(precompile OFF)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    set(precompile ON)
endif()
option(VANTO_PRECOMPILE "Compile the standard library's headers once for all targets" ${precompile})
if(VANTO_PRECOMPILE)
    # g++ 12 takes what is in such a header for code of ours, and sees overflows in std::string's operator+ where there are
    # none (GCC bug 105651). Builds without them, the preset package among them, have these warnings.
    target_compile_options(vanto_flags INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-stringop-overflow>
                                                 $<$<COMPILE_LANGUAGE:CXX>:-Wno-array-bounds>)
endif()
set(VANTO_PRECOMPILED "${CMAKE_CURRENT_LIST_DIR}/precompiled")

# vanto_precompiled(<name> <header> [<option>...]): compiles a header of cmake/precompiled for others to use.
function(vanto_precompiled name header)
    add_library(${name} OBJECT "${VANTO_PRECOMPILED}/empty.cpp")
    target_precompile_headers(${name} PRIVATE "$<$<COMPILE_LANGUAGE:CXX>:${VANTO_PRECOMPILED}/${header}>")
    target_compile_options(${name} PRIVATE ${ARGN})
    target_link_libraries(${name} PRIVATE vanto_flags)
endfunction()

# Uses them in every library of a folder and those below it of C++ sources that has the flags of ours and no others.
function(vanto_use_precompiled folder)
    get_property(targets DIRECTORY "${folder}" PROPERTY BUILDSYSTEM_TARGETS)
    foreach(target IN LISTS targets)
        get_target_property(type ${target} TYPE)
        get_target_property(linked ${target} LINK_LIBRARIES)
        get_target_property(sources ${target} SOURCES)
        get_target_property(own ${target} PRECOMPILE_HEADERS)
        get_target_property(is_optimized ${target} VANTO_OPTIMIZED)
        if(type MATCHES "^(OBJECT|STATIC|SHARED|MODULE)_LIBRARY$" AND "vanto_flags" IN_LIST linked AND NOT own
           AND NOT sources MATCHES "\\.c(;|$)")
            set(reused vanto_precompiled_standard)
            if(is_optimized)
                set(reused vanto_precompiled_optimized)
            elseif("fmt::fmt" IN_LIST linked)
                set(reused vanto_precompiled_formatting)
            endif()
            set_target_properties(${target} PROPERTIES PRECOMPILE_HEADERS_REUSE_FROM ${reused})
        endif()
    endforeach()
    get_property(below DIRECTORY "${folder}" PROPERTY SUBDIRECTORIES)
    foreach(one IN LISTS below)
        vanto_use_precompiled("${one}")
    endforeach()
endfunction()
