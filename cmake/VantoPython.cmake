# SPDX-License-Identifier: Apache-2.0
# Looks for what the Python module needs, and sets VANTO_BUILD_PYTHON where it is there. The system's own Python comes
# first, as the packages of numpy and pybind11 are for that one. With a sanitizer the interpreter would need its runtime
# as well.
set(VANTO_DIR_PYTHON "lib/python3/dist-packages")
set(possible OFF)
if(NOT WIN32 AND NOT VANTO_SANITIZE AND NOT VANTO_LOCK_ORDER)
    find_program(Python_EXECUTABLE NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH)
    find_package(Python 3.11 COMPONENTS Interpreter Development.Module)
    if(Python_FOUND)
        set(PYBIND11_FINDPYTHON ON)
        find_package(pybind11 2.10 CONFIG QUIET)
    endif()
    if(pybind11_FOUND)
        set(possible ON)
    endif()
endif()
option(VANTO_BUILD_PYTHON "Build the Python module (needs Python 3.11 and pybind11; not on Windows)" ${possible})
if(VANTO_BUILD_PYTHON AND NOT possible)
    message(FATAL_ERROR "VANTO_BUILD_PYTHON needs Python's and pybind11's headers, and neither Windows nor a sanitizer")
endif()
