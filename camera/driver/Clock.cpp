/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SteadyClock: monotonic time of the machine
 */

#include "Clock.h"

#include <thread>

namespace marlow {

Time SteadyClock::Now() const {
    return std::chrono::time_point_cast<Duration>(std::chrono::steady_clock::now());
}

void SteadyClock::Sleep(Duration duration) {
    std::this_thread::sleep_for(duration);
}

}  // namespace marlow
