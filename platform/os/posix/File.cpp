/* SPDX-License-Identifier: Apache-2.0 */
/*
 * File status on POSIX systems
 */

#include "os/File.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace os {

/**
 * \brief Status of a file or folder, links followed
 * \return kMissing when there is nothing under that path, kError when the system can't tell
 */
FileStatus GetFileStatus(const std::string& path) noexcept {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0)
        return {errno == ENOENT ? FileState::kMissing : FileState::kError};
    return {FileState::kFound, status.st_mtime, static_cast<std::uint64_t>(status.st_size), S_ISDIR(status.st_mode)};
}

/// Whether the file or folder exists and may be read.
bool IsAccessible(const std::string& path) noexcept {
    return ::access(path.c_str(), R_OK) == 0;
}

}  // namespace os
