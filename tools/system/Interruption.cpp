/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Interruption: what was asked for, who watches, and what is to be done before the end
 */
#include "system/Interruption.h"

#include <atomic>
#include <utility>
#include <vector>

#include "os/LockName.h"
#include "system/InterruptionState.h"

namespace tools {

namespace {

std::atomic<bool> requested{false};
std::atomic<int> watches{0};

struct CleanUps {
    std::mutex lock;
    [[no_unique_address]] const os::LockName lockName{&lock, "clean-ups"};
    std::vector<std::function<void()>*> actions;
};

CleanUps& TheCleanUps() {
    static CleanUps cleanUps;
    return cleanUps;
}

}  // namespace

bool NoteRequest() noexcept {
    return !requested.exchange(true);
}

bool IsWatched() noexcept {
    return watches > 0;
}

std::unique_lock<std::mutex> RunCleanUps() {
    CleanUps& cleanUps = TheCleanUps();
    std::unique_lock lock(cleanUps.lock);
    for (; !cleanUps.actions.empty(); cleanUps.actions.pop_back())
        (*cleanUps.actions.back())();
    return lock;
}

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
