/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where CLProtocol drivers lie
 */

#include "DriverLocations.h"

#include <algorithm>
#include <set>

#include "Base/GCUtilities.h"
#include "ModuleLog.h"
#include "SearchPath.h"
#include "Texts.h"
#include "os/File.h"
#include "os/Path.h"

namespace CLProtocol {

namespace {

constexpr bool kIs64Bit = sizeof(void*) == 8;
#ifdef _WIN32
constexpr const char* kSystemFolder = kIs64Bit ? "Win64_x64" : "Win32_i86";
constexpr std::string_view kPrefix = "";
constexpr std::string_view kSuffix = ".dll";
#else
constexpr const char* kSystemFolder = kIs64Bit ? "Linux64_x64" : "Linux32_i86";
constexpr std::string_view kPrefix = "lib";
constexpr std::string_view kSuffix = ".so";
#endif
constexpr std::string_view kDebug = ".debug";

std::string WithoutSuffix(const std::string& name) {
    return name.substr(0, name.size() - kSuffix.size());
}

bool IsDriverName(const std::string& fileName) {
    const std::string name = os::FoldedFileName(fileName);
    return name.size() > kPrefix.size() + kSuffix.size() && name.starts_with(kPrefix) && name.ends_with(kSuffix);
}

// Whether it is the debug twin of a driver beside it.
bool IsTwin(const std::string& name, const std::vector<std::string>& names) {
    const std::string stem = WithoutSuffix(os::FoldedFileName(name));
    if (!stem.ends_with(kDebug))
        return false;
    const std::string other = stem.substr(0, stem.size() - kDebug.size()).append(kSuffix);
    return std::ranges::find(names, other, os::FoldedFileName) != names.end();
}

// A location's folder as the system knows it, without separators at its end.
std::string FolderOfLocation(const std::string& location) {
    std::string folder = ExpandLocation(location);
    while (folder.size() > 1 && os::IsPathSeparator(folder.back()))
        folder.pop_back();
    return folder;
}

bool IsSystemFolder(const std::string& folder) {
    return os::FoldedFileName(os::FileNameOf(folder)) == os::FoldedFileName(kSystemFolder);
}

// Some name the system's folder itself as the location.
std::string SystemFolderOf(const std::string& location) {
    const std::string folder = FolderOfLocation(location);
    return IsSystemFolder(folder) ? folder : folder + os::kPathSeparator + kSystemFolder;
}

}  // namespace

/**
 * \brief The locations in which drivers are looked for
 *
 * Those that GENICAM_CLPROTOCOL lists; where it lists none, the folder vanto/clprotocol beside the module. A location
 * that can't stand in a DeviceID is left out.
 */
std::vector<std::string> DriverLocations() {
    std::vector<std::string> locations = FoldersOfVariable("GENICAM_CLPROTOCOL");
    if (locations.empty())
        locations = {ModuleFolder() + os::ToSystemSeparators("/vanto/clprotocol")};
    std::erase_if(locations, [](const std::string& location) {
        const bool isOdd = location.find('#') != std::string::npos || HasControlCharacters(location);
        if (isOdd)
            Log(CLP_LOG_WARN, "Location '%s' can't be part of a DeviceID and is left out", location);
        return isOdd;
    });
    return locations;
}

/// A location with its environment variables replaced.
std::string ExpandLocation(const std::string& location) {
    GenICam::gcstring text = location;
    GenICam::ReplaceEnvironmentVariables(text);
    return text.str();
}

/// Path of a driver file of a location, on this system.
std::string DriverPathIn(const std::string& location, const std::string& fileName) {
    return SystemFolderOf(location) + os::kPathSeparator + fileName;
}

/// The folders in which a location's descriptions lie: its own, and that of the drivers, where makers put them as well.
std::vector<std::string> DescriptionFolders(const std::string& location) {
    const std::string system = SystemFolderOf(location);
    const std::string parent = os::FolderOf(system);
    return {parent.empty() ? "." : parent, system};
}

/// The driver files of all locations, in order, each once, without debug twins of others.
std::vector<DriverFile> FindDriverFiles() {
    std::vector<DriverFile> files;
    std::set<std::string> seen;
    for (const std::string& location : DriverLocations()) {
        std::vector<std::string> names = FilesIn(SystemFolderOf(location));
        std::erase_if(names, [](const std::string& name) {
            return !IsDriverName(name) || HasControlCharacters(name) || name.find('#') != name.npos;
        });
        for (const std::string& name : names)
            if (!IsTwin(name, names) && seen.insert(CanonicalPath(DriverPathIn(location, name))).second)
                files.push_back({location, name});
    }
    return files;
}

}  // namespace CLProtocol
