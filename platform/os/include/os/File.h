/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Files: status and existence
 */
#pragma once

#include <cstdint>
#include <string>

namespace os {

enum class FileState { kFound, kMissing, kError };

struct FileStatus {
    FileState state = FileState::kError;
    std::int64_t modified = 0;  ///< seconds since 1970, UTC; 0 unless found
    std::uint64_t size = 0;     ///< bytes; 0 unless found
    bool isFolder = false;
};

FileStatus GetFileStatus(const std::string& path) noexcept;
bool IsAccessible(const std::string& path) noexcept;

}  // namespace os
