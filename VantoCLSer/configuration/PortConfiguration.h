/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The port configuration file: where it lies and what it says
 */
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "clbindings/ConfigurationLocation.h"
#include "vanto/VantoTypes.h"

namespace Vanto {

/// What the file says of one port and the camera that is meant for it.
struct PortConfiguration {
    gcstring id;  ///< as CLProtocol names the port; never empty in a list
    gcstring manufacturer;
    gcstring family;
    gcstring model;
    gcstring deviceSpecificString;
    gcstring baudRate;  ///< text, not converted
    bool enabled = false;
};

/// In document order; several entries may carry the same ID.
using PortConfigurationList = std::vector<PortConfiguration>;

std::size_t GetPortConfigurationPath(char* buffer, CommonFolder* commonFolder = &os::CommonApplicationDataFolder);
std::string FindPortConfiguration(CommonFolder* commonFolder = &os::CommonApplicationDataFolder);
std::size_t ParseCLBindings(const char* path, PortConfigurationList& list);
void LogUnendedXercesSession();
void ReadCLBindings(const gcstring& path, PortConfigurationList& list);

}  // namespace Vanto
