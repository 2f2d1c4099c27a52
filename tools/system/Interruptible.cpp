/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a command that watches for interruptions does between two steps
 */
#include "system/Interruptible.h"

#include <algorithm>
#include <thread>

#include "error/ExitCode.h"

namespace tools {

void ThrowIfInterrupted() {
    if (Interruption::Requested())
        throw ToolError("interrupted", {}, ExitCode::kInterrupted);
}

bool SleepUninterrupted(std::chrono::milliseconds duration) {
    constexpr std::chrono::milliseconds kStep{20};
    const auto end = std::chrono::steady_clock::now() + duration;
    while (!Interruption::Requested()) {
        const auto now = std::chrono::steady_clock::now();
        if (now >= end)
            return true;
        std::this_thread::sleep_for(std::min<std::chrono::steady_clock::duration>(kStep, end - now));
    }
    return false;
}

}  // namespace tools
