/* SPDX-License-Identifier: Apache-2.0 */
/*
 * An entry of the manifest table: where a device keeps a description file
 */

#include "gencp/Manifest.h"

#include <algorithm>

namespace gencp {

namespace {

// Fields of the file format word (GenCP manifest entry).
constexpr std::uint32_t kTypeMask = 0x7;
constexpr unsigned kFormatShift = 10;
constexpr std::uint32_t kFormatMask = 0x3F;
constexpr unsigned kMinorShift = 16;
constexpr unsigned kMajorShift = 24;

}  // namespace

/// The 64 bytes of an entry.
Bytes EncodeManifestEntry(const ManifestEntry& entry) {
    Bytes bytes(manifest::kEntrySize);
    Store32(bytes, manifest::kFileVersion.address,
            (static_cast<std::uint32_t>(entry.versionMajor) << kMajorShift) |
                (static_cast<std::uint32_t>(entry.versionMinor) << kMinorShift) | entry.versionSubMinor);
    Store32(bytes, manifest::kFileFormat.address,
            (static_cast<std::uint32_t>(entry.schemaMajor) << kMajorShift) |
                (static_cast<std::uint32_t>(entry.schemaMinor) << kMinorShift) |
                ((entry.fileFormat & kFormatMask) << kFormatShift) | (entry.fileType & kTypeMask));
    Store64(bytes, manifest::kFileAddress.address, entry.address);
    Store64(bytes, manifest::kFileSize.address, entry.size);
    std::ranges::copy(entry.sha1, bytes.begin() + manifest::kFileSha1.address);
    return bytes;
}

/// The entry in 64 bytes; nothing from fewer.
std::optional<ManifestEntry> DecodeManifestEntry(ByteView bytes) noexcept {
    if (bytes.size() < manifest::kEntrySize)
        return std::nullopt;
    const std::uint32_t version = Load32(bytes, manifest::kFileVersion.address);
    const std::uint32_t format = Load32(bytes, manifest::kFileFormat.address);
    ManifestEntry entry;
    entry.versionMajor = static_cast<std::uint8_t>(version >> kMajorShift);
    entry.versionMinor = static_cast<std::uint8_t>(version >> kMinorShift);
    entry.versionSubMinor = static_cast<std::uint16_t>(version);
    entry.fileType = static_cast<std::uint8_t>(format & kTypeMask);
    entry.fileFormat = static_cast<std::uint8_t>((format >> kFormatShift) & kFormatMask);
    entry.schemaMajor = static_cast<std::uint8_t>(format >> kMajorShift);
    entry.schemaMinor = static_cast<std::uint8_t>(format >> kMinorShift);
    entry.address = Load64(bytes, manifest::kFileAddress.address);
    entry.size = Load64(bytes, manifest::kFileSize.address);
    std::ranges::copy(bytes.subspan(manifest::kFileSha1.address, manifest::kFileSha1.length), entry.sha1.begin());
    return entry;
}

}  // namespace gencp
