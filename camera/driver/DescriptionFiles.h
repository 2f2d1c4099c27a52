/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The description files that a camera's manifest lists
 */
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "CameraMemory.h"
#include "Logger.h"
#include "gencp/Manifest.h"

namespace marlow {

struct DescriptionFile {
    std::string xmlId;  ///< CLProtocol: SchemaVersion.M.m@<short DeviceID>@XMLVersion.a.b.c
    gencp::ManifestEntry entry;
};

struct DescriptionList {
    std::vector<DescriptionFile> files;
    std::string leftOut;  ///< of what the manifest lists besides, and why it is of no use; empty when there is nothing
};

inline constexpr std::uint64_t kMaxDescriptionSize = std::uint64_t{64}
                                                     << 20;  ///< bytes; a camera's word is bounded by it

DescriptionList ListDescriptions(CameraMemory& memory, std::string_view shortDeviceId, Logger& logger);
std::string DigestOf(const gencp::ManifestEntry& entry);
void FetchDescription(CameraMemory& memory, const DescriptionFile& file, std::span<std::uint8_t> buffer);

}  // namespace marlow
