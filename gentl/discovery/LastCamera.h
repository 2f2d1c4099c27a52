/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Which camera answered last behind a port, for a process that finds the port in use before it has ever asked it
 */
#pragma once

#include <optional>
#include <string>

namespace gentl {

/// Keeps the identifier of a camera in the user's cache folder; where that can't be written, it is forgotten.
void RememberCamera(const std::string& portId, const std::string& deviceId);
/// The identifier that any process of this user kept last; nothing where there is none.
std::optional<std::string> LastCamera(const std::string& portId);

}  // namespace gentl
