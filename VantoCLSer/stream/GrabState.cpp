/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where a grab stands, and who is ending it
 */

#include "VantoCLSer/stream/GrabState.h"

#include <algorithm>

#include "vanto/internal/VantoException.h"

namespace Vanto {

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerStreamGrabber";
constexpr char kText[] = "Invalid streamgrabber state (%i) in %s";

// How long a delivery waits for the camera's node map while the plug-in is being stopped.
constexpr std::chrono::seconds kNodeMapTime{1};

}  // namespace

void CGrabState::CheckClosed(const char* operation) const {
    if (m_state != kClosed)
        throw VANTO_EXCEPTION(LogicalErrorException, kSource)("Invalid stream grabber state (%i) in %s", m_state,
                                                              operation);
}

void CGrabState::Check(std::initializer_list<State> accepted, const char* operation) const {
    if (std::find(accepted.begin(), accepted.end(), m_state) == accepted.end())
        throw VANTO_EXCEPTION(LogicalErrorException, kSource)(kText, m_state, operation);
}

/**
 * \brief Refuse buffers where none may be queued
 *
 * To whom queues a buffer while another thread is about to leave the prepared state, the grab is finished.
 *
 * \throw LogicalErrorException The grab is not prepared, or is being finished
 */
void CGrabState::CheckQueueing() const {
    Check({kPrepared, kReserved}, "QueueBuffer");
    if (m_finishing != 0)
        throw VANTO_EXCEPTION(LogicalErrorException, kSource)(kText, kOpen, "QueueBuffer");
}

/**
 * \brief Whether a queued buffer is to start the plug-in
 *
 * One that is being stopped is not started: whoever stops it cancels the buffer, too.
 */
bool CGrabState::MayStart() const noexcept {
    const bool isPrepared = m_state == kPrepared || m_state == kReserved;
    return isPrepared && !m_isStarted && m_stopping == 0 && m_finishing == 0;
}

void CGrabState::BeginStop() noexcept {
    m_isStarted = false;
    ++m_stops;
    if (m_stopping++ == 0)
        m_overdue = Clock::now() + kNodeMapTime;
}

void CGrabState::EndStop() noexcept {
    if (--m_stopping == 0)
        m_overdue = Clock::time_point::max();
    m_stopEnded.notify_all();
}

bool CGrabState::IsStopOverdue() const noexcept {
    return m_overdue.load() <= Clock::now();
}

/**
 * \brief Wait until nobody stops the plug-in, giving the lock back meanwhile
 */
void CGrabState::WaitUntilStopped(Lock& lock, std::chrono::milliseconds timeout) {
    m_stopEnded.wait_for(lock, timeout, [this] { return m_stopping == 0; });
}

void CGrabState::EndFinish() noexcept {
    --m_finishing;
    m_state = kOpen;
}

}  // namespace Vanto
