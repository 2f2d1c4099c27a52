/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The commands of the control socket
 */
#pragma once

#include <string>
#include <string_view>

#include "simulator/Simulator.h"

namespace MarlowSim {

std::string DoControlCommand(Simulator& simulator, std::string_view line) noexcept;
std::string ControlHelp();

}  // namespace MarlowSim
