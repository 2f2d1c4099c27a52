/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Clock: the time that the driver counts its deadlines by
 */
#pragma once

#include <chrono>

namespace marlow {

using Duration = std::chrono::nanoseconds;
using Time = std::chrono::time_point<std::chrono::steady_clock, Duration>;

/// Monotonic time. Thread-safe.
class Clock {
public:
    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock() = default;

    virtual Time Now() const = 0;
    virtual void Sleep(Duration duration) = 0;
};

/// The machine's own.
class SteadyClock final : public Clock {
public:
    Time Now() const override;
    void Sleep(Duration duration) override;
};

}  // namespace marlow
