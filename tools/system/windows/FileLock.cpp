/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FileLock: one process at a time changes a file, on Windows
 */
#include "system/FileLock.h"

#include <windows.h>

#include "os/windows/Handle.h"

namespace tools {

class FileLock::Impl {
public:
    explicit Impl(const std::filesystem::path& path)
        : m_file(::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                               OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)) {
        OVERLAPPED place{};
        if (m_file.IsOpen())
            ::LockFileEx(m_file.Get(), LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &place);
    }
    ~Impl() {
        // Closing a file gives its locks back, but not always at once.
        OVERLAPPED place{};
        if (m_file.IsOpen())
            ::UnlockFileEx(m_file.Get(), 0, 1, 0, &place);
    }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

private:
    os::Handle m_file;
};

FileLock::FileLock(const std::filesystem::path& path) : m_impl(std::make_unique<Impl>(path)) {}
FileLock::~FileLock() = default;

}  // namespace tools
