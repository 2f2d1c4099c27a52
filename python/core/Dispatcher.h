/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Dispatcher: brings to Python what the library tells with locks held
 */
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace python {

/// A thread that runs what is posted, in order, with the GIL held and nothing else. Log messages and removals come
/// while a thread of the library holds a port's or a node map's lock: Python code that ran there could wait for another
/// thread that waits for that lock. The thread starts with the first post. Thread-safe.
class Dispatcher {
public:
    using Work = std::function<void()>;

    static Dispatcher& Instance() noexcept;

    bool Post(Work work) noexcept;
    void Stop() noexcept;

private:
    static constexpr std::size_t kMost = 10000;  // what may wait

    void Run();
    void RunAll();
    std::deque<Work> Taken();

    std::mutex m_mutex;
    std::condition_variable m_posted;
    std::deque<Work> m_waiting;
    bool m_stopping = false;
    bool m_ended = false;
    std::condition_variable m_end;
    std::thread m_thread;
};

}  // namespace python
