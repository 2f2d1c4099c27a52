/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A file descriptor that closes itself
 */
#pragma once

#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace os {

class FileDescriptor {
public:
    explicit FileDescriptor(int fd = -1) noexcept : m_fd(fd) {}
    /// \throw std::system_error The descriptor is the result of a call that failed; \a what says which
    FileDescriptor(int fd, const char* what) : m_fd(fd) {
        if (fd < 0)
            throw std::system_error(errno, std::generic_category(), what);
    }
    FileDescriptor(FileDescriptor&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(m_fd, other.m_fd);
        return *this;
    }
    ~FileDescriptor() { Close(); }

    int Get() const noexcept { return m_fd; }
    bool IsOpen() const noexcept { return m_fd >= 0; }
    void Close() noexcept {
        if (m_fd >= 0)
            ::close(std::exchange(m_fd, -1));
    }

private:
    int m_fd;
};

}  // namespace os
