/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Finds ttys: those of the machine's serial hardware, and those linked in folders
 */

#include "PortScan.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

#include "TtyKind.h"
#include "os/Environment.h"
#include "os/File.h"
#include "os/Path.h"

namespace ClSerTty {

namespace {

namespace fs = std::filesystem;

constexpr const char* kPathVariable = "CLSERTTY_PATH";

std::string FirstWord(const fs::path& file) {
    std::ifstream stream(file);
    std::string word;
    stream >> word;
    return word;
}

bool IsConsole(const fs::path& sysClass, const std::string& name) {
    std::ifstream active(sysClass / "console" / "active");
    std::string console;
    while (active >> console) {
        if (console == name)
            return true;
    }
    return false;
}

/// Virtual terminals and pseudo-terminals have no device behind them; an 8250 port that is not fitted has type 0;
/// a hypervisor's console (hvc) is one whether the kernel logs to it or not.
bool IsSerialHardware(const fs::path& sysClass, const std::string& name) {
    std::error_code error;
    return fs::exists(sysClass / name / "device", error) && FirstWord(sysClass / name / "type") != "0" &&
           name.rfind("hvc", 0) != 0 && !IsConsole(sysClass, name);
}

std::string DeviceFileName(std::string name) {
    std::replace(name.begin(), name.end(), '!', '/');
    return name;
}

/// PortIDs are listed one a line and separated by tabs, so that neither may stand in a name.
bool IsPortName(const std::string& name) {
    return std::none_of(name.begin(), name.end(),
                        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

bool MayBeLink(const std::string& path) {
    std::error_code error;
    const auto type = fs::symlink_status(path, error).type();
    return type == fs::file_type::symlink || type == fs::file_type::none;
}

bool IsNoFile(int error) {
    return error == ENOENT || error == ENOTDIR || error == ELOOP || error == EACCES;
}

bool MayBeTty(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0)
        return !IsNoFile(errno);
    return S_ISCHR(status.st_mode) && IsTtyNumber(status.st_rdev);
}

void ThrowIfUnreadable(const std::string& folder, const std::error_code& error) {
    if (error && !IsNoFile(error.value()))
        throw std::system_error(error, "The folder " + folder + " cannot be read");
}

std::vector<std::string> PathFolders() {
    std::istringstream list(os::GetEnvironment(kPathVariable).text);
    std::vector<std::string> folders;
    for (std::string folder; std::getline(list, folder, os::kPathListSeparator);) {
        if (!folder.empty())
            folders.push_back(folder);
    }
    return folders;
}

}  // namespace

/**
 * \brief Find the ttys that have serial hardware behind them: built in, on USB, or on a frame grabber
 * \return The ttys by device name; those without a device file are left out
 */
PortList MachineTtys(const SystemFolders& folders) {
    const fs::path sysClass = fs::path(folders.sys) / "class" / "tty";
    PortList ports;
    std::error_code error;
    for (const std::string& name : os::ListFolder(sysClass.string(), error)) {
        const fs::path file = fs::path(folders.dev) / DeviceFileName(name);
        std::error_code missing;
        if (IsSerialHardware(sysClass, name) && fs::exists(file, missing))
            ports.push_back({name, file.string()});
    }
    ThrowIfUnreadable(sysClass.string(), error);
    return ports;
}

/**
 * \brief Find the ttys that are linked in a folder, pseudo-terminals included
 * \param[in] folder A folder that does not exist, or may not be read, has none
 * \return The ttys by the names of the links; dangling links and links to anything but a tty are left out. What can't
 * be examined is listed: whoever opens it learns why \throw std::system_error The folder can't be read for another
 * reason
 */
PortList LinkedTtys(const std::string& folder) {
    PortList ports;
    std::error_code error;
    for (const std::string& name : os::ListFolder(folder, error)) {
        const std::string link = (fs::path(folder) / name).string();
        if (IsPortName(name) && MayBeLink(link) && MayBeTty(link))
            ports.push_back({name, link});
    }
    ThrowIfUnreadable(folder, error);
    return ports;
}

PortList FindPorts() {
    std::vector<PortList> sources{MachineTtys({})};
    for (const std::string& folder : PathFolders())
        sources.push_back(LinkedTtys(folder));
    return MergePorts(sources);
}

}  // namespace ClSerTty
