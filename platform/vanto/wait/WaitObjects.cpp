/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Waiting for several wait objects at once
 */

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <memory_resource>

#include "Base/GCException.h"
#include "vanto/WaitObject.h"
#include "wait/WaitObjectState.h"

namespace Vanto {

void MultiWaiter::Poke() {
    const std::lock_guard lock(m_mutex);
    m_isPoked = true;
    m_poked.notify_one();
}

bool MultiWaiter::WaitForPoke(const Deadline& deadline) {
    std::unique_lock lock(m_mutex);
    const auto isPoked = [this] { return m_isPoked; };
    if (!deadline)
        m_poked.wait(lock, isPoked);
    else if (!m_poked.wait_until(lock, *deadline, isPoked))
        return false;
    m_isPoked = false;
    return true;
}

namespace {

// A wait for up to so many objects allocates nothing.
constexpr std::size_t kUsualCount = 16;

// A list on the stack as far as that goes.
template <class T>
class ListOfWait {
public:
    explicit ListOfWait(std::size_t count) { m_list.reserve(count); }

    std::pmr::vector<T>& operator*() noexcept { return m_list; }
    std::pmr::vector<T>* operator->() noexcept { return &m_list; }

private:
    alignas(T) std::array<std::byte, kUsualCount * sizeof(T)> m_bytes;
    std::pmr::monotonic_buffer_resource m_resource{m_bytes.data(), m_bytes.size()};
    std::pmr::vector<T> m_list{&m_resource};
};

using States = std::pmr::vector<WaitObject::State*>;

// Makes the waiter known to all objects for the time of a wait.
class Registration {
public:
    Registration(const States& states, MultiWaiter& waiter) : m_states(states), m_waiter(waiter) {
        try {
            for (WaitObject::State* state : m_states)
                state->Add(m_waiter);
        } catch (...) {
            RemoveAll();
            throw;
        }
    }
    ~Registration() { RemoveAll(); }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

private:
    void RemoveAll() noexcept {
        for (WaitObject::State* state : m_states)
            state->Remove(m_waiter);
    }

    const States& m_states;
    MultiWaiter& m_waiter;
};

bool TryConsume(WaitObject::State& state) {
    const std::lock_guard lock(state.Mutex());
    if (!state.IsSignalledLocked())
        return false;
    state.ConsumeLocked();
    return true;
}

// Locked in the order of their addresses, as two threads may wait for the same objects.
bool TryConsumeAll(const States& sorted) {
    ListOfWait<std::unique_lock<std::mutex>> locks(sorted.size());
    for (WaitObject::State* state : sorted)
        locks->emplace_back(state->Mutex());
    if (!std::all_of(sorted.begin(), sorted.end(), [](const auto* state) { return state->IsSignalledLocked(); }))
        return false;
    for (WaitObject::State* state : sorted)
        state->ConsumeLocked();
    return true;
}

template <class IsDone>
bool WaitUntil(const IsDone& isDone, const States& states, std::uint32_t timeout) {
    if (isDone())
        return true;
    if (timeout == 0)
        return false;
    const Deadline deadline = DeadlineAfter(timeout);
    MultiWaiter waiter;
    const Registration registration(states, waiter);
    while (!isDone()) {
        if (!waiter.WaitForPoke(deadline))
            return isDone();
    }
    return true;
}

}  // namespace

/**
 * \brief Add an object
 * \return Its index, as WaitForAny tells it
 * \throw LogicalErrorException The object stands for nothing
 */
std::size_t WaitObjects::Add(const WaitObject& object) {
    object.GetState();
    m_objects.push_back(object);
    return m_objects.size() - 1;
}

/**
 * \brief Wait until all objects are signalled at the same time
 * \param[in] timeout Milliseconds; 0 only asks, kWaitForever waits without end
 * \return False after the time-out; then no object that resets itself was reset. True at once when there is none.
 */
bool WaitObjects::WaitForAll(std::uint32_t timeout) const {
    ListOfWait<WaitObject::State*> states(m_objects.size());
    for (const WaitObject& object : m_objects)
        states->push_back(&object.GetState());
    std::sort(states->begin(), states->end(), std::less<>());
    states->erase(std::unique(states->begin(), states->end()), states->end());
    return WaitUntil([&] { return TryConsumeAll(*states); }, *states, timeout);
}

/**
 * \brief Wait until one of the objects is signalled; of several, the first that was added counts
 * \param[in] timeout Milliseconds; 0 only asks, kWaitForever waits without end
 * \param[out] index The object's index; left alone when the result is false. May be null.
 * \return False after the time-out
 * \throw LogicalErrorException There is nothing to wait for
 */
bool WaitObjects::WaitForAny(std::uint32_t timeout, std::size_t* index) const {
    if (m_objects.empty())
        throw LOGICAL_ERROR_EXCEPTION("There is no wait object to wait for. Add one first.");
    ListOfWait<WaitObject::State*> states(m_objects.size());
    for (const WaitObject& object : m_objects)
        states->push_back(&object.GetState());
    const auto isAnySignalled = [&] {
        const auto found = std::ranges::find_if(*states, [](auto* state) { return TryConsume(*state); });
        if (found != states->end() && index != nullptr)
            *index = static_cast<std::size_t>(found - states->begin());
        return found != states->end();
    };
    return WaitUntil(isAnySignalled, *states, timeout);
}

}  // namespace Vanto
