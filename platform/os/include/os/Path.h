/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Folders that the system knows, and paths
 */
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace os {

inline constexpr std::size_t kMaxPath = 260;  ///< characters of a path, its terminating NUL included
#ifdef _WIN32
inline constexpr char kPathSeparator = '\\';
inline constexpr char kForeignSeparator = '/';
inline constexpr char kPathListSeparator = ';';
#else
inline constexpr char kPathSeparator = '/';
inline constexpr char kForeignSeparator = '\\';
inline constexpr char kPathListSeparator = ':';
#endif

std::optional<std::string> CommonApplicationDataFolder();
std::optional<std::string> UserCacheFolder();
bool AppendToPath(std::string& path, std::string_view part);
bool IsPathSeparator(char character) noexcept;
std::string ToSystemSeparators(std::string_view path);
std::string FolderOf(std::string_view path);
std::string FileNameOf(std::string_view path);
std::string FoldedFileName(std::string name);

// Texts of this library are in the code page in use on Windows, where the standard library takes them for others.
std::filesystem::path ToFilePath(const std::string& text);
std::string ToText(const std::filesystem::path& path);

}  // namespace os
