/* SPDX-License-Identifier: Apache-2.0 */
/*
 * For tests: waiting for what happens in its own time
 */
#pragma once

#include <chrono>
#include <thread>

namespace test_support {

/// Waits until a condition holds; false when it does not within a time that is far more than anything takes that is not
/// stuck, or that the caller gives.
template <class Condition>
[[nodiscard]] bool WaitUntil(const Condition& condition, std::chrono::milliseconds atMost = std::chrono::minutes(1)) {
    const auto end = std::chrono::steady_clock::now() + atMost;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

}  // namespace test_support
