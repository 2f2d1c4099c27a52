/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Whole files
 */
#include "system/Files.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <system_error>

#include "base/Stream.h"
#include "error/ExitCode.h"
#include "system/FileAccess.h"

namespace tools {

namespace {

[[noreturn]] void Fail(const std::filesystem::path& path, int error) {
    throw ToolError(fmt::format("can't write '{}': {}", path.string(), std::generic_category().message(error)));
}

/// Writes to a file; messages name the one that the user asked for.
void WriteDirectly(const std::filesystem::path& path, std::string_view text, const std::filesystem::path& named) {
    std::FILE* file = std::fopen(path.string().c_str(), "wb");
    if (file == nullptr)
        Fail(named, errno);
    errno = 0;
    const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    const int error = errno;
    errno = 0;
    const bool closed = std::fclose(file) == 0;
    if (!written || !closed)
        Fail(named, written ? errno : error);
}

}  // namespace

/**
 * \brief Write a file as a whole
 * \param[in] path The file; a regular one is replaced at the end, so that nobody sees half of it, and others (devices,
 *                 pipes, links) are written to
 * \param[in] text What it is to hold
 * \throw ToolError The system refuses; what was there before is still there
 */
void WriteFile(const std::filesystem::path& path, std::string_view text) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::symlink_status(path, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        return WriteDirectly(path, text, path);
    std::filesystem::path unfinished = path;
    unfinished += ".part";
    try {
        WriteDirectly(unfinished, text, path);
        if (std::filesystem::exists(status))
            std::filesystem::permissions(unfinished, status.permissions(), error);
        std::filesystem::rename(unfinished, path);
    } catch (const std::filesystem::filesystem_error& failure) {
        std::filesystem::remove(unfinished, error);
        Fail(path, failure.code().value());
    } catch (...) {
        std::filesystem::remove(unfinished, error);
        throw;
    }
}

std::string ReadInput(const std::filesystem::path& path) {
    if (path == "-")
        return *base::ReadAll(std::cin);
    std::error_code error;
    const std::string why =
        std::filesystem::is_directory(path, error) ? std::string("it is a folder") : WhyNotReadable(path);
    if (!why.empty())
        throw ToolError(fmt::format("can't read '{}': {}", path.string(), why));
    std::ifstream file(path, std::ios::binary);
    return *base::ReadAll(file);
}

}  // namespace tools
