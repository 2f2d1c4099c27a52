/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Files: status, existence, listing, and reading and writing whole files
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace os {

enum class FileState { kFound, kMissing, kError };

struct FileStatus {
    FileState state = FileState::kError;
    std::int64_t modified = 0;  ///< seconds since 1970, UTC; 0 unless found
    std::uint64_t size = 0;     ///< bytes; 0 unless found
    bool isFolder = false;
};

struct FileCloser {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, FileCloser>;

FileStatus GetFileStatus(const std::string& path) noexcept;
bool IsAccessible(const std::string& path) noexcept;

std::vector<std::string> ListFolder(const std::string& folder, std::error_code& error);
std::vector<std::string> ListFiles(const std::string& folder);
std::vector<std::string> ListFiles(const std::string& folder, std::error_code& error);
bool IsNotThere(const std::error_code& error) noexcept;
OpenFile OpenPlainFile(const std::string& path) noexcept;
OpenFile OpenNewFile(const std::string& path) noexcept;
OpenFile OpenFileToAppend(const std::string& path) noexcept;
bool CreateFolders(const std::string& folder) noexcept;
std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t maxSize);
bool WriteWholeFile(const std::string& path, std::string_view content) noexcept;

}  // namespace os
