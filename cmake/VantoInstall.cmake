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

foreach(library GCBase GenApi CLProtocol VantoBase VantoApplication)
    vanto_runpath(${library} ${VANTO_DIR_LIBRARIES})
    install(TARGETS ${library} LIBRARY DESTINATION ${VANTO_DIR_LIBRARIES} RUNTIME DESTINATION ${VANTO_DIR_LIBRARIES}
            ARCHIVE DESTINATION lib)
endforeach()
vanto_runpath(clsertty ${VANTO_DIR_LIBRARIES})
vanto_runpath(VantoCLSer "${VANTO_DIR_TL}")
install(TARGETS VantoCLSer LIBRARY DESTINATION "${VANTO_DIR_TL}")
vanto_runpath(MarlowCLProtocol "${VANTO_DIR_DRIVERS}")
vanto_runpath(vanto-cl bin)
vanto_runpath(marlow-sim bin)

install(
    DIRECTORY include/
              application/include/
              platform/vanto/include/
              platform/genicam/gcbase/include/
              platform/genicam/genapi/include/
              platform/genicam/clprotocol/include/
              platform/genicam/clprotocol/interface/
    DESTINATION include
    FILES_MATCHING
    PATTERN "*.h"
    PATTERN "internal" EXCLUDE)
install(FILES LICENSE README.md DESTINATION share/doc/vanto-cl)
install(DIRECTORY docs/ DESTINATION share/doc/vanto-cl/docs FILES_MATCHING PATTERN "*.md")

# For Windows users: one folder in an archive, to be unpacked anywhere.
if(WIN32)
    # The licences of what is linked into the files, from the Debian packages of the same sources. Boost's asks for no
    # copy beside machine code.
    function(vanto_license package name)
        install(FILES "/usr/share/doc/${package}/copyright" DESTINATION share/doc/vanto-cl/licenses RENAME "${name}.txt")
    endfunction()
    vanto_license(libcli11-dev cli11)
    vanto_license(nlohmann-json3-dev nlohmann_json)
    vanto_license(libexpat1-dev libexpat)
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
        install(FILES "/usr/share/common-licenses/${text}" DESTINATION share/doc/vanto-cl/licenses RENAME "${text}.txt")
    endforeach()

    set(CPACK_GENERATOR ZIP)
    set(CPACK_PACKAGE_NAME vanto-clser)
    set(CPACK_PACKAGE_FILE_NAME "vanto-clser-${PROJECT_VERSION}-win64")
    set(CPACK_STRIP_FILES ON)
    set(CPACK_VERBATIM_VARIABLES ON)
    include(CPack)
endif()
