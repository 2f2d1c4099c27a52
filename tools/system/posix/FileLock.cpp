/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FileLock: one process at a time changes a file
 */
#include "system/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>

#include "os/posix/FileDescriptor.h"

namespace tools {

class FileLock::Impl {
public:
    explicit Impl(const std::filesystem::path& path)
        : m_file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600)) {
        while (m_file.IsOpen() && ::flock(m_file.Get(), LOCK_EX) != 0 && errno == EINTR) {
        }
    }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

private:
    os::FileDescriptor m_file;
};

FileLock::FileLock(const std::filesystem::path& path) : m_impl(std::make_unique<Impl>(path)) {}
FileLock::~FileLock() = default;

}  // namespace tools
