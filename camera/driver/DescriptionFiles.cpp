/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The description files that a camera's manifest lists
 */

#include "DescriptionFiles.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "DriverError.h"
#include "base/Sha1.h"

namespace marlow {

namespace {

constexpr std::uint64_t kMaxEntries = 64;  // cameras have one or two

std::string XmlId(const gencp::ManifestEntry& entry, std::string_view shortDeviceId) {
    return fmt::format("SchemaVersion.{}.{}@{}@XMLVersion.{}.{}.{}", entry.schemaMajor, entry.schemaMinor,
                       shortDeviceId, entry.versionMajor, entry.versionMinor, entry.versionSubMinor);
}

bool IsUsable(const gencp::ManifestEntry& entry) {
    using Entry = gencp::ManifestEntry;
    return entry.Is(Entry::FileType::kDeviceXml) &&
           (entry.Is(Entry::FileFormat::kXml) || entry.Is(Entry::FileFormat::kZip)) && entry.size > 0 &&
           entry.size <= kMaxDescriptionSize && entry.address <= std::numeric_limits<std::uint64_t>::max() - entry.size;
}

// Of two files with one name, the one that is fetched faster.
void Add(std::vector<DescriptionFile>& files, DescriptionFile file) {
    const auto same = std::ranges::find(files, file.xmlId, &DescriptionFile::xmlId);
    if (same == files.end())
        files.push_back(std::move(file));
    else if (file.entry.size < same->entry.size)
        *same = std::move(file);
}

// Why an entry can't be used, for people.
std::string Fault(const gencp::ManifestEntry& entry) {
    if (entry.size == 0)
        return "size 0";
    if (entry.size > kMaxDescriptionSize)
        return fmt::format("size {}, more than the {} bytes that a description may have", entry.size,
                           kMaxDescriptionSize);
    return fmt::format("type {}, format {}", entry.fileType, entry.fileFormat);
}

}  // namespace

/**
 * \brief The camera's own descriptions that a reader of device descriptions can use
 * \param[in] memory Of the camera
 * \param[in] shortDeviceId The camera's name, a part of the XML IDs
 * \param[in] logger Told of entries that are left out
 *
 * \return In the manifest's order, each XML ID once; descriptions of buffers and files of unknown formats left out
 * \throw DriverError The camera does not answer or refuses
 */
DescriptionList ListDescriptions(CameraMemory& memory, std::string_view shortDeviceId, Logger& logger) {
    DescriptionList list;
    const std::uint64_t table = gencp::Load64(memory.Read(gencp::abrm::kManifestTableAddress), 0);
    if (table == 0)
        return list;
    const std::uint64_t count = gencp::Load64(memory.Read(gencp::manifest::kEntryCount.At(table)), 0);
    if (count > kMaxEntries)
        logger.Log(CLProtocol::CLP_LOG_WARN, "The manifest has {} entries; the first {} are read", count, kMaxEntries);
    gencp::Bytes bytes(std::min(count, kMaxEntries) * gencp::manifest::kEntrySize);
    memory.Read(table + gencp::manifest::kFirstEntry, bytes);
    for (std::size_t at = 0; at < bytes.size(); at += gencp::manifest::kEntrySize) {
        const auto entry = *gencp::DecodeManifestEntry(gencp::ByteView(bytes).subspan(at));
        if (IsUsable(entry)) {
            Add(list.files, {XmlId(entry, shortDeviceId), entry});
        } else {
            const std::string fault =
                fmt::format("manifest entry {} has {}", at / gencp::manifest::kEntrySize, Fault(entry));
            logger.Log(CLProtocol::CLP_LOG_INFO, "Left out: {}", fault);
            list.leftOut += (list.leftOut.empty() ? "" : ", ") + fault;
        }
    }
    return list;
}

/**
 * \brief What tells a file from any other
 * \return Its size and SHA-1; empty for an entry without SHA-1, for which a changed file can't be told from the old one
 */
std::string DigestOf(const gencp::ManifestEntry& entry) {
    return entry.HasSha1() ? fmt::format("{} {}", entry.size, base::ToText(entry.sha1)) : std::string();
}

/**
 * \brief Fetch a file from the camera, as it lies there
 * \param[in] memory Of the camera
 * \param[in] file From ListDescriptions
 * \param[out] buffer Exactly the size of the file
 *
 * \throw DriverError kDamagedFile when the manifest has a SHA-1 and the file has another
 */
void FetchDescription(CameraMemory& memory, const DescriptionFile& file, std::span<std::uint8_t> buffer) {
    memory.Read(file.entry.address, buffer);
    if (file.entry.HasSha1() && base::Sha1(buffer) != file.entry.sha1)
        throw DriverError(kDamagedFile, fmt::format("The description '{}' of {} bytes at 0x{:X} has another SHA-1 than "
                                                    "the camera's manifest says.",
                                                    file.xmlId, file.entry.size, file.entry.address));
}

}  // namespace marlow
