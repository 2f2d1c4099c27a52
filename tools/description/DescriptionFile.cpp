/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reads the file of a camera description, plain or zipped
 */
#include <fmt/format.h>
#include <zip.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "description/DescriptionModel.h"
#include "error/ExitCode.h"
#include "system/Files.h"

namespace tools {

namespace {

constexpr std::uint64_t kLargest = 256 * 1024 * 1024;

struct CloseArchive {
    void operator()(zip_t* archive) const noexcept { zip_discard(archive); }
};
struct CloseEntry {
    void operator()(zip_file_t* file) const noexcept { zip_fclose(file); }
};

[[noreturn]] void Fail(const std::filesystem::path& path, const std::string& reason) {
    throw ToolError(fmt::format("can't read '{}': {}", path.string(), reason));
}

/// The first XML file in an archive, as the node-map engine takes it; notes may lie beside it. -1 for none.
zip_int64_t FindXml(zip_t* archive) {
    for (zip_int64_t index = 0; index < zip_get_num_entries(archive, 0); ++index) {
        const char* name = zip_get_name(archive, static_cast<zip_uint64_t>(index), 0);
        if (name == nullptr)
            continue;
        std::string end = std::filesystem::path(name).extension().string();
        std::transform(end.begin(), end.end(), end.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
        if (end == ".xml")
            return index;
    }
    return -1;
}

/// The text of the description in an archive.
std::string Unpacked(const std::string& packed, const std::filesystem::path& path) {
    zip_error_t error{};
    // The archive has its source to itself once it is open.
    zip_source_t* const source = zip_source_buffer_create(packed.data(), packed.size(), 0, &error);
    const std::unique_ptr<zip_t, CloseArchive> archive(zip_open_from_source(source, ZIP_RDONLY, &error));
    if (archive == nullptr && source != nullptr)
        zip_source_free(source);
    const zip_int64_t found = archive != nullptr ? FindXml(archive.get()) : -1;
    const auto index = static_cast<zip_uint64_t>(found);
    zip_stat_t status{};
    if (found < 0 || zip_stat_index(archive.get(), index, 0, &status) != 0)
        Fail(path, "it is no ZIP file that holds a description");
    if ((status.valid & ZIP_STAT_SIZE) == 0 || status.size > kLargest)
        Fail(path, "it holds a file that is larger than 256 MiB");
    const std::unique_ptr<zip_file_t, CloseEntry> file(zip_fopen_index(archive.get(), index, 0));
    std::string text(status.size, '\0');
    if (file == nullptr || zip_fread(file.get(), text.data(), text.size()) != static_cast<zip_int64_t>(text.size()))
        Fail(path, "its content is damaged");
    return text;
}

}  // namespace

/**
 * \brief The text of a camera description
 * \param[in] path An XML file, or a ZIP file that holds one, at most 256 MiB; "-" for standard input
 * \throw ToolError It can't be read
 */
std::string ReadDescriptionText(const std::filesystem::path& path) {
    std::error_code error;
    if (path != "-" && std::filesystem::file_size(path, error) > kLargest && !error)
        Fail(path, "it is larger than 256 MiB");
    const std::string text = ReadInput(path);
    return text.starts_with("PK") ? Unpacked(text, path) : text;
}

}  // namespace tools
