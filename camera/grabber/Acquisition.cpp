/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The thread that makes and delivers frames
 */

#include "Acquisition.h"

#include <stdexcept>

namespace grabber {

/**
 * \brief Begin to deliver frames, the first one with the number 0
 * \throw std::logic_error The last grab has not ended. It isn't waited for: the caller may hold what it needs to end.
 * \throw std::bad_alloc, std::system_error No memory or no thread
 */
void Acquisition::Start(const Geometry& geometry, const Settings& settings, Vanto::FgCallee& callee) {
    {
        const std::lock_guard lock(m_lock);
        if (m_running)
            throw std::logic_error("The last grab has not ended.");
    }
    const std::lock_guard control(m_control);
    StopAndJoin();
    Picture picture(geometry, settings);
    const std::lock_guard lock(m_lock);
    m_stop = false;
    m_thread = std::thread([this, picture = std::move(picture), settings, &callee]() mutable {
        Run(std::move(picture), settings, callee);
        const std::lock_guard ended(m_lock);
        m_running = false;
    });
    m_running = true;
    m_threadId = m_thread.get_id();
}

/**
 * \brief End the grab. When it returns no frame will be delivered any more, unless it was called in a delivery.
 */
void Acquisition::Stop() noexcept {
    if (RequestStopInDelivery())
        return;
    const std::lock_guard control(m_control);
    StopAndJoin();
}

// A thread can't wait for itself: it only asks. Returns false, without effect, on any other thread.
bool Acquisition::RequestStopInDelivery() noexcept {
    const std::lock_guard lock(m_lock);
    if (m_threadId != std::this_thread::get_id())
        return false;
    m_stop = true;
    return true;
}

// Wants m_control.
void Acquisition::StopAndJoin() noexcept {
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard lock(m_lock);
        m_stop = true;
        m_changed.notify_all();
    }
    m_thread.join();
    const std::lock_guard lock(m_lock);
    m_threadId = std::thread::id();
}

void Acquisition::SetTriggerCount(std::int64_t count) noexcept {
    const std::lock_guard lock(m_lock);
    m_triggerCount = count > 0 ? static_cast<std::uint64_t>(count) : 0;
    m_changed.notify_all();
}

void Acquisition::Run(Picture picture, const Settings settings, Vanto::FgCallee& callee) noexcept {
    const Clock::time_point start = Clock::now();
    for (std::uint64_t number = 0; settings.frames == 0 || number < settings.frames; ++number) {
        if (!WaitForTurn(number, settings, start))
            return;
        if (settings.dropEvery != 0 && (number + 1) % settings.dropEvery == 0)
            continue;
        const Vanto::FgFrame frame = picture.Draw(number);
        callee.FrameDelivered(&frame);
    }
}

// Returns false when the grab ends.
bool Acquisition::WaitForTurn(std::uint64_t number, const Settings& settings, Clock::time_point start) {
    std::unique_lock lock(m_lock);
    if (settings.triggered)
        m_changed.wait(lock, [&] { return m_stop || m_triggerCount > number; });
    if (settings.frameRate > 0 && !m_stop) {
        const std::chrono::duration<double> after(static_cast<double>(number) / settings.frameRate);
        m_changed.wait_until(lock, start + std::chrono::duration_cast<Clock::duration>(after), [&] { return m_stop; });
    }
    return !m_stop;
}

}  // namespace grabber
