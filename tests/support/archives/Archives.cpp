/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Makes zip archives for tests
 */

#include "archives/Archives.h"

#include <zip.h>

#include <stdexcept>

std::string MakeZip(const std::vector<std::pair<std::string, std::string>>& files) {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* const target = zip_source_buffer_create(nullptr, 0, 0, &error);
    zip_t* const archive = zip_open_from_source(target, ZIP_TRUNCATE, &error);
    if (archive == nullptr)
        throw std::runtime_error(zip_error_strerror(&error));
    zip_source_keep(target);
    for (const auto& [name, content] : files)
        zip_file_add(archive, name.c_str(), zip_source_buffer(archive, content.data(), content.size(), 0), 0);
    zip_close(archive);
    zip_source_open(target);
    zip_source_seek(target, 0, SEEK_END);
    std::string bytes(static_cast<std::size_t>(zip_source_tell(target)), '\0');
    zip_source_seek(target, 0, SEEK_SET);
    zip_source_read(target, bytes.data(), bytes.size());
    zip_source_close(target);
    zip_source_free(target);
    return bytes;
}
