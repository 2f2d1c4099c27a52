/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The parts of a path
 */

#include "os/Path.h"

#include <algorithm>

namespace os {

namespace {

std::size_t FileNameAt(std::string_view path) {
    std::size_t at = path.size();
    while (at > 0 && !IsPathSeparator(path[at - 1]))
        --at;
    return at;
}

}  // namespace

/// Whether a character parts the elements of a path; on Windows two do.
bool IsPathSeparator(char character) noexcept {
#ifdef _WIN32
    return character == '\\' || character == '/';
#else
    return character == '/';
#endif
}

/**
 * \brief Turn the separators of other systems into this system's
 * \return The text with each kForeignSeparator replaced by kPathSeparator
 */
std::string ToSystemSeparators(std::string_view path) {
    std::string result(path);
    std::replace(result.begin(), result.end(), kForeignSeparator, kPathSeparator);
    return result;
}

/**
 * \brief The folder part of a path
 * \return All before the last separator; the root itself for a file in it; empty for a bare file name
 */
std::string FolderOf(std::string_view path) {
    std::size_t end = FileNameAt(path);
    while (end > 1 && IsPathSeparator(path[end - 1]))
        --end;
    return std::string(path.substr(0, end));
}

/**
 * \brief The file name of a path
 * \return All behind the last separator; empty when the path ends in one
 */
std::string FileNameOf(std::string_view path) {
    return std::string(path.substr(FileNameAt(path)));
}

}  // namespace os
