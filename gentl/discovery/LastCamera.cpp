/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Which camera answered last behind a port, for a process that finds the port in use before it has ever asked it
 */
#include "discovery/LastCamera.h"

#include "base/Sha1.h"
#include "os/File.h"
#include "os/Path.h"
#include "support/Log.h"

namespace gentl {

namespace {

constexpr std::size_t kLongestId = 4096;

std::string Folder() {
    const std::optional<std::string> caches = os::UserCacheFolder();
    return caches ? *caches + os::kPathSeparator + "vanto" + os::kPathSeparator + "ports" : std::string();
}

// A PortID is no name for a file on every system.
std::string FileOf(const std::string& folder, const std::string& portId) {
    return folder + os::kPathSeparator + base::ToText(base::Sha1(portId));
}

}  // namespace

void RememberCamera(const std::string& portId, const std::string& deviceId) {
    const std::string folder = Folder();
    if (folder.empty() || LastCamera(portId) == deviceId)
        return;
    if (!os::CreateFolders(folder) || !os::WriteWholeFile(FileOf(folder, portId), deviceId))
        LogTrace(LogCategory(), Vanto::tracelog::kDebug, "The camera of port '%s' is not kept in '%s'", portId, folder);
}

std::optional<std::string> LastCamera(const std::string& portId) {
    const std::string folder = Folder();
    std::optional<std::string> id;
    if (!folder.empty())
        id = os::ReadWholeFile(FileOf(folder, portId), kLongestId);
    return id && !id->empty() ? id : std::nullopt;
}

}  // namespace gentl
