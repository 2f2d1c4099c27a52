/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Waiting for what a program does in its own time
 */
#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace tools_test {

/// Waits for something; false when it does not come within a minute.
inline bool Eventually(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

}  // namespace tools_test
