/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The baud rate of a camera, as its feature ClSerialPortBaudRate has it
 */
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "GenApi/GenApi.h"
#include "cameras/BaudRates.h"

namespace tools {

/// A rate as people type it; throws ToolError (kUsage) for a word that is none.
const BaudRate& BaudRateFromWord(const std::string& word);

/// The feature that brings camera and line to another rate. Thread-bound; the node map must outlive it.
class BaudRateFeature {
public:
    /// \param[in] camera Its name, for error texts
    /// \throw ToolError The description has no such feature
    BaudRateFeature(GenApi::INodeMap& nodes, std::string camera);

    /// The present rate in bit/s; 0 for a value that is none of Camera Link.
    std::uint32_t Get() const;
    /// Throws ToolError for a rate that the camera does not offer, GenericException when it is refused.
    void Set(const BaudRate& rate);
    /// The rates that the description offers at present, from the slowest to the fastest.
    std::vector<BaudRate> Offered() const;
    /// The name of the entry, as the port configuration file takes it; nothing where there is none.
    std::optional<std::string> EntryName(const BaudRate& rate) const;

private:
    GenApi::CEnumerationPtr m_node;
    std::string m_camera;
};

}  // namespace tools
