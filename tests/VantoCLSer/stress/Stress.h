/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Threads that do the same things over and over for some time, and a watch that they all come back
 */
#pragma once

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <future>
#include <iostream>
#include <random>
#include <vector>

namespace clser_test {

inline constexpr std::chrono::seconds kFullTime(VANTO_STRESS_SECONDS);
inline constexpr std::chrono::milliseconds kShortTime = std::chrono::milliseconds(kFullTime) / 4;

class Stress {
public:
    /// One round of a thread's work; may throw what a camera that comes and goes makes operations throw.
    using Work = std::function<void(std::mt19937&)>;

    void Add(Work work) { m_work.push_back(std::move(work)); }

    /// Returns how many rounds were run. A thread that does not come back ends the program: it can't be joined.
    std::uint64_t Run(std::chrono::milliseconds duration) {
        std::vector<std::future<void>> threads;
        std::atomic<std::uint64_t> rounds{0};
        const auto end = std::chrono::steady_clock::now() + duration;
        for (std::size_t index = 0; index < m_work.size(); ++index)
            threads.push_back(std::async(std::launch::async, [&, index] {
                std::mt19937 random(static_cast<std::uint32_t>(index));
                while (std::chrono::steady_clock::now() < end) {
                    Try(m_work[index], random);
                    ++rounds;
                }
            }));
        for (std::future<void>& thread : threads) {
            if (thread.wait_until(end + kPatience) != std::future_status::ready) {
                std::cerr << "a thread hangs after " << rounds << " rounds" << std::endl;
                std::abort();
            }
        }
        return rounds;
    }

private:
    static constexpr std::chrono::seconds kPatience{120};

    static void Try(const Work& work, std::mt19937& random) {
        try {
            work(random);
        } catch (const std::exception&) {
            // Closed, removed or not there at this moment.
        }
    }

    std::vector<Work> m_work;
};

}  // namespace clser_test
