/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A file descriptor that closes itself
 */
#pragma once

#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace MarlowSim {

class FileDescriptor {
public:
    FileDescriptor() = default;
    /// \throw std::system_error The descriptor is the result of a call that failed; \a what says which
    FileDescriptor(int fd, const char* what) : m_fd(fd) {
        if (fd < 0) {
            throw std::system_error(errno, std::generic_category(), what);
        }
    }
    FileDescriptor(FileDescriptor&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(m_fd, other.m_fd);
        return *this;
    }
    ~FileDescriptor() {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
    }

    int Get() const { return m_fd; }

private:
    int m_fd = -1;
};

}  // namespace MarlowSim
