/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reads the file of a camera description, plain or zipped
 */
#include <fmt/format.h>

#include <filesystem>
#include <string>
#include <system_error>

#include "base/Zip.h"
#include "description/DescriptionModel.h"
#include "error/ExitCode.h"
#include "system/Files.h"

namespace tools {

namespace {

constexpr std::uint64_t kLargest = 256 * 1024 * 1024;

[[noreturn]] void Fail(const std::filesystem::path& path, const std::string& reason) {
    throw ToolError(fmt::format("can't read '{}': {}", path.string(), reason));
}

std::string Unzipped(const std::string& archive, const std::filesystem::path& path) {
    try {
        return base::UnzipDescription(archive);
    } catch (const base::ZipError& error) {
        Fail(path, fmt::format("its ZIP archive can't be unpacked: {}", error.what()));
    }
}

}  // namespace

/**
 * \brief The text of a camera description
 * \param[in] path An XML file, or a ZIP file that holds one, at most 256 MiB, in a ZIP file 64 MiB; "-" for standard
 * input \throw ToolError It can't be read
 */
std::string ReadDescriptionText(const std::filesystem::path& path) {
    std::error_code error;
    if (path != "-" && std::filesystem::file_size(path, error) > kLargest && !error)
        Fail(path, "it is larger than 256 MiB");
    const std::string text = ReadInput(path);
    return base::IsZip(text) ? Unzipped(text, path) : text;
}

}  // namespace tools
