/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Interruption: Ctrl-C and closed console windows, turned into an orderly end
 */
#include "system/Interruption.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <ranges>
#include <vector>

namespace tools {

namespace {

std::atomic<bool> requested{false};
std::atomic<int> watches{0};

/// The clean-ups that are due; locked while they run, so that none goes away under its own feet.
struct CleanUps {
    std::mutex lock;
    std::vector<std::function<void()>*> actions;
};

CleanUps& TheCleanUps() {
    static CleanUps cleanUps;
    return cleanUps;
}

// The system calls it on a thread of its own. When it returns FALSE, the system ends the process.
BOOL WINAPI OnRequest(DWORD) {
    if (!requested.exchange(true) && watches > 0)
        return TRUE;
    CleanUps& cleanUps = TheCleanUps();
    const std::lock_guard guard(cleanUps.lock);
    for (std::function<void()>* action : cleanUps.actions | std::views::reverse)
        (*action)();
    cleanUps.actions.clear();
    return FALSE;
}

}  // namespace

class Interruption::Impl {
public:
    Impl() { ::SetConsoleCtrlHandler(OnRequest, TRUE); }
    ~Impl() { ::SetConsoleCtrlHandler(OnRequest, FALSE); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
};

Interruption::Interruption() : m_impl(std::make_unique<Impl>()) {}
Interruption::~Interruption() = default;

bool Interruption::Requested() noexcept {
    return requested;
}

Interruption::Watch::Watch() noexcept {
    ++watches;
}
Interruption::Watch::~Watch() {
    --watches;
}

Interruption::CleanUp::CleanUp(std::function<void()> action) : m_action(std::move(action)) {
    CleanUps& cleanUps = TheCleanUps();
    const std::lock_guard guard(cleanUps.lock);
    cleanUps.actions.push_back(&m_action);
}

Interruption::CleanUp::~CleanUp() {
    CleanUps& cleanUps = TheCleanUps();
    const std::lock_guard guard(cleanUps.lock);
    std::erase(cleanUps.actions, &m_action);
}

}  // namespace tools
