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

foreach(library GCBase GenApi CLProtocol VantoBase)
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
    set(CPACK_GENERATOR ZIP)
    set(CPACK_PACKAGE_NAME vanto-clser)
    set(CPACK_PACKAGE_FILE_NAME "vanto-clser-${PROJECT_VERSION}-win64")
    set(CPACK_STRIP_FILES ON)
    set(CPACK_VERBATIM_VARIABLES ON)
    include(CPack)
endif()
