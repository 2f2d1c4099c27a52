/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The Camera Link transport layer, through the factory
 */
#include "cameras/TransportLayer.h"

#include <fmt/format.h>

#include "CLProtocol/CLPort.h"
#include "error/ExitCode.h"
#include "vanto/VantoFolders.h"

namespace tools {

TransportLayer::TransportLayer() : m_layer(Vanto::CTlFactory::GetInstance().CreateTl(kDeviceClass)) {}

TransportLayer::~TransportLayer() {
    if (m_layer != nullptr)
        Vanto::CTlFactory::GetInstance().ReleaseTl(m_layer);
}

/// The transport layer; throws ToolError saying where it was looked for when there is none.
Vanto::ITransportLayer& TransportLayer::Require() const {
    if (m_layer == nullptr)
        throw ToolError(fmt::format("there is no transport layer '{}' in '{}'", kDeviceClass,
                                    Vanto::getVantoFolderPath(Vanto::eTransportLayerFolder).str()),
                        "'vanto-cl doctor' says which libraries were looked at.");
    return *m_layer;
}

std::vector<std::string> MachinePorts() {
    GenICam::gcstring_vector found;
    CLProtocol::CCLPort::GetPortIDs(found);
    std::vector<std::string> ports;
    for (const GenICam::gcstring& port : found)
        ports.push_back(port.str());
    return ports;
}

}  // namespace tools
