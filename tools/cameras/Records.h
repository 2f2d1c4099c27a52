/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Info records of cameras: reading them, and making those that the transport layer would make
 */
#pragma once

#include <string>
#include <vector>

#include "cameras/KnownCameras.h"
#include "cameras/TransportLayer.h"
#include "configuration/PortConfiguration.h"
#include "vanto/Info.h"

namespace tools {

/// The name that people read, fit for a terminal.
std::string NameOf(const Vanto::CDeviceInfo& record);
CameraAddress AddressOf(const Vanto::CDeviceInfo& record);

/// The record of a camera at a port, without what the port configuration file says.
Vanto::CDeviceInfo RecordOf(const CameraAddress& address);
bool Complete(const TransportLayer& layer, Vanto::CDeviceInfo& record);

/// The entries of the port configuration file that enable a port; none where the file can't be read.
std::vector<PortEntry> EnabledEntriesOf(const std::string& portId);
/// What the drivers on this machine look for, as far as the transport layer asks them to.
std::vector<std::string> UsableTemplates();

}  // namespace tools
