/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Progress: shows that something goes on, and for how long
 */
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

#include "os/LockName.h"

namespace tools {

class Output;

/// A line with the elapsed time on standard error while it lives, with percent and the time left where these are known;
/// nothing where that is no terminal. The line is removed at the end. Thread-bound.
class Progress {
public:
    enum class Unit { kThings, kBytes };

    Progress(Output& output, std::string what);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    std::chrono::milliseconds Elapsed() const;
    /// Changes what is shown. Any thread.
    void Say(std::string what);
    /// How much is done of all, in whatever unit; 0 of all is unknown. Any thread.
    void SetPart(std::uint64_t done, std::uint64_t all, Unit unit = Unit::kThings);

private:
    void Run();
    std::string Line() const;

    Output& m_output;
    std::string m_what;
    std::chrono::steady_clock::time_point m_start;
    std::uint64_t m_done = 0;
    std::uint64_t m_all = 0;
    Unit m_unit = Unit::kThings;
    std::mutex m_lock;
    [[no_unique_address]] const os::LockName m_lockName{&m_lock, "progress"};
    std::condition_variable m_changed;
    bool m_ending = false;
    std::thread m_thread;
};

std::string PartText(std::uint64_t done, std::uint64_t all, Progress::Unit unit, std::chrono::milliseconds elapsed);

/// A duration as people read it: "40 ms", "12.3 s", "2 min 05 s".
std::string DurationText(std::chrono::milliseconds duration);

}  // namespace tools
