/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What this user may do with a file, and the devices of serial ports
 */
#include "system/FileAccess.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <sstream>
#include <system_error>

#include "os/posix/FileDescriptor.h"
#include "system/Environment.h"

namespace tools {

namespace {

constexpr std::size_t kEntryBuffer = 16 * 1024;

std::string NameOfUser(uid_t user) {
    std::vector<char> buffer(kEntryBuffer);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr)
        return found->pw_name;
    return std::to_string(user);
}

std::string NameOfGroup(gid_t number) {
    std::vector<char> buffer(kEntryBuffer);
    group entry{};
    group* found = nullptr;
    if (::getgrgid_r(number, &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr)
        return found->gr_name;
    return std::to_string(number);
}

bool IsMember(gid_t group) {
    if (::getegid() == group)
        return true;
    std::vector<gid_t> groups(static_cast<std::size_t>(std::max(::getgroups(0, nullptr), 0)));
    const int count = ::getgroups(static_cast<int>(groups.size()), groups.data());
    return count > 0 && std::find(groups.begin(), groups.begin() + count, group) != groups.begin() + count;
}

std::string ModeText(mode_t mode) {
    std::string text = S_ISCHR(mode) ? "c" : S_ISDIR(mode) ? "d" : "-";
    constexpr std::string_view kLetters = "rwxrwxrwx";
    for (std::size_t bit = 0; bit < kLetters.size(); ++bit)
        text += (mode & (0400U >> bit)) != 0 ? kLetters[bit] : '-';
    return text;
}

/// The kernel makes ttyS devices for ports that a machine might have; those without a driver's hardware are empty.
bool IsRealBuiltInPort(const std::filesystem::path& entry) {
    std::error_code error;
    const std::filesystem::path type = entry / "type";
    if (!std::filesystem::exists(type, error))
        return true;
    std::FILE* file = std::fopen(type.c_str(), "r");
    if (file == nullptr)
        return false;
    int number = 0;
    const bool real = std::fscanf(file, "%d", &number) == 1 && number != 0;
    std::fclose(file);
    return real;
}

}  // namespace

/**
 * \brief Ask the system what this user may do with a file
 * \param[in] path The file; a symbolic link is followed
 */
FileAccess AccessTo(const std::filesystem::path& path) {
    FileAccess access;
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0)
        return access;
    access.exists = true;
    access.readable = ::access(path.c_str(), R_OK) == 0;
    access.writable = ::access(path.c_str(), W_OK) == 0;
    access.owner = NameOfUser(status.st_uid);
    access.group = NameOfGroup(status.st_gid);
    access.groupMayWrite = (status.st_mode & S_IWGRP) != 0;
    access.memberOfGroup = IsMember(status.st_gid);
    access.mode = ModeText(status.st_mode);
    return access;
}

std::string WhyNotReadable(const std::filesystem::path& path) {
    // Non-blocking, or a named pipe would wait for its writer.
    const os::FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.IsOpen())
        return std::generic_category().message(errno);
    struct stat status {};
    const bool known = ::fstat(file.Get(), &status) == 0;
    if (known && S_ISDIR(status.st_mode))
        return "it is a folder";
    return known && S_ISREG(status.st_mode) ? std::string() : "it is no regular file";
}

std::string AdviceOnAccess(const std::filesystem::path& path, const FileAccess& access) {
    if (access.groupMayWrite && access.group != "root" && !access.memberOfGroup)
        return "Join its group: 'sudo usermod -aG " + access.group + " " + UserName() + "', then log in again.";
    return "Give " + path.string() + " to a group of yours with an udev rule; it is " + access.mode + " " +
           access.owner + ":" + access.group + ".";
}

std::string UserName() {
    return NameOfUser(::geteuid());
}

std::vector<std::filesystem::path> SerialDevices() {
    std::vector<std::filesystem::path> devices;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/sys/class/tty", error)) {
        // Virtual consoles and pseudo-terminals have no device behind them.
        if (std::filesystem::exists(entry.path() / "device", error) && IsRealBuiltInPort(entry.path()))
            devices.push_back("/dev" / entry.path().filename());
    }
    std::sort(devices.begin(), devices.end());
    return devices;
}

std::filesystem::path DeviceOfPort(const std::string& portId) {
    const std::string name = DeviceNameOf(portId);
    if (name.empty() || name.find('/') != std::string::npos || name.starts_with('.'))
        return {};
    std::error_code error;
    std::istringstream folders(GetEnvironment("CLSERTTY_PATH").value_or(""));
    for (std::string folder; std::getline(folders, folder, ':');) {
        const std::filesystem::path link = std::filesystem::path(folder) / name;
        if (!folder.empty() && std::filesystem::exists(link, error))
            return link;
    }
    const std::filesystem::path device = std::filesystem::path("/dev") / name;
    return std::filesystem::exists(device, error) ? device : std::filesystem::path();
}

}  // namespace tools
