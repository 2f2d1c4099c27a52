# SPDX-License-Identifier: Apache-2.0
# What is installed where. The installed tree can be moved: each file finds its neighbours from where it lies itself.

# vanto_runpath(<target> <folder>): lets a target that is installed into a folder below the root find lib/.
function(vanto_runpath target folder)
    if(NOT TARGET ${target})
        return()
    endif()
    file(RELATIVE_PATH toLibraries "/root/${folder}" "/root/lib")
    string(REGEX REPLACE "/$" "" runpath "$ORIGIN/${toLibraries}")
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "${runpath}")
endfunction()

foreach(library GCBase GenApi CLProtocol VantoBase VantoImage VantoApplication clsertty)
    vanto_runpath(${library} ${VANTO_DIR_LIBRARIES})
endforeach()
vanto_runpath(VantoCLSer "${VANTO_DIR_TL}")
install(TARGETS VantoCLSer LIBRARY DESTINATION "${VANTO_DIR_TL}" COMPONENT libraries)
vanto_runpath(MarlowCLProtocol "${VANTO_DIR_DRIVERS}")
vanto_runpath(vanto-cl ${CMAKE_INSTALL_BINDIR})
vanto_runpath(marlow-sim ${CMAKE_INSTALL_BINDIR})

# What other programs link.
get_property(public GLOBAL PROPERTY VANTO_PUBLIC_TARGETS)
install(
    TARGETS ${public}
    EXPORT VantoTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT libraries
    LIBRARY DESTINATION ${VANTO_DIR_LIBRARIES} COMPONENT libraries NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    INCLUDES DESTINATION ${VANTO_DIR_HEADERS})
install(
    DIRECTORY include/
              application/include/
              platform/vanto/include/
              platform/genicam/gcbase/include/
              platform/genicam/genapi/include/
              platform/genicam/clprotocol/include/
              platform/genicam/clprotocol/interface/
              gentl/interface/
    DESTINATION ${VANTO_DIR_HEADERS}
    COMPONENT development
    FILES_MATCHING
    PATTERN "*.h"
    PATTERN "internal" EXCLUDE)

