/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What this user may do with a file, and the COM ports of the machine
 */
#include "system/FileAccess.h"

#include <windows.h>
// After windows.h, which it needs.
#include <lmcons.h>

#include <algorithm>
#include <array>
#include <system_error>

#include "os/windows/Handle.h"

namespace tools {

namespace {

constexpr char kDevices[] = "\\\\.\\";

/// Owns what CreateFile opened.
class Opened {
public:
    Opened(const std::filesystem::path& path, DWORD access)
        : m_handle(::CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                 OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr)),
          m_error(!m_handle.IsOpen() ? ::GetLastError() : ERROR_SUCCESS) {}

    DWORD Error() const { return m_error; }
    HANDLE Handle() const { return m_handle.Get(); }

private:
    os::Handle m_handle;
    DWORD m_error;
};

bool IsPort(const std::string& name) {
    std::array<char, 1024> target{};
    return ::QueryDosDeviceA(name.c_str(), target.data(), static_cast<DWORD>(target.size())) != 0;
}

bool IsDevice(const std::filesystem::path& path) {
    return path.string().starts_with(kDevices);
}

FileAccess AccessToPort(const std::filesystem::path& path) {
    FileAccess access;
    access.exists = IsPort(path.string().substr(sizeof(kDevices) - 1));
    // A port that another program holds is refused like one that this user may not use; only one of them is a matter
    // of rights, and Windows lets all users open a port.
    access.readable = access.writable = access.exists;
    access.owner = access.group = "SYSTEM";
    access.mode = "port";
    return access;
}

}  // namespace

/**
 * \brief Ask the system what this user may do with a file
 * \param[in] path The file, or a port as "\\.\COM3"
 */
FileAccess AccessTo(const std::filesystem::path& path) {
    if (IsDevice(path))
        return AccessToPort(path);
    FileAccess access;
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return access;
    access.exists = true;
    access.readable = Opened(path, GENERIC_READ).Error() == ERROR_SUCCESS;
    access.writable = Opened(path, GENERIC_WRITE).Error() == ERROR_SUCCESS;
    access.mode = (attributes & FILE_ATTRIBUTE_READONLY) != 0 ? "read-only" : "file";
    return access;
}

std::string WhyNotReadable(const std::filesystem::path& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return "it is a folder";
    const Opened file(path, GENERIC_READ);
    if (file.Error() == ERROR_FILE_NOT_FOUND || file.Error() == ERROR_PATH_NOT_FOUND)
        return std::generic_category().message(ENOENT);
    if (file.Error() != ERROR_SUCCESS)
        return std::system_category().message(static_cast<int>(file.Error()));
    return ::GetFileType(file.Handle()) == FILE_TYPE_DISK ? std::string() : "it is no regular file";
}

std::string AdviceOnAccess(const std::filesystem::path& path, const FileAccess&) {
    return "Ask an administrator for the right to use " + path.string() + ".";
}

std::string UserName() {
    std::array<char, UNLEN + 1> name{};
    DWORD size = static_cast<DWORD>(name.size());
    return ::GetUserNameA(name.data(), &size) != 0 ? std::string(name.data()) : std::string();
}

std::vector<std::filesystem::path> SerialDevices() {
    std::vector<std::filesystem::path> devices;
    HKEY key = nullptr;
    if (::RegOpenKeyExA(HKEY_LOCAL_MACHINE, "HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_READ, &key) != ERROR_SUCCESS)
        return devices;
    for (DWORD index = 0;; ++index) {
        std::array<char, 256> name{};
        std::array<char, 256> port{};
        DWORD nameSize = static_cast<DWORD>(name.size());
        DWORD portSize = static_cast<DWORD>(port.size() - 1);
        DWORD type = 0;
        const LONG result = ::RegEnumValueA(key, index, name.data(), &nameSize, nullptr, &type,
                                            reinterpret_cast<BYTE*>(port.data()), &portSize);
        if (result != ERROR_SUCCESS && result != ERROR_MORE_DATA)
            break;
        if (result == ERROR_SUCCESS && type == REG_SZ && port.front() != '\0')
            devices.emplace_back(std::string(kDevices) + port.data());
    }
    ::RegCloseKey(key);
    std::sort(devices.begin(), devices.end());
    return devices;
}

std::filesystem::path DeviceOfPort(const std::string& portId) {
    const std::string name = DeviceNameOf(portId);
    if (name.empty() || name.find_first_of("\\/:") != std::string::npos || !IsPort(name))
        return {};
    return kDevices + name;
}

}  // namespace tools
