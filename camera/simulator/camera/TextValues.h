/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Numbers, switches and words in options and control commands
 */
#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>

namespace MarlowSim {

std::uint64_t ParseCount(std::string_view text, std::uint64_t max = UINT64_MAX);
double ParseProbability(std::string_view text);
bool ParseSwitch(std::string_view text);
std::chrono::milliseconds ParseMilliseconds(std::string_view text);

}  // namespace MarlowSim
