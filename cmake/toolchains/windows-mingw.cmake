# SPDX-License-Identifier: Apache-2.0
# 64-bit Windows with Debian's MinGW-w64. The libraries that the tree uses come from one folder, VANTO_WINDOWS_LIBRARIES,
# which packaging/windows/build-libraries.sh fills.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

set(prefix x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${prefix}-gcc-posix)
set(CMAKE_CXX_COMPILER ${prefix}-g++-posix)
set(CMAKE_RC_COMPILER ${prefix}-windres)

if(NOT VANTO_WINDOWS_LIBRARIES)
    set(VANTO_WINDOWS_LIBRARIES "$ENV{VANTO_WINDOWS_LIBRARIES}")
endif()
if(NOT VANTO_WINDOWS_LIBRARIES)
    message(FATAL_ERROR "VANTO_WINDOWS_LIBRARIES names no folder; packaging/windows/build-libraries.sh makes one")
endif()
set(VANTO_WINDOWS_LIBRARIES "${VANTO_WINDOWS_LIBRARIES}" CACHE PATH "Libraries for Windows")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VANTO_WINDOWS_LIBRARIES)

set(CMAKE_FIND_ROOT_PATH "${VANTO_WINDOWS_LIBRARIES}")
set(CMAKE_PREFIX_PATH /)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "${VANTO_WINDOWS_LIBRARIES}/lib/pkgconfig")
set(ENV{PKG_CONFIG_PATH} "")
set(PKG_CONFIG_ARGN --static CACHE STRING "All libraries are static")

# What the compiler brings along becomes part of each file, so that a DLL needs nothing but the system's.
foreach(kind EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static")
endforeach()
