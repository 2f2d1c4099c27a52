/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Folders and paths on Windows
 */

#include "os/Path.h"

#include <windows.h>
// After windows.h, which they need.
#include <shlobj.h>
#include <shlwapi.h>

#include <array>

#include "os/Environment.h"

namespace os {

/**
 * \brief Where applications keep data for all users of the machine; the system creates it where it is missing
 * \return The folder, without a separator at its end; nothing when the system knows none
 */
std::optional<std::string> CommonApplicationDataFolder() {
    constexpr int kFolder = CSIDL_COMMON_APPDATA | CSIDL_FLAG_CREATE;
    static_assert(kFolder == 0x8023);
    std::array<char, kMaxPath> path{};
    if (::SHGetFolderPathA(nullptr, kFolder, nullptr, SHGFP_TYPE_CURRENT, path.data()) != S_OK)
        return std::nullopt;
    return std::string(path.data());
}

/**
 * \brief Where the user's caches lie: LOCALAPPDATA
 * \return The folder; nothing when the variable is not set
 */
std::optional<std::string> UserCacheFolder() {
    EnvironmentValue folder = GetEnvironment("LOCALAPPDATA");
    if (folder.status != EnvironmentStatus::kPresent)
        return std::nullopt;
    return std::move(folder.text);
}

/**
 * \brief Append a relative path with exactly one separator between
 * \param[in,out] path The path; an empty one becomes \a part
 * \param[in] part What to append; separators at its start do not count, an empty one changes nothing
 * \return False, with \a path unchanged, when the result and its NUL are longer than kMaxPath
 */
bool AppendToPath(std::string& path, std::string_view part) {
    // Two separators at its start would make it a network path, which replaces what it is appended to.
    while (!part.empty() && part.front() == kPathSeparator)
        part.remove_prefix(1);
    if (part.empty())
        return path.size() < kMaxPath;
    // The system's function trusts both texts for their lengths.
    if (path.size() + part.size() + 1 > kMaxPath)
        return false;
    std::array<char, 2 * kMaxPath> buffer{};
    path.copy(buffer.data(), path.size());
    if (::PathAppendA(buffer.data(), std::string(part).c_str()) == 0)
        return false;
    path = buffer.data();
    return true;
}

/// A name to compare with others: in lower case, as far as ASCII goes, since the case of file names does not count.
std::string FoldedFileName(std::string name) {
    for (char& character : name)
        character = static_cast<char>(character >= 'A' && character <= 'Z' ? character - 'A' + 'a' : character);
    return name;
}

/// The path that a text names in the code page in use.
std::filesystem::path ToFilePath(const std::string& text) {
    std::wstring wide(text.size(), L'\0');
    wide.resize(static_cast<std::size_t>(::MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()),
                                                               wide.data(), static_cast<int>(wide.size()))));
    return wide;
}

/// The text that names a path in the code page in use; what it lacks becomes a question mark.
std::string ToText(const std::filesystem::path& path) {
    constexpr std::size_t kMostBytes = 4;  // of a character
    const std::wstring& wide = path.native();
    std::string text(kMostBytes * wide.size(), '\0');
    text.resize(
        static_cast<std::size_t>(::WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()),
                                                       text.data(), static_cast<int>(text.size()), nullptr, nullptr)));
    return text;
}

}  // namespace os
