/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Wait objects: what threads wait for
 */

#include "vanto/WaitObject.h"

#include <algorithm>

#include "Base/GCException.h"
#include "wait/WaitObjectState.h"

namespace Vanto {

Deadline DeadlineAfter(std::uint32_t timeout) {
    if (timeout == kWaitForever)
        return std::nullopt;
    return std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout);
}

bool WaitObject::State::Wait(const Deadline& deadline) {
    std::unique_lock lock(m_mutex);
    const auto isSignalled = [this] { return m_signalled; };
    if (!deadline)
        m_changed.wait(lock, isSignalled);
    else if (!m_changed.wait_until(lock, *deadline, isSignalled))
        return false;
    ConsumeLocked();
    return true;
}

void WaitObject::State::Signal() {
    const std::lock_guard lock(m_mutex);
    if (m_signalled)
        return;
    m_signalled = true;
    if (m_manualReset)
        m_changed.notify_all();
    else
        m_changed.notify_one();
    for (MultiWaiter* waiter : m_waiters)
        waiter->Poke();
}

void WaitObject::State::Reset() {
    const std::lock_guard lock(m_mutex);
    m_signalled = false;
}

void WaitObject::State::Add(MultiWaiter& waiter) {
    const std::lock_guard lock(m_mutex);
    m_waiters.push_back(&waiter);
}

void WaitObject::State::Remove(MultiWaiter& waiter) noexcept {
    const std::lock_guard lock(m_mutex);
    std::erase(m_waiters, &waiter);
}

/**
 * \class WaitObject
 * \brief Something that is signalled or not; copies stand for the same thing
 */

/// A wait object that stands for nothing; every use but IsValid throws.
WaitObject::WaitObject() = default;

WaitObject::WaitObject(std::shared_ptr<State> state) noexcept : m_state(std::move(state)) {}

WaitObject::~WaitObject() = default;

WaitObject::State& WaitObject::GetState() const {
    if (m_state == nullptr)
        throw LOGICAL_ERROR_EXCEPTION("The wait object stands for nothing. Create it first.");
    return *m_state;
}

/**
 * \brief Wait until the object is signalled
 * \param[in] timeout Milliseconds; 0 only asks, kWaitForever waits without end
 * \return False after the time-out
 * \throw LogicalErrorException The object stands for nothing
 * \context Thread-safe
 */
bool WaitObject::Wait(std::uint32_t timeout) const {
    return GetState().Wait(DeadlineAfter(timeout));
}

WaitObjectEx::WaitObjectEx(bool manualReset, bool initiallySignalled)
    : WaitObject(std::make_shared<State>(manualReset, initiallySignalled)) {}

/**
 * \brief Make a wait object
 * \param[in] manualReset It stays signalled until Reset, else until one wait has succeeded
 */
WaitObjectEx WaitObjectEx::Create(bool manualReset, bool initiallySignalled) {
    return WaitObjectEx(manualReset, initiallySignalled);
}

void WaitObjectEx::Signal() const {
    GetState().Signal();
}

void WaitObjectEx::Reset() const {
    GetState().Reset();
}

}  // namespace Vanto
