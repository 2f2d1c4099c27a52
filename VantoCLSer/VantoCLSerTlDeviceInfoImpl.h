/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The device info record that enumeration makes of a camera it found
 */
#pragma once

#include "vanto/VantoCLSerDeviceInfo.h"

namespace Vanto {

/// Counts as made by the transport layer, not by the user.
class CVantoCLSerTlDeviceInfoImpl : public CVantoCLSerDeviceInfo {
public:
    CVantoCLSerTlDeviceInfoImpl(const gcstring& portId, const gcstring& deviceId);
    ~CVantoCLSerTlDeviceInfoImpl() override;
};

}  // namespace Vanto
