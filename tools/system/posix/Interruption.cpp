/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Interruption: Ctrl-C and requests to end, turned into an orderly end
 */
#include "system/Interruption.h"

#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>
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

sigset_t Requests() {
    sigset_t signals;
    ::sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        ::sigaddset(&signals, signal);
    return signals;
}

[[noreturn]] void EndBy(int signal) {
    CleanUps& cleanUps = TheCleanUps();
    const std::lock_guard guard(cleanUps.lock);
    for (auto action = cleanUps.actions.rbegin(); action != cleanUps.actions.rend(); ++action)
        (**action)();
    // The shell is to see which signal it was.
    ::signal(signal, SIG_DFL);
    ::kill(::getpid(), signal);
    sigset_t only;
    ::sigemptyset(&only);
    ::sigaddset(&only, signal);
    ::pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    constexpr int kEndedBySignal = 128;
    ::_exit(kEndedBySignal + signal);
}

}  // namespace

class Interruption::Impl {
public:
    explicit Impl(std::function<void()> onRequest) : m_onRequest(std::move(onRequest)) {
        // A reader that went away shows as a failed write, so that the clean-ups run then, too.
        ::signal(SIGPIPE, SIG_IGN);
        const sigset_t requests = Requests();
        ::pthread_sigmask(SIG_BLOCK, &requests, nullptr);
        m_thread = std::thread([this] { Run(); });
    }
    ~Impl() {
        m_ending = true;
        ::pthread_kill(m_thread.native_handle(), SIGTERM);
        m_thread.join();
    }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

private:
    void Run() {
        const sigset_t requests = Requests();
        for (;;) {
            int signal = 0;
            if (::sigwait(&requests, &signal) != 0)
                continue;
            if (m_ending)
                return;
            const bool isFirst = !requested.exchange(true);
            if (isFirst && m_onRequest)
                m_onRequest();
            if (!isFirst || watches == 0)
                EndBy(signal);
        }
    }

    std::function<void()> m_onRequest;
    std::atomic<bool> m_ending{false};
    std::thread m_thread;
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
