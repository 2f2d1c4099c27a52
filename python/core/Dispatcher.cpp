/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Dispatcher: brings to Python what the library tells with locks held
 */
#include "Dispatcher.h"

#include <chrono>
#include <exception>
#include <utility>

#include "Gil.h"

namespace python {

// Never destroyed: threads of the library may post to the very end of the process.
Dispatcher& Dispatcher::Instance() noexcept {
    static Dispatcher* const dispatcher = new Dispatcher;
    return *dispatcher;
}

/// Returns false where too much waits already, or where there is no more room.
bool Dispatcher::Post(Work work) noexcept {
    try {
        const std::lock_guard lock(m_mutex);
        if (m_stopping || m_waiting.size() >= kMost)
            return false;
        m_waiting.push_back(std::move(work));
        if (!m_thread.joinable())
            m_thread = std::thread([this] { Run(); });
    } catch (const std::exception&) {
        return false;
    }
    m_posted.notify_one();
    return true;
}

/// Ends the thread behind what waits, or leaves it alone where that does not come to an end. Must be called without the
/// GIL.
void Dispatcher::Stop() noexcept {
    constexpr std::chrono::seconds kPatience(10);
    std::unique_lock lock(m_mutex);
    m_stopping = true;
    m_posted.notify_one();
    if (!m_thread.joinable() || m_thread.get_id() == std::this_thread::get_id())
        return;
    const bool ended = m_end.wait_for(lock, kPatience, [this] { return m_ended; });
    lock.unlock();
    if (ended)
        m_thread.join();
    else
        m_thread.detach();
}

std::deque<Dispatcher::Work> Dispatcher::Taken() {
    std::unique_lock lock(m_mutex);
    m_posted.wait(lock, [this] { return m_stopping || !m_waiting.empty(); });
    return std::exchange(m_waiting, {});
}

void Dispatcher::Run() {
    RunAll();
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    m_end.notify_one();
}

void Dispatcher::RunAll() {
    for (std::deque<Work> work = Taken(); !work.empty(); work = Taken()) {
        const HeldGil held;
        if (!held)
            return;
        for (const Work& one : work)
            one();
    }
}

}  // namespace python
