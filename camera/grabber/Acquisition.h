/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The thread that makes and delivers frames
 */
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "Picture.h"

namespace grabber {

/// Makes frames from Start to Stop. Thread-safe; Stop may be called in a delivery.
class Acquisition {
public:
    Acquisition() = default;
    ~Acquisition() { Stop(); }
    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;

    void Start(const Geometry& geometry, const Settings& settings, Vanto::FgCallee& callee);
    void Stop() noexcept;
    /// Number of frames that a triggered grab has made when it has caught up.
    void SetTriggerCount(std::int64_t count) noexcept;

private:
    using Clock = std::chrono::steady_clock;

    bool RequestStopInDelivery() noexcept;
    void StopAndJoin() noexcept;
    void Run(Picture picture, const Settings settings, Vanto::FgCallee& callee) noexcept;
    bool WaitForTurn(std::uint64_t number, const Settings& settings, Clock::time_point start);

    std::mutex m_control;  // one starts or stops at a time
    std::thread m_thread;
    std::mutex m_lock;  // guards the following
    std::condition_variable m_changed;
    std::thread::id m_threadId;
    bool m_stop = false;
    bool m_running = false;
    std::uint64_t m_triggerCount = 0;
};

}  // namespace grabber
