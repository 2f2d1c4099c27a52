# SPDX-License-Identifier: Apache-2.0
# Debian packages: `cmake --preset package && cmake --build --preset package && cd build/package && cpack -G DEB`.
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    return()
endif()

set(CPACK_PACKAGE_NAME vanto)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Vanto maintainers <maintainers@vanto.example.org>")
set(CPACK_PACKAGE_VENDOR "Vanto")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
                                                WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# vanto_package(<component> <package> DESCRIPTION <text> SECTION <section> [DEPENDS <text>] [SUGGESTS <text>]
# [ARCHITECTURE <name>] [CONTROL <files>...]): the package of a component, with the files that every package has.
find_program(gzip gzip REQUIRED)
find_program(git git)
set(date "Thu, 01 Jan 1970 00:00:00 +0000")
if(git)
    execute_process(COMMAND "${git}" -C "${PROJECT_SOURCE_DIR}" log -1 --format=%cD OUTPUT_VARIABLE commit_date
                    OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    if(commit_date)
        set(date "${commit_date}")
    endif()
endif()
configure_file(packaging/debian/changelog.in "${CMAKE_CURRENT_BINARY_DIR}/debian/changelog" @ONLY)
execute_process(COMMAND "${gzip}" -9nkf "${CMAKE_CURRENT_BINARY_DIR}/debian/changelog" COMMAND_ERROR_IS_FATAL ANY)

set(CPACK_COMPONENTS_ALL)
macro(vanto_package component package)
    cmake_parse_arguments(arg "" "DESCRIPTION;SECTION;DEPENDS;SUGGESTS;ARCHITECTURE" "CONTROL" ${ARGN})
    string(TOUPPER ${component} upper)
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${arg_DESCRIPTION}")
    set(CPACK_COMPONENT_${upper}_DESCRIPTION "${arg_DESCRIPTION}")
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${arg_SECTION})
    set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${arg_DEPENDS}")
    set(CPACK_DEBIAN_${upper}_PACKAGE_SUGGESTS "${arg_SUGGESTS}")
    if(arg_ARCHITECTURE)
        set(CPACK_DEBIAN_${upper}_PACKAGE_ARCHITECTURE ${arg_ARCHITECTURE})
    endif()
    set(CPACK_DEBIAN_${upper}_PACKAGE_CONTROL_EXTRA)
    foreach(file IN LISTS arg_CONTROL)
        string(REGEX REPLACE "^${package}\\." "" name "${file}")
        configure_file("packaging/debian/${file}" "${CMAKE_CURRENT_BINARY_DIR}/debian/${package}/${name}" COPYONLY)
        list(APPEND CPACK_DEBIAN_${upper}_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_BINARY_DIR}/debian/${package}/${name}")
    endforeach()
    install(FILES packaging/debian/copyright "${CMAKE_CURRENT_BINARY_DIR}/debian/changelog.gz"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}" COMPONENT ${component})
    if(EXISTS "${PROJECT_SOURCE_DIR}/packaging/debian/${package}.lintian-overrides")
        install(FILES "packaging/debian/${package}.lintian-overrides" DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides"
                RENAME ${package} COMPONENT ${component})
    endif()
endmacro()

set(same_version "(= ${PROJECT_VERSION})")
vanto_package(
    libraries libvanto
    DESCRIPTION "Camera Link cameras as GenICam devices: libraries
Finds cameras on Camera Link serial lines and gives applications their
features by name, as GenICam describes them, and their images.

This package holds the libraries, the transport layer, the serial library
for ttys, and the CLProtocol driver of Marlow's cameras."
    SECTION libs
    SUGGESTS vanto-cl
    CONTROL triggers libvanto.postinst libvanto.postrm libvanto.conffiles)
vanto_package(
    development libvanto-dev
    DESCRIPTION "Camera Link cameras as GenICam devices: development files
Headers, CMake package, files for pkg-config and examples for programs that
use cameras, for frame-grabber plug-ins and for CLProtocol drivers."
    SECTION libdevel
    DEPENDS "libvanto ${same_version}"
    SUGGESTS vanto-doc)
vanto_package(
    tools vanto-cl
    DESCRIPTION "Camera Link cameras from the command line
Lists cameras, shows and sets their features, takes images, and finds out
why a camera is not found. A simulator is with it: every command can be
tried without a camera."
    SECTION graphics
    DEPENDS "libvanto ${same_version}"
    SUGGESTS vanto-doc)
if(VANTO_BUILD_PYTHON)
    vanto_package(
        python python3-vanto
        DESCRIPTION "Camera Link cameras as GenICam devices: Python module
Finds cameras, gives their features as attributes and their images as
numpy arrays without a copy. With the package vanto-cl it has simulated
cameras as well."
        SECTION python
        DEPENDS "libvanto ${same_version}, python3 (>= 3.11), python3 (<< 3.12), python3-numpy"
        SUGGESTS "vanto-cl, vanto-doc, python3-pil"
        CONTROL python3-vanto.postinst python3-vanto.prerm)
    set(CPACK_DEBIAN_PYTHON_PACKAGE_SHLIBDEPS ON)
endif()
vanto_package(
    documentation vanto-doc
    DESCRIPTION "Camera Link cameras as GenICam devices: documentation
Guides for users of cameras and for programmers, and the reference of all
classes."
    SECTION doc
    ARCHITECTURE all)
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY "=")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_BINARY_DIR}/${VANTO_DIR_LIBRARIES}")

install(FILES packaging/udev/70-vanto.rules DESTINATION lib/udev/rules.d COMPONENT libraries)
install(FILES packaging/etc/DescriptionBindings.xml DESTINATION /etc/vanto COMPONENT libraries)
# Consumers of GenTL find the producer by an environment variable: that of shells, and that of desktops.
set(VANTO_GENTL_FOLDER "${CMAKE_INSTALL_PREFIX}/${VANTO_DIR_GENTL}")
set(environment "${CMAKE_CURRENT_BINARY_DIR}/environment")
configure_file(packaging/etc/gentl.sh.in "${environment}/vanto-gentl.sh" @ONLY)
configure_file(packaging/etc/gentl.conf.in "${environment}/70-vanto-gentl.conf" @ONLY)
install(FILES "${environment}/vanto-gentl.sh" DESTINATION /etc/profile.d COMPONENT libraries)
install(FILES "${environment}/70-vanto-gentl.conf" DESTINATION lib/environment.d COMPONENT libraries)
include(CPack)
