/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where the port configuration file lies
 */
#pragma once

#include <optional>
#include <string>

#include "os/Path.h"

namespace Vanto {

inline constexpr char kBindingsVariable[] = "VANTO_CL_BINDINGS";  ///< names the folder of the file
inline constexpr char kConfigurationFileName[] = "PortConfiguration_x64.xml";

/// What led to the file's place.
enum class LocationRule {
    kVariable,         ///< the variable names the folder
    kEmptyVariable,    ///< it is set but empty: the working folder
    kTooLongVariable,  ///< it is longer than a path may be: the working folder
    kCommonFolder      ///< there is no such variable: Marlow/CLBindings in the folder for data of all users
};

struct ConfigurationLocation {
    LocationRule rule = LocationRule::kCommonFolder;
    std::string folder;  ///< the variable's value
    std::string path;    ///< in the local code page; may be longer than the kMaxPath that the plug-in reads
};

/// Where applications keep data for all users; nothing where the system does not tell.
using CommonFolder = std::optional<std::string>();

std::optional<ConfigurationLocation> FindConfigurationLocation(
    CommonFolder* commonFolder = &os::CommonApplicationDataFolder);

}  // namespace Vanto
