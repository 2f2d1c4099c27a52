/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Writes port configuration files
 */
#pragma once

#include <string>
#include <vector>

namespace tools {

std::string PortConfigurationText(const std::vector<std::string>& portIds, const std::string& deviceSpecific = {});

}  // namespace tools