include(CMakePackageConfigHelpers)
set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/Vanto")
configure_package_config_file(
    cmake/install/VantoConfig.cmake.in "${CMAKE_CURRENT_BINARY_DIR}/VantoConfig.cmake"
    INSTALL_DESTINATION ${package_folder}
    PATH_VARS VANTO_DIR_TL VANTO_DIR_PLUGINS VANTO_DIR_DRIVERS VANTO_DIR_GENTL
    NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file("${CMAKE_CURRENT_BINARY_DIR}/VantoConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/VantoConfig.cmake" "${CMAKE_CURRENT_BINARY_DIR}/VantoConfigVersion.cmake"
        DESTINATION ${package_folder} COMPONENT development)
install(EXPORT VantoTargets NAMESPACE Vanto:: DESTINATION ${package_folder} COMPONENT development)

# vanto_pkg_config(<name> DESCRIPTION <text> [REQUIRES <names>...] [LIBS <flags>...] [CFLAGS <flags>...]): a file for
# pkg-config, which finds the tree from where it lies itself.
function(vanto_pkg_config name)
    cmake_parse_arguments(arg "" "DESCRIPTION" "REQUIRES;LIBS;CFLAGS" ${ARGN})
    file(RELATIVE_PATH up "/root/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/root")
    string(REGEX REPLACE "/$" "" up "${up}")
    list(JOIN arg_REQUIRES ", " requires)
    list(JOIN arg_LIBS " " libs)
    list(JOIN arg_CFLAGS " " cflags)
    configure_file(cmake/install/vanto.pc.in "${CMAKE_CURRENT_BINARY_DIR}/pkgconfig/${name}.pc" @ONLY)
    install(FILES "${CMAKE_CURRENT_BINARY_DIR}/pkgconfig/${name}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
            COMPONENT development)
endfunction()
vanto_pkg_config(vanto-gcbase DESCRIPTION "Strings and exceptions of GenICam" LIBS -lGCBase CFLAGS -std=c++17)
vanto_pkg_config(vanto-genapi DESCRIPTION "Node maps of GenICam" REQUIRES vanto-gcbase LIBS -lGenApi)
vanto_pkg_config(vanto-clprotocol-interface DESCRIPTION "C interfaces of CLProtocol drivers and serial libraries")
vanto_pkg_config(vanto-clprotocol DESCRIPTION "CLProtocol module" REQUIRES vanto-clprotocol-interface vanto-gcbase LIBS
                 -lCLProtocol)
vanto_pkg_config(vanto-base DESCRIPTION "Cameras as GenICam devices" REQUIRES vanto-genapi LIBS -lVantoBase)
vanto_pkg_config(vanto-image DESCRIPTION "Image files" REQUIRES vanto-base LIBS -lVantoImage)
vanto_pkg_config(vanto-clser-device-info DESCRIPTION "Device info records of Camera Link cameras" REQUIRES vanto-base LIBS
                 -lVantoCLSerDeviceInfo CFLAGS -DVANTOCLSER_STATIC)
vanto_pkg_config(vanto-fgplugin DESCRIPTION "Interface of frame-grabber plug-ins" CFLAGS -std=c++17)
vanto_pkg_config(vanto-gentl-interface DESCRIPTION "C interface of GenTL producers")
vanto_pkg_config(vanto-application DESCRIPTION "Cameras for applications" REQUIRES vanto-base LIBS -lVantoApplication)

install(FILES LICENSE README.md DESTINATION ${VANTO_DIR_DOCUMENTS} COMPONENT documentation)
install(DIRECTORY docs/ DESTINATION ${VANTO_DIR_DOCUMENTS}/docs COMPONENT documentation FILES_MATCHING
        PATTERN "*.md" PATTERN "*.png" PATTERN "*.svg")
install(DIRECTORY examples/ DESTINATION ${VANTO_DIR_DOCUMENTS}/examples COMPONENT development)

# The reference of all public headers; a warning is an error.
find_program(VANTO_DOXYGEN doxygen)
if(VANTO_DOXYGEN)
    set(reference "${CMAKE_BINARY_DIR}/reference")
    add_custom_target(
        reference
        COMMAND "${CMAKE_COMMAND}" -E rm -rf "${reference}"
        COMMAND "${CMAKE_COMMAND}" -E env "VANTO_VERSION=${PROJECT_VERSION}" "VANTO_REFERENCE=${reference}"
                "${VANTO_DOXYGEN}" docs/Doxyfile
        WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
        COMMENT "Making the reference of the public headers"
        VERBATIM)
    install(DIRECTORY "${reference}" DESTINATION ${VANTO_DIR_DOCUMENTS} COMPONENT documentation OPTIONAL)
endif()

configure_file(cmake/install/uninstall.cmake.in "${CMAKE_CURRENT_BINARY_DIR}/uninstall.cmake" @ONLY)
add_custom_target(uninstall COMMAND "${CMAKE_COMMAND}" -P "${CMAKE_CURRENT_BINARY_DIR}/uninstall.cmake"
                  COMMENT "Removing what was installed" VERBATIM)

# For Windows users: one folder in an archive, to be unpacked anywhere.
if(WIN32)
    # The licences of what is linked into the files, from the Debian packages of the same sources. Boost's asks for no
    # copy beside machine code.
    function(vanto_license package name)
        install(FILES "/usr/share/doc/${package}/copyright" DESTINATION ${VANTO_DIR_DOCUMENTS}/licenses RENAME "${name}.txt")
    endfunction()
    vanto_license(libcli11-dev cli11)
    vanto_license(nlohmann-json3-dev nlohmann_json)
    vanto_license(libfmt-dev libfmt)
    vanto_license(libgcrypt-mingw-w64-dev libgcrypt)
    vanto_license(libgpg-error-mingw-w64-dev libgpg-error)
    vanto_license(libpng-dev libpng16)
    vanto_license(libpugixml-dev libpugixml)
    vanto_license(libspdlog-dev libspdlog)
    vanto_license(libtiff-dev libtiff)
    vanto_license(libxerces-c-dev libxerces-c)
    vanto_license(libz-mingw-w64-dev libz)
    vanto_license(libzip-dev libzip)
    vanto_license(gcc-mingw-w64-x86-64-posix-runtime gcc)
    vanto_license(mingw-w64-x86-64-dev mingw-w64)
    # Texts that those refer to.
    foreach(text Apache-2.0 GPL-2 GPL-3 LGPL-2.1)
        install(FILES "/usr/share/common-licenses/${text}" DESTINATION ${VANTO_DIR_DOCUMENTS}/licenses RENAME "${text}.txt")
    endforeach()

    set(CPACK_GENERATOR ZIP)
    set(CPACK_PACKAGE_NAME vanto-clser)
    set(CPACK_PACKAGE_FILE_NAME "vanto-clser-${PROJECT_VERSION}-win64")
    set(CPACK_STRIP_FILES ON)
    set(CPACK_VERBATIM_VARIABLES ON)
    include(CPack)
endif()
