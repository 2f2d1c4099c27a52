/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Why a camera that the user named can't be used, as errors that end a command
 */
#pragma once

#include <string>

#include "cameras/Enumeration.h"
#include "cameras/KnownCameras.h"
#include "error/ExitCode.h"

namespace tools {

/// The camera's port is in use by another program.
ToolError InUse(const KnownCamera& camera, const std::string& device, const PortNews& news);
/// The camera is not where it was, and nowhere else.
ToolError Missing(const KnownCamera& camera, const std::string& device, const PortWatch& ports);
/// The port that was named is not enabled.
ToolError NotEnabled(const std::string& portId);
/// No camera was found on the port that was named.
ToolError NoCamera(const std::string& portId, const PortWatch& ports);
/// No camera was found at all.
ToolError NoCameraAtAll(const TransportLayer& layer, const Enumeration& enumeration, const std::string& device);

}  // namespace tools
