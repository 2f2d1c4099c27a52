/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Messages of the transport layer that tell why a look for cameras found none; their texts are part of its interface
 */
#pragma once

#include <string_view>

namespace tools::log_texts {

inline constexpr std::string_view kCategory = "Vanto.CLSer.TL";
inline constexpr std::string_view kUsablePort = "Valid usable PortID '%s'";
inline constexpr std::string_view kNoUsablePort =
    "No valid usable PortIDs due to no enabled ports in PortConfiguration.xml. Enumeration will return 0 devices.";
inline constexpr std::string_view kNoTemplates = "No usable usable DeviceIDTemplates found!";
inline constexpr std::string_view kNoAnswer =
    "Seems there is no device connected to port '%s'. Skipping further probes.";
inline constexpr std::string_view kEnumerationFailed = "Exception in %s while enumerating devices. '%s'";

/// What the transport layer says of a description that it can't get, up to the reason; and the rules for a recorder.
inline constexpr std::string_view kNoDescription = "Exception while calling CCLPort::GetXML error: ";
inline constexpr std::string_view kLayerErrors = "Vanto.CLSer.TL:error";

/// Rules for a recorder that hears what follows.
inline constexpr std::string_view kDeviceWarnings = "Vanto.CLSer.Device:warning";

/// Whether the message tells that a camera did not take the baud rate that was configured, or the highest.
constexpr bool IsRefusedRate(std::string_view format) noexcept {
    return format == "Could not set initial baud rate to '%hs' for device '%hs' Error='%hs'." ||
           format == "Could not set initial baud rate to %I64i for device '%hs' Error='%hs'.";
}

}  // namespace tools::log_texts
