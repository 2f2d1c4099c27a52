/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The transport layer's info record, and the device class that ties the plug-in together
 */
#pragma once

#include "vanto/Info.h"

namespace Vanto {

inline constexpr char kDeviceClass[] = "MarlowCameraLink";

const CTlInfo& GetTLInfo();

}  // namespace Vanto
