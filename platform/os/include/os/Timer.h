/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One-shot timers that can be deleted with a wait for a running callback
 */
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

namespace os {

/// Queue of one-shot timers with a thread of its own. The destructor waits for a running callback.
class TimerQueue {
public:
    using Callback = void (*)(void* parameter) noexcept;
    using TimerId = std::uint64_t;  ///< never 0

    static std::unique_ptr<TimerQueue> Create() noexcept;
    virtual ~TimerQueue() = default;
    TimerQueue(const TimerQueue&) = delete;
    TimerQueue& operator=(const TimerQueue&) = delete;

    /// Starts a timer that calls back once after \a dueTime milliseconds; 0 on failure.
    virtual TimerId CreateOneShot(std::uint32_t dueTime, Callback callback, void* parameter) noexcept = 0;

    /// Deletes a timer and waits until its callback, if it runs, has returned. False when the system refuses, and
    /// when called from that very callback, which can't be waited for.
    virtual bool DeleteAndWait(TimerId timer) noexcept = 0;

protected:
    TimerQueue() = default;
};

}  // namespace os
