/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where the libraries of a tree lie
 */
#include "os/Library.h"

#include <string_view>

#include "os/Path.h"

namespace os {

/**
 * \brief Folder of a tree's libraries
 * \param[in] address Address of a function or of static data
 * \return Absolute path of the folder that the library with this code lies in; where that is a library with everything
 *         linked in, which lies in the folder of GenTL producers, the folder of the libraries above it
 */
std::string FolderOfLibraries(const void* address) {
    std::string folder = FolderOf(PathOfCode(address));
    const std::string producers = ToSystemSeparators("/vanto/gentl");
    if (folder.ends_with(producers))
        folder.resize(folder.size() - producers.size());
    return folder;
}

}  // namespace os
