/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Text files as a whole
 */

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include "Base/GCException.h"
#include "base/Stream.h"
#include "os/Path.h"
#include "vanto/VantoFolders.h"

namespace Vanto {

namespace {

constexpr std::size_t kMaxTextFile = std::size_t{256} * 1024 * 1024;

constexpr const char* kTooLarge = "it is larger than 256 MiB";

[[noreturn]] void ThrowUnreadable(const gcstring& path, const std::string& reason) {
    throw RUNTIME_EXCEPTION("The file '%s' can't be read: %s", path, reason);
}

std::string LastSystemError() {
    return std::error_code(errno, std::generic_category()).message();
}

}  // namespace

/**
 * \brief The whole text of a file, byte by byte as it stands
 * \throw RuntimeException The file is missing, no regular file, unreadable or larger than 256 MiB; names file and
 * reason \context Thread-safe
 */
gcstring textFileToString(const gcstring& path) {
    std::error_code error;
    const std::filesystem::path filePath = os::ToFilePath(path.str());
    const auto status = std::filesystem::status(filePath, error);
    if (!std::filesystem::exists(status))
        ThrowUnreadable(path,
                        error ? error.message() : std::make_error_code(std::errc::no_such_file_or_directory).message());
    if (!std::filesystem::is_regular_file(status))
        ThrowUnreadable(path, std::filesystem::is_directory(status) ? "it is a folder" : "it is no regular file");
    if (std::filesystem::file_size(filePath, error) > kMaxTextFile && !error)
        ThrowUnreadable(path, kTooLarge);
    errno = 0;
    std::ifstream file(filePath, std::ios::binary);
    if (!file)
        ThrowUnreadable(path, LastSystemError());
    std::optional<std::string> text = base::ReadAll(file, kMaxTextFile);
    if (!text)
        ThrowUnreadable(path, kTooLarge);
    if (file.bad())
        ThrowUnreadable(path, LastSystemError());
    return *std::move(text);
}

}  // namespace Vanto
