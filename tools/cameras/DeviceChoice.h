/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Which camera a user means
 */
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cameras/KnownCameras.h"

namespace tools {

/// What a DEVICE argument may be; for the help of commands that take one.
inline constexpr const char* kDeviceHelp =
    "Number in the list, serial number, friendly name, full name or port of a camera";

/// The number that a DEVICE argument is; nothing when it is none.
std::optional<std::size_t> NumberFrom(const std::string& device);

/// The one camera that a DEVICE argument names; nothing when it names none. Throws ToolError (kUsage) with the
/// candidates when it names several.
std::optional<KnownCamera> ChooseDevice(const std::vector<KnownCamera>& cameras, const std::string& device);

/// A line for each camera, with what it can be called.
std::string Candidates(const std::vector<KnownCamera>& cameras);

}  // namespace tools
