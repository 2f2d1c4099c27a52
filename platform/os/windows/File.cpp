/* SPDX-License-Identifier: Apache-2.0 */
/*
 * File status on Windows
 */

#include "os/File.h"

#include <io.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <windows.h>

#include <cerrno>

namespace os {

/**
 * \brief Status of a file or folder
 * \return kMissing when there is nothing under that path, kError when the system can't tell
 */
FileStatus GetFileStatus(const std::string& path) noexcept {
    struct _stat64i32 status {};
    if (::_stat64i32(path.c_str(), &status) != 0)
        return {errno == ENOENT ? FileState::kMissing : FileState::kError};
    return {FileState::kFound, status.st_mtime, static_cast<std::uint32_t>(status.st_size),
            (status.st_mode & S_IFMT) == S_IFDIR};
}

/// Whether the file or folder exists.
bool IsAccessible(const std::string& path) noexcept {
    return ::_access(path.c_str(), 0) == 0;
}

/**
 * \brief Open a file for reading
 * \param[in] path Path of the file
 * \return Null when it can't be opened, or is a folder, a pipe or a device
 */
OpenFile OpenPlainFile(const std::string& path) noexcept {
    OpenFile file(std::fopen(path.c_str(), "rb"));
    if (file && ::GetFileType(reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(file.get())))) != FILE_TYPE_DISK)
        file.reset();
    return file;
}

}  // namespace os
