/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Names the process that has a tty open
 */

#include "PortHolder.h"

#include <sys/sysmacros.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>

#include "base/Number.h"
#include "os/File.h"

namespace ClSerTty {

namespace {

namespace fs = std::filesystem;

/// How /proc/locks writes the file of a lock.
std::string LockedFile(const struct stat& tty) {
    std::ostringstream text;
    text << std::hex;
    text.fill('0');
    text.width(2);
    text << major(tty.st_dev) << ':';
    text.width(2);
    text << minor(tty.st_dev) << ':' << std::dec << tty.st_ino;
    return text.str();
}

/// A line of /proc/locks: "1: FLOCK  ADVISORY  WRITE 7323 00:1a:3 0 EOF"; everybody may read it.
std::optional<int> FindByLock(const struct stat& tty) {
    const std::string wanted = LockedFile(tty);
    std::ifstream locks("/proc/locks");
    for (std::string line; std::getline(locks, line);) {
        std::istringstream words(line);
        std::string number, kind, mode, access, pid, file;
        if (words >> number >> kind >> mode >> access >> pid >> file && kind == "FLOCK" && file == wanted)
            return base::ParseNumber<int>(pid);
    }
    return std::nullopt;
}

bool HasOpen(const fs::path& process, dev_t tty) {
    std::error_code error;
    for (const std::string& descriptor : os::ListFolder((process / "fd").string(), error)) {
        struct stat status {};
        if (::stat((process / "fd" / descriptor).c_str(), &status) == 0 && S_ISCHR(status.st_mode) &&
            status.st_rdev == tty) {
            return true;
        }
    }
    return false;
}

/// For programs that take a tty without a lock; finds those of the same user, and all for root.
std::optional<int> FindByOpenFile(const struct stat& tty) {
    std::error_code error;
    for (const std::string& name : os::ListFolder("/proc", error)) {
        const std::optional<int> pid = base::ParseNumber<int>(name);
        if (pid && *pid != ::getpid() && HasOpen(fs::path("/proc") / name, tty.st_rdev))
            return pid;
    }
    return std::nullopt;
}

std::string ProcessName(int pid) {
    std::ifstream stream("/proc/" + std::to_string(pid) + "/comm");
    std::string name;
    std::getline(stream, name);
    return name;
}

}  // namespace

/**
 * \brief Say who has a tty open
 * \param[in] tty Status of the device file
 * \return For example "process 4711 (minicom)", or an empty text when the system does not tell
 */
std::string DescribeHolder(const struct stat& tty) {
    std::optional<int> pid = FindByLock(tty);
    if (!pid || *pid <= 0)
        pid = FindByOpenFile(tty);
    if (!pid)
        return {};
    const std::string name = ProcessName(*pid);
    return "process " + std::to_string(*pid) + (name.empty() ? "" : " (" + name + ")");
}

}  // namespace ClSerTty
