/* SPDX-License-Identifier: Apache-2.0 */
/*
 * StuckCount: how many calls into a library do not return
 */
#pragma once

#include <atomic>
#include <memory>
#include <utility>

namespace CLProtocol {

/// Counts jobs that were given up because a foreign function does not return, until it returns after all.
class StuckCount {
public:
    bool IsAny() const noexcept { return m_count > 0; }

    /// One job; its worker and its caller each say how it ended for them, in any order.
    class Job {
    public:
        explicit Job(std::shared_ptr<StuckCount> count) : m_count(std::move(count)) {}
        ~Job() { Finish(); }
        Job(const Job&) = delete;
        Job& operator=(const Job&) = delete;

        void Finish() noexcept {
            if (m_state.exchange(kFinished) == kGivenUp)
                --m_count->m_count;
        }
        void GiveUp() noexcept {
            ++m_count->m_count;
            if (m_state.exchange(kGivenUp) == kFinished)
                --m_count->m_count;
        }

    private:
        enum State { kRunning, kFinished, kGivenUp };
        std::shared_ptr<StuckCount> m_count;
        std::atomic<State> m_state{kRunning};
    };

private:
    std::atomic<int> m_count{0};
};

}  // namespace CLProtocol
