/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The Camera Link transport layer, through the factory
 */
#pragma once

#include <string>
#include <vector>

#include "vanto/TlFactory.h"

namespace tools {

inline constexpr const char* kDeviceClass = "MarlowCameraLink";

/// Holds a reference on the transport layer while it lives; Get() is null when there is none. Thread-bound.
class TransportLayer {
public:
    TransportLayer();
    ~TransportLayer();
    TransportLayer(const TransportLayer&) = delete;
    TransportLayer& operator=(const TransportLayer&) = delete;

    Vanto::ITransportLayer* Get() const noexcept { return m_layer; }
    Vanto::ITransportLayer& Require() const;

private:
    Vanto::ITransportLayer* m_layer = nullptr;
};

/// PortIDs of this machine, in the order of the CLProtocol module.
std::vector<std::string> MachinePorts();

}  // namespace tools
