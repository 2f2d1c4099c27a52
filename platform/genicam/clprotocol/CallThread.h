/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Runs foreign functions on another thread, so that one that hangs does not hang the caller
 */
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace CLProtocol {

class CallThread {
public:
    using Job = std::function<void()>;
    using Milliseconds = std::chrono::milliseconds;

    CallThread();
    ~CallThread();
    CallThread(const CallThread&) = delete;
    CallThread& operator=(const CallThread&) = delete;

    void Run(Job job, Milliseconds silence = Milliseconds(0), Milliseconds limit = kLimit);
    void Leave(std::shared_ptr<void> last);
    bool IsStuck() const noexcept { return m_isStuck; }

    static constexpr Milliseconds kLimit = std::chrono::minutes(5);
    static constexpr Milliseconds kIdle = std::chrono::seconds(1);  // that the thread waits for the next job

private:
    struct State;
    static void Work(const std::shared_ptr<State>& state);
    static bool HasWork(std::unique_lock<std::mutex>& lock, State& state);
    static void DoJob(std::unique_lock<std::mutex>& lock, State& state);
    void StartThread();
    [[noreturn]] void ThrowStuck();

    std::shared_ptr<State> m_state;
    std::thread m_thread;
    bool m_isStuck = false;
};

}  // namespace CLProtocol
