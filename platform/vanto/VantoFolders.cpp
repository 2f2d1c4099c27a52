/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Folders of an installed or built tree
 */

#include "vanto/VantoFolders.h"

#include <algorithm>
#include <string_view>

#include "Base/GCException.h"
#include "os/Environment.h"
#include "os/Library.h"
#include "os/Path.h"

namespace Vanto {

namespace {

/// The folder of the library without VANTO_DIR_LIBRARIES at its end, which may be several folders deep.
std::string FindFolderAboveLibrary() {
    const std::string_view libraries = VANTO_DIR_LIBRARIES;
    std::string folder = os::FolderOfLibraries(reinterpret_cast<const void*>(&getVantoFolderPath));
    for (auto depth = 1 + std::count(libraries.begin(), libraries.end(), '/'); depth != 0; --depth)
        folder = os::FolderOf(folder);
    return folder;
}

const std::string& FolderAboveLibrary() {
    static const std::string folder = FindFolderAboveLibrary();
    return folder;
}

// While the library is loaded, and so before any plug-in is: a library that hangs in its constructor keeps the system
// from answering this question.
[[maybe_unused]] const bool isFolderKnown = !FolderAboveLibrary().empty();

std::string RootFolder() {
    const os::EnvironmentValue root = os::GetEnvironment("VANTO_ROOT");
    if (root.status == os::EnvironmentStatus::kPresent) {
        std::string path = root.text;
        // A root of separators only is the file system's own.
        while (path.size() > 1 && os::IsPathSeparator(path.back()))
            path.pop_back();
        return path;
    }
    return FolderAboveLibrary();
}

const char* BelowRoot(eFolderType type) {
    switch (type) {
        case eRootFolder:
            return "";
        case eBinaryFolder:
            return "bin";
        case eLibraryFolder:
            return VANTO_DIR_LIBRARIES;
        case eTransportLayerFolder:
            return VANTO_DIR_TL;
        case ePluginFolder:
            return VANTO_DIR_PLUGINS;
        case eConfigurationFolder:
            return "etc/vanto";
    }
    throw INVALID_ARGUMENT_EXCEPTION("There is no folder of type %d.", static_cast<int>(type));
}

}  // namespace

/**
 * \brief A folder below the root, without a separator at its end
 *
 * The root is VANTO_ROOT if set and not empty, else the parent of the folder that the base library lies in. The
 * environment is read at each call. The folder need not exist.
 *
 * The configuration of the root /usr is in /etc/vanto but on Windows.
 *
 * \throw InvalidArgumentException The type is none of eFolderType
 */
gcstring getVantoFolderPath(eFolderType type) {
    const char* const part = BelowRoot(type);
    std::string path = RootFolder();
    // What belongs to /usr is configured in /etc, where a system has them (Filesystem Hierarchy Standard).
    if (type == eConfigurationFolder && os::kPathSeparator == '/' && path == "/usr")
        path = "/";
    if (*part != '\0') {
        if (path.empty() || !os::IsPathSeparator(path.back()))
            path += os::kPathSeparator;
        path += os::ToSystemSeparators(part);
    }
    return path;
}

/**
 * \brief The system's path separator
 */
gcstring getVantoPathSeperator() {
    return gcstring(1, os::kPathSeparator);
}

}  // namespace Vanto
