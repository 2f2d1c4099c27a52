/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Whole files
 */
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tools {

/// The path that a text names. All texts of this program are UTF-8 on Windows (see cmake/utf8.manifest), where the
/// standard library takes a plain text for another code page; elsewhere a path has the text's bytes.
inline std::filesystem::path PathOf(std::string_view text) {
    return std::u8string(text.begin(), text.end());
}

void WriteFile(const std::filesystem::path& path, std::string_view text);

/// The content of a file, or of standard input for "-". Throws ToolError when it can't be read.
std::string ReadInput(const std::filesystem::path& path);

}  // namespace tools
