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
inline constexpr std::string_view kPortError = "Error accessing port '%s'. Retrying!";
inline constexpr std::string_view kOtherError = "Port '%s': Generic Exceptiopn! '%s'";
inline constexpr std::string_view kEnumerationFailed = "Exception in %s while enumerating devices. '%s'";
inline constexpr std::string_view kFileNotReadable = "CLBindings file '%s' does not exist or could not be read.";

}  // namespace tools::log_texts
