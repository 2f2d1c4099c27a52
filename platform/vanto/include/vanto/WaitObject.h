/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Wait objects: what threads wait for, one or several at a time
 */
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "vanto/VantoTypes.h"

namespace Vanto {

/// A time-out that never comes, for the wait operations.
inline constexpr std::uint32_t kWaitForever = 0xFFFFFFFF;

/// Something that is signalled or not. Copies stand for the same thing. Thread-safe.
class VANTOBASE_API WaitObject {
public:
    /// Stands for nothing.
    WaitObject();
    WaitObject(const WaitObject&) = default;
    WaitObject& operator=(const WaitObject&) = default;
    virtual ~WaitObject();

    /// Whether it stands for anything.
    bool IsValid() const noexcept { return m_state != nullptr; }
    /// Waits until it is signalled, at most so many milliseconds (0 only asks, kWaitForever has no end); false after
    /// the time-out. Throws LogicalErrorException when it stands for nothing.
    bool Wait(std::uint32_t timeout) const;

    /// What copies share.
    class State;

protected:
    /// For those that make wait objects.
    explicit WaitObject(std::shared_ptr<State> state) noexcept;
    /// What it stands for; throws LogicalErrorException when that is nothing.
    State& GetState() const;

private:
    friend class WaitObjects;
    std::shared_ptr<State> m_state;
};

/// A wait object that can be signalled.
class VANTOBASE_API WaitObjectEx : public WaitObject {
public:
    WaitObjectEx() = default;
    /// Makes one that stays signalled until Reset, or else until one wait has succeeded.
    static WaitObjectEx Create(bool manualReset = true, bool initiallySignalled = false);

    /// Signals it; throws LogicalErrorException when it stands for nothing.
    void Signal() const;
    /// Ends the signal; throws LogicalErrorException when it stands for nothing.
    void Reset() const;

protected:
    /// As Create.
    WaitObjectEx(bool manualReset, bool initiallySignalled);
};

/// A wait object that exists from its construction on.
class VANTOBASE_API AlertableWaitObject : public WaitObjectEx {
public:
    /// With \a manualReset it stays signalled until Reset, else until one wait has succeeded.
    explicit AlertableWaitObject(bool manualReset = true, bool initiallySignalled = false)
        : WaitObjectEx(manualReset, initiallySignalled) {}
};

/// Several wait objects to wait for at once. Reentrant; what it holds is thread-safe.
class VANTOBASE_API WaitObjects {
public:
    /// Adds one; returns its index, as WaitForAny tells it. Throws LogicalErrorException for one that stands for
    /// nothing.
    std::size_t Add(const WaitObject& object);
    /// Forgets all.
    void RemoveAll() noexcept { m_objects.clear(); }
    /// How many there are.
    std::size_t Size() const noexcept { return m_objects.size(); }

    /// Waits until all are signalled at the same time, at most so many milliseconds; false after the time-out, when
    /// none was reset. True at once when there is none.
    bool WaitForAll(std::uint32_t timeout) const;
    /// Waits until one is signalled, at most so many milliseconds; of several, the first that was added counts, whose
    /// index goes to \a index. False after the time-out. Throws LogicalErrorException when there is none.
    bool WaitForAny(std::uint32_t timeout, std::size_t* index = nullptr) const;

private:
    std::vector<WaitObject> m_objects;
};

}  // namespace Vanto
