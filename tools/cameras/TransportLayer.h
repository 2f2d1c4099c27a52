/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The Camera Link transport layer, through the factory
 */
#pragma once

#include <string>
#include <vector>

#include "cameras/PortWatch.h"
#include "vanto/TlFactory.h"

namespace tools {

inline constexpr const char* kDeviceClass = "MarlowCameraLink";

/// Holds a reference on the transport layer while it lives; Get() is null when there is none. One at a time.
/// Thread-bound.
class TransportLayer {
public:
    TransportLayer();
    ~TransportLayer();
    TransportLayer(const TransportLayer&) = delete;
    TransportLayer& operator=(const TransportLayer&) = delete;

    Vanto::ITransportLayer* Get() const noexcept { return m_layer; }
    Vanto::ITransportLayer& Require() const;
    /// What the layer's libraries do on ports, since this was made.
    PortWatch& Ports() const noexcept { return m_ports; }

private:
    mutable PortWatch m_ports;
    Vanto::ITransportLayer* m_layer = nullptr;
};

/// PortIDs of this machine, in the order of the CLProtocol module.
std::vector<std::string> MachinePorts();

}  // namespace tools
