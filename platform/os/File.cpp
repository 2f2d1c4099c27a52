/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Files: listing, reading and writing, the same on every system
 */

#include "os/File.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <random>

#include "os/Path.h"

namespace os {

namespace {

// A name beside the wanted one, so that renaming stays within one file system. The random part keeps processes
// apart, the count the threads of this one.
std::string TemporaryNameFor(const std::string& path) {
    static std::atomic<unsigned> count{0};
    const unsigned random = std::random_device()();
    return path + "." + std::to_string(random) + "-" + std::to_string(count++) + ".tmp";
}

bool WriteNewFile(const std::string& path, std::string_view content) {
    OpenFile file = OpenNewFile(path);
    if (!file)
        return false;
    const bool written = std::fwrite(content.data(), 1, content.size(), file.get()) == content.size();
    return std::fclose(file.release()) == 0 && written;
}

}  // namespace

/**
 * \brief The files of a folder
 * \param[in] folder Path of the folder
 * \param[out] error Why the folder can't be read, or not to its end
 *
 * Sub-folders are left out. What can't be examined is listed: whoever opens it learns why.
 *
 * \return Names without the folder, sorted
 */
std::vector<std::string> ListFiles(const std::string& folder, std::error_code& error) {
    std::vector<std::string> names = ListFolder(folder, error);
    std::erase_if(names, [&](const std::string& name) {
        std::error_code unknown;
        const auto type = std::filesystem::status(ToFilePath(folder) / ToFilePath(name), unknown).type();
        return type != std::filesystem::file_type::regular && type != std::filesystem::file_type::none;
    });
    std::sort(names.begin(), names.end());
    return names;
}

/// The same; of a folder that can't be read to its end, what could be.
std::vector<std::string> ListFiles(const std::string& folder) {
    std::error_code unreadable;
    return ListFiles(folder, unreadable);
}

/// Whether an error says that there is no such file or folder, which may be as it should.
bool IsNotThere(const std::error_code& error) noexcept {
    return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
}

/**
 * \brief Make a folder and those above it
 * \return Whether the folder is there afterwards
 */
bool CreateFolders(const std::string& folder) noexcept {
    try {
        std::error_code error;
        std::filesystem::create_directories(ToFilePath(folder), error);
        return std::filesystem::is_directory(ToFilePath(folder), error);
    } catch (const std::exception&) {
        return false;
    }
}

/**
 * \brief Read a file
 * \param[in] path Path of the file
 * \param[in] maxSize Bytes that are accepted at most
 * \return The content; nothing when it can't be read, is no plain file or is longer than \a maxSize
 */
std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t maxSize) {
    const OpenFile file = OpenPlainFile(path);
    if (!file)
        return std::nullopt;
    std::string content;
    char block[65536];
    while (const std::size_t count = std::fread(block, 1, sizeof block, file.get())) {
        if (count > maxSize - content.size())
            return std::nullopt;
        content.append(block, count);
    }
    if (std::ferror(file.get()) != 0)
        return std::nullopt;
    return content;
}

/**
 * \brief Write a file so that a reader sees either the old content or all of the new one
 * \param[in] path Path of the file; its folder must exist
 * \param[in] content The new content
 * \return False when it can't be written; then the old file stands as it was and nothing else is left behind
 */
bool WriteWholeFile(const std::string& path, std::string_view content) noexcept {
    try {
        const std::string temporary = TemporaryNameFor(path);
        std::error_code error;
        if (WriteNewFile(temporary, content)) {
            std::filesystem::rename(ToFilePath(temporary), ToFilePath(path), error);
            if (!error)
                return true;
        }
        std::filesystem::remove(ToFilePath(temporary), error);
    } catch (const std::exception&) {
        return false;
    }
    return false;
}

}  // namespace os
