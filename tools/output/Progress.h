/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Progress: shows that something goes on, and for how long
 */
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace tools {

class Output;

/// A line with the elapsed time on standard error while it lives; nothing where that is no terminal. The line is
/// removed at the end. Thread-bound.
class Progress {
public:
    Progress(Output& output, std::string what);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    std::chrono::milliseconds Elapsed() const;

private:
    void Run();

    Output& m_output;
    std::string m_what;
    std::chrono::steady_clock::time_point m_start;
    std::mutex m_lock;
    std::condition_variable m_changed;
    bool m_ending = false;
    std::thread m_thread;
};

/// A duration as people read it: "40 ms", "12.3 s", "2 min 05 s".
std::string DurationText(std::chrono::milliseconds duration);

}  // namespace tools
