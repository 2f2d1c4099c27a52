/* SPDX-License-Identifier: Apache-2.0 */
/*
 * XML IDs, and which of several is best
 */
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CLProtocol {

/// SchemaVersion.1.1@<short DeviceID or template>@XMLVersion.1.2.3
struct XmlId {
    using Version = std::array<std::uint32_t, 3>;

    std::string text;
    Version schema{};    ///< major, minor, 0 or sub-minor
    std::string device;  ///< short DeviceID or template
    Version version{};

    static std::optional<XmlId> Parse(std::string_view text);
};

/// A description that a camera or a file offers.
struct XmlCandidate {
    XmlId id;
    std::string file;  ///< path; empty: the camera has it
};

bool IsUsable(const XmlId& id, std::string_view shortDeviceId);
void SortBestFirst(std::vector<XmlCandidate>& candidates);

}  // namespace CLProtocol
