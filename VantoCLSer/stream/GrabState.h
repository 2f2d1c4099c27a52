/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where a grab stands, and who is ending it
 */
#pragma once

#include <atomic>
#include <boost/thread/recursive_mutex.hpp>
#include <chrono>
#include <condition_variable>
#include <initializer_list>

#include "vanto/VantoTypes.h"

namespace Vanto {

/// The state of a stream grabber and of its plug-in. Wants the grabber lock, but for IsStopOverdue.
class CGrabState {
public:
    // The numbers show in messages. Nothing enters the last two, which are checked for all the same.
    enum State : std::int32_t { kClosed = 0, kOpen = 1, kPrepared = 2, kReserved = 3, kCancelled = 4 };
    using Lock = boost::unique_lock<boost::recursive_mutex>;
    using Clock = std::chrono::steady_clock;

    bool Is(State state) const noexcept { return m_state == state; }
    void Set(State state) noexcept { m_state = state; }
    void CheckClosed(const char* operation) const;
    void Check(std::initializer_list<State> accepted, const char* operation) const;
    void CheckQueueing() const;

    bool MayStart() const noexcept;
    void NoteStart() noexcept { m_isStarted = true; }

    void BeginStop() noexcept;
    /// How often the plug-in was stopped.
    std::uint64_t CountStops() const noexcept { return m_stops; }
    void EndStop() noexcept;
    void WaitUntilStopped(Lock& lock, std::chrono::milliseconds timeout);
    /// Whether the plug-in has been stopping for so long that whoever waits for a node map gives way: the one who stops
    /// it may have that locked. Takes no lock.
    bool IsStopOverdue() const noexcept;

    void BeginFinish() noexcept { ++m_finishing; }
    void AbandonFinish() noexcept { --m_finishing; }
    void EndFinish() noexcept;

private:
    std::int32_t m_state = kClosed;
    bool m_isStarted = false;  // the plug-in's acquisition
    unsigned m_stopping = 0;   // threads that stop the plug-in
    std::uint64_t m_stops = 0;
    unsigned m_finishing = 0;  // threads that have stopped it and are about to leave the prepared state
    std::atomic<Clock::time_point> m_overdue{Clock::time_point::max()};
    std::condition_variable_any m_stopEnded;
};

}  // namespace Vanto
