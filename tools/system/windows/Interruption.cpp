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
std::function<void()> onFirstRequest;

/// The clean-ups that are due; locked while they run, so that none goes away under its own feet.
struct CleanUps {
    std::mutex lock;
    std::vector<std::function<void()>*> actions;
};

CleanUps& TheCleanUps() {
    static CleanUps cleanUps;
    return cleanUps;
}

/// Waits for the commands that watch, for less than the five seconds that the system waits for a program.
void WaitForWatches() {
    constexpr DWORD kPause = 10;  // ms
    constexpr ULONGLONG kLongest = 4500;
    const ULONGLONG begin = ::GetTickCount64();
    while (watches > 0 && ::GetTickCount64() - begin < kLongest)
        ::Sleep(kPause);
}

// The system calls it on a thread of its own. When it returns FALSE, the system ends the process; when the console is
// closed or the user leaves, it does so in any case.
BOOL WINAPI OnRequest(DWORD event) {
    const bool mayGoOn = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
    const bool isFirst = !requested.exchange(true);
    if (isFirst && onFirstRequest)
        onFirstRequest();
    if (isFirst && watches > 0 && mayGoOn)
        return TRUE;
    if (!mayGoOn)
        WaitForWatches();
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
    explicit Impl(std::function<void()> onRequest) {
        onFirstRequest = std::move(onRequest);
        ::SetConsoleCtrlHandler(OnRequest, TRUE);
    }
    ~Impl() { ::SetConsoleCtrlHandler(OnRequest, FALSE); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
};

Interruption::Interruption(std::function<void()> onRequest) : m_impl(std::make_unique<Impl>(std::move(onRequest))) {}
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
