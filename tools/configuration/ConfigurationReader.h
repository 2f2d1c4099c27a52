/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reads the port configuration file with the place of everything in it
 */
#pragma once

#include <filesystem>

#include "configuration/PortConfiguration.h"

namespace tools {

PortConfiguration ReadPortConfiguration(const std::filesystem::path& path);
PortConfiguration ReadExistingConfiguration(const std::filesystem::path& path);

}  // namespace tools
