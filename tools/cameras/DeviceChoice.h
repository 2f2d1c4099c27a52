/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Which camera of the list a user means
 */
#pragma once

#include <string>

#include "cameras/Enumeration.h"

namespace tools {

/// What a DEVICE argument may be; for the help of commands that take one.
inline constexpr const char* kDeviceHelp =
    "Index of the list, serial number, friendly name, full name or port of a camera";

const Vanto::CDeviceInfo& ChooseDevice(const Vanto::DeviceInfoList& cameras, const std::string& device);
Vanto::CDeviceInfo FindDevice(const TransportLayer& layer, const std::string& device);

}  // namespace tools
