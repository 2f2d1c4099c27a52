/* SPDX-License-Identifier: Apache-2.0 */
/*
 * An entry of the manifest table: where a device keeps a description file
 */
#pragma once

#include <array>
#include <optional>

#include "gencp/ByteOrder.h"
#include "gencp/Registers.h"

namespace gencp {

struct ManifestEntry {
    enum class FileType : std::uint8_t { kDeviceXml = 0, kBufferXml = 1 };
    enum class FileFormat : std::uint8_t { kXml = 0, kZip = 1 };

    std::uint8_t versionMajor = 0;
    std::uint8_t versionMinor = 0;
    std::uint16_t versionSubMinor = 0;
    std::uint8_t fileType = 0;    ///< FileType, or what a later standard adds
    std::uint8_t fileFormat = 0;  ///< FileFormat, or what a later standard adds
    std::uint8_t schemaMajor = 0;
    std::uint8_t schemaMinor = 0;
    std::uint64_t address = 0;
    std::uint64_t size = 0;
    std::array<std::uint8_t, manifest::kFileSha1.length> sha1{};

    bool Is(FileType type) const { return fileType == static_cast<std::uint8_t>(type); }
    bool Is(FileFormat format) const { return fileFormat == static_cast<std::uint8_t>(format); }
    bool HasSha1() const { return sha1 != decltype(sha1){}; }
    bool operator==(const ManifestEntry&) const = default;
};

Bytes EncodeManifestEntry(const ManifestEntry& entry);
std::optional<ManifestEntry> DecodeManifestEntry(ByteView bytes) noexcept;

}  // namespace gencp
