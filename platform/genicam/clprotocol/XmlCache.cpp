/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Fetched descriptions on disk
 */

#include "XmlCache.h"

#include <algorithm>

#include "Base/GCUtilities.h"
#include "ModuleLog.h"
#include "SearchPath.h"
#include "base/Sha1.h"
#include "os/File.h"
#include "os/Path.h"

namespace CLProtocol {

namespace {

constexpr std::size_t kMaxSize = 64u << 20;
constexpr std::size_t kMaxReadableName = 100;
constexpr std::size_t kHashInName = 16;
constexpr std::string_view kFirstLine = "CLProtocol description 1\n";

// The sum stands for the key as well, so that no file is taken for another's.
std::string SumOf(const std::string& key, std::string_view xml) {
    std::string bytes = key;
    bytes += '\0';
    bytes += xml;
    return base::ToText(base::Sha1(bytes));
}

std::string FirstLine(const std::string& key) {
    return key.substr(0, key.find('\n'));
}

bool IsHarmless(char character) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z') || std::string_view("@._-").find(character) != std::string_view::npos;
}

// A description that a driver delivered in part, or as zeros, would be there for good.
bool LooksWhole(std::string_view xml) {
    constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
    constexpr std::string_view kBlanks = " \t\r\n";
    if (xml.starts_with(kByteOrderMark))
        xml.remove_prefix(kByteOrderMark.size());
    const std::size_t first = xml.find_first_not_of(kBlanks);
    return first != std::string_view::npos && xml[first] == '<' && xml[xml.find_last_not_of(kBlanks)] == '>';
}

}  // namespace

/**
 * \class XmlCache
 * \brief Keeps descriptions by a key, one file each
 *
 * A key is one line or more, of which the first is the XML ID; the others tell descriptions with one ID apart. A file
 * consists of the line "CLProtocol description 1", a line with the SHA-1 of key, NUL and description, and the
 * description. Files are written as a whole or not at all. A file that is damaged counts as absent, and so does a
 * description that does not begin and end as one. Nothing here
 * is an error: where the cache can't be used, descriptions are fetched.
 *
 * \context Any thread, any number of processes.
 */

/// GENICAM_CACHE, else a folder of the user's caches; empty when the user has none.
std::string XmlCache::Folder() {
    const os::EnvironmentValue folder = ReadVariable("GENICAM_CACHE");
    if (folder.status == os::EnvironmentStatus::kPresent) {
        GenICam::gcstring text = folder.text;
        GenICam::ReplaceEnvironmentVariables(text);
        return text.str();
    }
    const std::optional<std::string> caches = os::UserCacheFolder();
    return caches ? *caches + os::ToSystemSeparators("/GenICam/CLProtocol") : std::string();
}

std::string XmlCache::PathOf(const std::string& key) const {
    std::string name = FirstLine(key).substr(0, kMaxReadableName);
    std::replace_if(
        name.begin(), name.end(), [](char character) { return !IsHarmless(character); }, '_');
    return m_folder + os::kPathSeparator + name + "-" + base::ToText(base::Sha1(key)).substr(0, kHashInName) + ".cache";
}

/// A description that was stored under that very key; nothing when there is none or it is damaged.
std::optional<std::string> XmlCache::Load(const std::string& key) const {
    if (m_folder.empty())
        return std::nullopt;
    const std::string path = PathOf(key);
    std::optional<std::string> file = os::ReadWholeFile(path, kMaxSize);
    if (!file)
        return std::nullopt;
    constexpr std::size_t kSumSize = 40;
    constexpr std::size_t kHeaderSize = kFirstLine.size() + kSumSize + 1;
    const std::string_view text = *file;
    if (text.size() < kHeaderSize || !text.starts_with(kFirstLine) || text[kHeaderSize - 1] != '\n' ||
        text.substr(kFirstLine.size(), kSumSize) != SumOf(key, text.substr(kHeaderSize)) ||
        !LooksWhole(text.substr(kHeaderSize))) {
        Log(CLP_LOG_WARN, "Cached description '%s' is damaged and fetched again", path);
        return std::nullopt;
    }
    Log(CLP_LOG_INFO, "Description '%s' comes from '%s'", FirstLine(key), path);
    return file->substr(kHeaderSize);
}

/// Stores a description that looks whole; a cache that can't be written is logged and not used.
void XmlCache::Store(const std::string& key, const std::string& xml) const {
    if (!LooksWhole(xml)) {
        Log(CLP_LOG_WARN, "Description '%s' does not look whole and is not kept", FirstLine(key));
        return;
    }
    const std::string content = std::string(kFirstLine) + SumOf(key, xml) + "\n" + xml;
    if (m_folder.empty() || content.size() > kMaxSize)
        return;
    if (!os::CreateFolders(m_folder) || !os::WriteWholeFile(PathOf(key), content))
        Log(CLP_LOG_WARN, "Description '%s' can't be kept in '%s'", FirstLine(key), m_folder);
}

}  // namespace CLProtocol
