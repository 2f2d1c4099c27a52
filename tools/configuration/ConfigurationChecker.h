/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Finds what is wrong with a port configuration
 */
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "configuration/PortConfiguration.h"

namespace tools {

void CheckPortConfiguration(PortConfiguration& configuration, const std::optional<std::vector<std::string>>& ports);

}  // namespace tools
