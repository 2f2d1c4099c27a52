/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reads the file of a camera description, plain or zipped
 */
#include <fmt/format.h>
#include <zip.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <memory>
#include <system_error>

#include "description/DescriptionModel.h"
#include "error/ExitCode.h"
#include "system/FileAccess.h"

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
std::string Unpacked(const std::filesystem::path& path) {
    int error = 0;
    const std::unique_ptr<zip_t, CloseArchive> archive(zip_open(path.string().c_str(), ZIP_RDONLY, &error));
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
 * \param[in] path An XML file, or a ZIP file that holds one; at most 256 MiB
 * \throw ToolError It can't be read
 */
std::string ReadDescriptionText(const std::filesystem::path& path) {
    if (const std::string refused = WhyNotReadable(path); !refused.empty())
        Fail(path, refused);
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error || size > kLargest)
        Fail(path, error ? error.message() : "it is larger than 256 MiB");
    std::ifstream file(path, std::ios::binary);
    std::string text(size, '\0');
    file.read(text.data(), static_cast<std::streamsize>(size));
    if (!file && !file.eof())
        Fail(path, std::generic_category().message(errno));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text.starts_with("PK") ? Unpacked(path) : text;
}

}  // namespace tools
