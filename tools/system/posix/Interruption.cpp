/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Interruption: Ctrl-C and requests to end, turned into an orderly end
 */
#include "system/Interruption.h"

#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <thread>
#include <utility>

#include "system/InterruptionState.h"

namespace tools {

namespace {

sigset_t Requests() {
    sigset_t signals;
    ::sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        ::sigaddset(&signals, signal);
    return signals;
}

[[noreturn]] void EndBy(int signal) {
    const auto lock = RunCleanUps();
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
            const bool isFirst = NoteRequest();
            if (isFirst && m_onRequest)
                m_onRequest();
            if (!isFirst || !IsWatched())
                EndBy(signal);
        }
    }

    std::function<void()> m_onRequest;
    std::atomic<bool> m_ending{false};
    std::thread m_thread;
};

Interruption::Interruption(std::function<void()> onRequest) : m_impl(std::make_unique<Impl>(std::move(onRequest))) {}
Interruption::~Interruption() = default;

}  // namespace tools
