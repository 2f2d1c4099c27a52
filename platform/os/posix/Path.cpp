/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Folders and paths on POSIX systems
 */

#include "os/Path.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "os/Environment.h"

namespace os {

namespace {

std::optional<std::string> HomeFolder() {
    const EnvironmentValue home = GetEnvironment("HOME");
    if (home.status == EnvironmentStatus::kPresent)
        return home.text;
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr)
        return std::nullopt;
    if (found->pw_dir == nullptr || *found->pw_dir == '\0')
        return std::nullopt;
    return std::string(found->pw_dir);
}

}  // namespace

/**
 * \brief Where applications keep data for all users of the machine
 * \return The folder, without a separator at its end
 */
std::optional<std::string> CommonApplicationDataFolder() {
    return "/etc";
}

/**
 * \brief Where the user's caches lie: XDG_CACHE_HOME where it is an absolute path, else ".cache" at home
 * \return The folder, which need not exist; nothing when the user has no home
 */
std::optional<std::string> UserCacheFolder() {
    const EnvironmentValue cache = GetEnvironment("XDG_CACHE_HOME");
    if (cache.status == EnvironmentStatus::kPresent && cache.text.front() == kPathSeparator)
        return cache.text;
    const std::optional<std::string> home = HomeFolder();
    if (!home)
        return std::nullopt;
    return *home + "/.cache";
}

/**
 * \brief Append a relative path with exactly one separator between
 * \param[in,out] path The path; an empty one becomes \a part
 * \param[in] part What to append; separators at its start do not count, an empty one changes nothing
 * \return False, with \a path unchanged, when the result and its NUL are longer than kMaxPath
 */
bool AppendToPath(std::string& path, std::string_view part) {
    part.remove_prefix(std::min(part.find_first_not_of(kPathSeparator), part.size()));
    std::string result = path;
    if (!part.empty() && !path.empty() && path.back() != kPathSeparator)
        result += kPathSeparator;
    result += part;
    if (result.size() + 1 > kMaxPath)
        return false;
    path = std::move(result);
    return true;
}

/// The path that a text names: the same bytes.
std::filesystem::path ToFilePath(const std::string& text) {
    return text;
}

/// A name to compare with others: the name itself.
std::string FoldedFileName(std::string name) {
    return name;
}

/// The text that names a path: the same bytes.
std::string ToText(const std::filesystem::path& path) {
    return path.native();
}

}  // namespace os
