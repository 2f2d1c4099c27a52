/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The cameras that a list shows: those that answered and those that somebody uses
 */
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cameras/Enumeration.h"
#include "cameras/PortUser.h"

namespace tools {

/// A line of the list.
struct ListedCamera {
    std::optional<KnownCamera> known;          ///< with its number; nothing for a port in use without a known camera
    std::optional<Vanto::CDeviceInfo> record;  ///< of a camera that answered as the transport layer made it
    std::string portId;
    std::optional<PortUser> user;  ///< who has the port; nothing when the camera is ready
    std::uint32_t baudRate = 0;    ///< bit/s at which it answered; 0 when unknown

    /// What people call it; empty when it is not known.
    std::string Name() const;
    /// Bit/s at which it rests between uses.
    std::uint32_t RestBaudRate() const noexcept;
};

/// By number, those without one last.
std::vector<ListedCamera> ListCameras(const TransportLayer& layer, const Enumeration& enumeration,
                                      const KnownCameras& known);

}  // namespace tools
