/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Descriptions in zip archives
 */
#include "base/Zip.h"

#include <zip.h>

#include <memory>

#include "base/Text.h"

namespace base {

namespace {

constexpr zip_uint64_t kMaxRatio = 500;          // descriptions shrink to a tenth; no text of sense to less than this
constexpr zip_uint64_t kSmallEnough = 1U << 20;  // a size that any ratio may have

struct CloseArchive {
    void operator()(zip_t* archive) const noexcept { zip_discard(archive); }
};
struct CloseFile {
    void operator()(zip_file_t* file) const noexcept { zip_fclose(file); }
};
using Archive = std::unique_ptr<zip_t, CloseArchive>;

Archive Open(std::string_view bytes) {
    zip_error_t error;
    zip_error_init(&error);
    const std::unique_ptr<zip_error_t, decltype(&zip_error_fini)> owner(&error, &zip_error_fini);
    // The archive has its source to itself once it is open.
    zip_source_t* const source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
    if (source == nullptr)
        throw ZipError(zip_error_strerror(&error));
    Archive archive(zip_open_from_source(source, ZIP_RDONLY, &error));
    if (!archive) {
        const std::string reason = zip_error_strerror(&error);
        zip_source_free(source);
        throw ZipError(reason);
    }
    return archive;
}

// The first XML file, or else the first file: notes may lie beside it, and makers call it as they like.
zip_stat_t FindDescription(zip_t* archive) {
    constexpr zip_uint64_t kNeeded = ZIP_STAT_NAME | ZIP_STAT_INDEX | ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE;
    zip_stat_t best;
    zip_stat_init(&best);
    for (zip_int64_t index = 0; index < zip_get_num_entries(archive, 0); ++index) {
        zip_stat_t entry;
        zip_stat_init(&entry);
        if (zip_stat_index(archive, static_cast<zip_uint64_t>(index), 0, &entry) != 0 ||
            (entry.valid & kNeeded) != kNeeded || entry.size == 0)
            continue;
        if (LowerCase(entry.name).ends_with(".xml"))
            return entry;
        if (best.valid == 0)
            best = entry;
    }
    if (best.valid == 0)
        throw ZipError("the archive holds no file");
    return best;
}

// One byte more than announced: reading on to the end checks the sum, and shows a size that is a lie.
std::string Read(zip_file_t* file, std::size_t announced) {
    std::string text(announced + 1, '\0');
    std::size_t length = 0;
    while (length < text.size()) {
        const zip_int64_t count = zip_fread(file, text.data() + length, text.size() - length);
        if (count < 0)
            throw ZipError(zip_file_strerror(file));
        if (count == 0)
            break;
        length += static_cast<std::size_t>(count);
    }
    if (length != announced)
        throw ZipError("its size is not the announced one");
    text.resize(length);
    return text;
}

}  // namespace

/// Whether bytes begin as an archive does.
bool IsZip(std::string_view bytes) noexcept {
    return bytes.starts_with("PK\x03\x04");
}

/**
 * \brief Unpack the one description of an archive
 * \param[in] archive Bytes of the archive
 * \return The first file whose name ends in ".xml", or else the first one
 * \throw ZipError It is damaged or encrypted, or what it holds is larger than kLargestUnzipped or shrank too much
 */
std::string UnzipDescription(std::string_view archive) {
    const Archive opened = Open(archive);
    const zip_stat_t entry = FindDescription(opened.get());
    if (entry.size > kLargestUnzipped || (entry.size > kSmallEnough && entry.size / kMaxRatio > entry.comp_size))
        throw ZipError("it would become too large");
    const std::unique_ptr<zip_file_t, CloseFile> file(zip_fopen_index(opened.get(), entry.index, 0));
    if (!file)
        throw ZipError(zip_strerror(opened.get()));
    return Read(file.get(), static_cast<std::size_t>(entry.size));
}

}  // namespace base
