/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The clock that a simulation runs on
 */
#pragma once

#include <chrono>

namespace MarlowSim {

using Clock = std::chrono::steady_clock;
using TimePoint = Clock::time_point;

}  // namespace MarlowSim
