/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A file descriptor that closes itself
 */
#pragma once

#include <unistd.h>

#include <utility>

namespace ClSerTty {

class FileDescriptor {
public:
    explicit FileDescriptor(int fd = -1) noexcept : m_fd(fd) {}
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

    int Get() const noexcept { return m_fd; }
    bool IsOpen() const noexcept { return m_fd >= 0; }

private:
    int m_fd;
};

}  // namespace ClSerTty
