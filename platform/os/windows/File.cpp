/* SPDX-License-Identifier: Apache-2.0 */
/*
 * File status on Windows
 */

#include "os/File.h"

#include <fcntl.h>
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
 * \brief What lies in a folder
 * \param[out] error Why the folder can't be read, or not to its end
 *
 * The iterators of the standard library end the process where there is no memory for a name.
 *
 * \return Names without the folder, in no order, but "." and ".."
 */
std::vector<std::string> ListFolder(const std::string& folder, std::error_code& error) {
    struct Closer {
        using pointer = HANDLE;
        void operator()(HANDLE search) const noexcept { ::FindClose(search); }
    };
    std::vector<std::string> names;
    WIN32_FIND_DATAA entry;
    const HANDLE first = ::FindFirstFileA((folder + "\\*").c_str(), &entry);
    if (first != INVALID_HANDLE_VALUE) {
        const std::unique_ptr<void, Closer> search(first);
        do {
            const std::string_view name = entry.cFileName;
            if (name != "." && name != "..")
                names.emplace_back(name);
        } while (::FindNextFileA(first, &entry) != 0);
    }
    const DWORD reason = ::GetLastError();
    error = reason == ERROR_NO_MORE_FILES ? std::error_code()
                                          : std::error_code(static_cast<int>(reason), std::system_category());
    return names;
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

/**
 * \brief Make a file and open it for writing
 * \param[in] path Path of the file
 * \return Null when there is one already, or it can't be made
 */
OpenFile OpenNewFile(const std::string& path) noexcept {
    // The system's C library knows no "x" among the modes of fopen.
    constexpr int kMode = _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY;
    const int descriptor = ::_open(path.c_str(), kMode, _S_IREAD | _S_IWRITE);
    if (descriptor < 0)
        return nullptr;
    OpenFile file(::_fdopen(descriptor, "wb"));
    if (!file)
        ::_close(descriptor);
    return file;
}

/**
 * \brief Open a file for writing behind what it holds
 * \param[in] path Path of the file, which is made when there is none
 * \return Null when it can't be opened
 */
OpenFile OpenFileToAppend(const std::string& path) noexcept {
    return OpenFile(std::fopen(path.c_str(), "ab"));
}

}  // namespace os
