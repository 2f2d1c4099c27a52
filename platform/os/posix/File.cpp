/* SPDX-License-Identifier: Apache-2.0 */
/*
 * File status on POSIX systems
 */

#include "os/File.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "os/posix/Descriptor.h"

namespace os {

namespace {

constexpr mode_t kUsualRights = 0666;  // less what the process's mask takes away

OpenFile OpenToWrite(const std::string& path, int flags, const char* mode) noexcept {
    const int descriptor = AboveStandardDescriptors(::open(path.c_str(), O_WRONLY | O_CLOEXEC | flags, kUsualRights));
    if (descriptor < 0)
        return nullptr;
    OpenFile file(::fdopen(descriptor, mode));
    if (!file)
        ::close(descriptor);
    return file;
}

}  // namespace

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
        void operator()(DIR* opened) const noexcept { ::closedir(opened); }
    };
    std::vector<std::string> names;
    const std::unique_ptr<DIR, Closer> opened(::opendir(folder.c_str()));
    errno = opened ? 0 : errno;
    while (const dirent* const entry = opened ? ::readdir(opened.get()) : nullptr) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
        errno = 0;
    }
    error = std::error_code(errno, std::generic_category());
    return names;
}

/**
 * \brief Open a file for reading
 * \param[in] path Path of the file, links followed
 *
 * What is opened is looked at, not what was there a moment before: a pipe that takes the file's place does not block.
 *
 * \return Null when it can't be opened, or is a folder, a pipe or a device
 */
OpenFile OpenPlainFile(const std::string& path) noexcept {
    const int descriptor = AboveStandardDescriptors(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (descriptor < 0)
        return nullptr;
    struct stat status {};
    OpenFile file;
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode))
        file.reset(::fdopen(descriptor, "rb"));
    if (!file)
        ::close(descriptor);
    return file;
}

/**
 * \brief Make a file and open it for writing
 * \param[in] path Path of the file
 * \return Null when there is one already, or it can't be made
 */
OpenFile OpenNewFile(const std::string& path) noexcept {
    return OpenToWrite(path, O_CREAT | O_EXCL, "wb");
}

/**
 * \brief Open a file for writing behind what it holds
 * \param[in] path Path of the file, which is made when there is none
 * \return Null when it can't be opened
 */
OpenFile OpenFileToAppend(const std::string& path) noexcept {
    return OpenToWrite(path, O_CREAT | O_APPEND, "ab");
}

}  // namespace os
