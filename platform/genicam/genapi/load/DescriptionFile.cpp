/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Descriptions in files: plain or in a ZIP archive
 */

#include "load/DescriptionFile.h"

#include <zip.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <memory>
#include <string_view>

#include "Base/GCException.h"
#include "load/Loader.h"

namespace GenApi {

namespace {

struct CloseArchive {
    void operator()(zip_t* archive) const noexcept { zip_discard(archive); }
};
struct CloseEntry {
    void operator()(zip_file_t* entry) const noexcept { zip_fclose(entry); }
};
using Archive = std::unique_ptr<zip_t, CloseArchive>;
using ArchiveEntry = std::unique_ptr<zip_file_t, CloseEntry>;

bool IsXmlName(std::string_view name) {
    if (name.size() < 4)
        return false;
    std::string end(name.substr(name.size() - 4));
    std::transform(end.begin(), end.end(), end.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return end == ".xml";
}

Archive OpenArchive(const void* data, std::size_t size, const std::string& name) {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_buffer_create(data, size, 0, &error);
    Archive archive(source != nullptr ? zip_open_from_source(source, ZIP_RDONLY, &error) : nullptr);
    if (!archive) {
        const std::string reason = zip_error_strerror(&error);
        if (source != nullptr)
            zip_source_free(source);
        zip_error_fini(&error);
        throw RUNTIME_EXCEPTION("%s(1,1): this is no ZIP archive: %s", name, reason);
    }
    zip_error_fini(&error);
    return archive;
}

// Sizes that the archive states are not believed: a small one may hold more than fits into memory.
std::string ReadEntry(zip_file_t* entry, const std::string& name) {
    std::string text;
    std::array<char, 65536> piece{};
    for (;;) {
        const zip_int64_t count = zip_fread(entry, piece.data(), piece.size());
        if (count < 0)
            throw RUNTIME_EXCEPTION("%s(1,1): the ZIP archive is damaged", name);
        if (count == 0)
            return text;
        text.append(piece.data(), static_cast<std::size_t>(count));
        if (text.size() > kMaxDescription)
            throw RUNTIME_EXCEPTION("%s(1,1): the description in the ZIP archive is too large", name);
    }
}

}  // namespace

std::string UnzipDescription(const void* data, std::size_t size, const std::string& name) {
    if (data == nullptr)
        throw INVALID_ARGUMENT_EXCEPTION("%s: null archive", name);
    const Archive archive = OpenArchive(data, size, name);
    const zip_int64_t count = zip_get_num_entries(archive.get(), 0);
    for (zip_int64_t i = 0; i < count; ++i) {
        const auto index = static_cast<zip_uint64_t>(i);
        const char* entryName = zip_get_name(archive.get(), index, 0);
        if (entryName == nullptr || !IsXmlName(entryName))
            continue;
        const ArchiveEntry entry(zip_fopen_index(archive.get(), index, 0));
        if (!entry)
            throw RUNTIME_EXCEPTION("%s(1,1): '%s' can't be read from the ZIP archive", name, entryName);
        return ReadEntry(entry.get(), name);
    }
    throw RUNTIME_EXCEPTION("%s(1,1): the ZIP archive has no XML file", name);
}

std::string ReadDescriptionFile(const std::string& fileName) {
    // Not by a path, which takes a text for UTF-8 on Windows, whatever the code page in use.
    std::ifstream file(fileName, std::ios::binary);
    if (!file)
        throw RUNTIME_EXCEPTION("%s(1,1): the file can't be opened", fileName);
    std::string text;
    std::array<char, 65536> piece{};
    while (file.read(piece.data(), piece.size()) || file.gcount() > 0) {
        text.append(piece.data(), static_cast<std::size_t>(file.gcount()));
        if (text.size() > kMaxDescription)
            throw RUNTIME_EXCEPTION("%s(1,1): the file is too large", fileName);
    }
    if (file.bad())
        throw RUNTIME_EXCEPTION("%s(1,1): the file can't be read", fileName);
    const bool isArchive = text.substr(0, 4) == std::string_view("PK\3\4");
    return isArchive ? UnzipDescription(text.data(), text.size(), fileName) : text;
}

}  // namespace GenApi
