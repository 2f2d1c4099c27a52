/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Packs a file
 */

#include <zip.h>

#include <memory>
#include <stdexcept>

#include "camera/Description.h"

namespace MarlowSim {

namespace {

struct SourceFree {
    void operator()(zip_source_t* source) const noexcept { zip_source_free(source); }
};
struct ArchiveDiscard {
    void operator()(zip_t* archive) const noexcept { zip_discard(archive); }
};

using Source = std::unique_ptr<zip_source_t, SourceFree>;
using Archive = std::unique_ptr<zip_t, ArchiveDiscard>;

void Require(bool isGood) {
    if (!isGood)
        throw std::runtime_error("the description could not be zipped");
}

gencp::Bytes BytesOf(zip_source_t* source) {
    Require(zip_source_open(source) == 0 && zip_source_seek(source, 0, SEEK_END) == 0);
    gencp::Bytes bytes(static_cast<std::size_t>(zip_source_tell(source)));
    Require(zip_source_seek(source, 0, SEEK_SET) == 0 &&
            zip_source_read(source, bytes.data(), bytes.size()) == static_cast<zip_int64_t>(bytes.size()));
    zip_source_close(source);
    return bytes;
}

}  // namespace

/**
 * \brief Make a ZIP file with one file in it; the same content always gives the same bytes
 */
gencp::Bytes ZipOneFile(const std::string& name, std::string_view content) {
    constexpr time_t kFixedTime = 1577880000;  // noon of 2020-01-01, UTC
    Source target(zip_source_buffer_create(nullptr, 0, 0, nullptr));
    Require(target != nullptr);
    // The archive takes over one count of the source; the other one keeps the bytes after it was closed.
    zip_source_keep(target.get());
    Archive archive(zip_open_from_source(target.get(), ZIP_TRUNCATE, nullptr));
    if (!archive) {
        zip_source_free(target.get());
        Require(false);
    }
    Source file(zip_source_buffer(archive.get(), content.data(), content.size(), 0));
    Require(file != nullptr);
    const zip_int64_t index = zip_file_add(archive.get(), name.c_str(), file.get(), ZIP_FL_ENC_UTF_8);
    Require(index >= 0);
    static_cast<void>(file.release());
    Require(zip_file_set_mtime(archive.get(), static_cast<zip_uint64_t>(index), kFixedTime, 0) == 0);
    Require(zip_close(archive.get()) == 0);
    static_cast<void>(archive.release());
    return BytesOf(target.get());
}

}  // namespace MarlowSim
