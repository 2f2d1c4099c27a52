/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Descriptions in zip archives
 */

#include "Unzip.h"

#include <zip.h>

#include <algorithm>
#include <memory>

#include "Base/GCException.h"
#include "Texts.h"
#include "base/Text.h"

namespace CLProtocol {

namespace {

constexpr zip_uint64_t kMaxSize = 64u << 20;
constexpr zip_uint64_t kMaxRatio = 500;          // descriptions shrink to a tenth; no text of sense to less than this
constexpr zip_uint64_t kSmallEnough = 1u << 20;  // a size that any ratio may have

struct ArchiveCloser {
    void operator()(zip_t* archive) const noexcept { zip_discard(archive); }
};
struct FileCloser {
    void operator()(zip_file_t* file) const noexcept { zip_fclose(file); }
};
using Archive = std::unique_ptr<zip_t, ArchiveCloser>;

[[noreturn]] void Fail(const char* reason) {
    throw RUNTIME_EXCEPTION("Could not unpack the description: %s", reason);
}

Archive Open(const std::string& bytes) {
    zip_error_t error;
    zip_error_init(&error);
    const std::unique_ptr<zip_error_t, decltype(&zip_error_fini)> owner(&error, &zip_error_fini);
    zip_source_t* const source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
    if (source == nullptr)
        Fail(zip_error_strerror(&error));
    Archive archive(zip_open_from_source(source, ZIP_RDONLY, &error));
    if (!archive) {
        const std::string reason = zip_error_strerror(&error);
        zip_source_free(source);
        Fail(reason.c_str());
    }
    return archive;
}

bool IsXmlName(const std::string& name) {
    return base::LowerCase(name).ends_with(".xml");
}

// The first XML file, or else the first file.
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
        if (IsXmlName(entry.name))
            return entry;
        if (best.valid == 0)
            best = entry;
    }
    if (best.valid == 0)
        Fail("the archive holds no file");
    return best;
}

}  // namespace

/// Whether bytes begin as an archive does.
bool IsZip(const std::string& bytes) {
    return bytes.starts_with("PK\x03\x04");
}

/**
 * \brief Unpack the one description of an archive
 * \param[in] archive Bytes of the archive
 * \return The first file whose name ends in ".xml", or else the first one
 * \throw GenICam::RuntimeException It is damaged or encrypted, or what it holds is too large
 */
std::string Unzip(const std::string& archive) {
    const Archive opened = Open(archive);
    const zip_stat_t entry = FindDescription(opened.get());
    if (entry.size > kMaxSize || (entry.size > kSmallEnough && entry.size / kMaxRatio > entry.comp_size))
        Fail("it would become too large");
    const std::unique_ptr<zip_file_t, FileCloser> file(zip_fopen_index(opened.get(), entry.index, 0));
    if (!file)
        Fail(zip_strerror(opened.get()));
    // One byte more than announced: reading on to the end checks the sum, and shows a size that is a lie.
    std::string text(static_cast<std::size_t>(entry.size) + 1, '\0');
    std::size_t length = 0;
    while (length < text.size()) {
        const zip_int64_t count = zip_fread(file.get(), text.data() + length, text.size() - length);
        if (count < 0)
            Fail(zip_file_strerror(file.get()));
        if (count == 0)
            break;
        length += static_cast<std::size_t>(count);
    }
    if (length != entry.size)
        Fail("its size is not the announced one");
    text.resize(length);
    return text;
}

}  // namespace CLProtocol
