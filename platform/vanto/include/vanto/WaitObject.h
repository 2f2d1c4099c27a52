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
    WaitObject();
    WaitObject(const WaitObject&) = default;
    WaitObject& operator=(const WaitObject&) = default;
    virtual ~WaitObject();

    bool IsValid() const noexcept { return m_state != nullptr; }
    bool Wait(std::uint32_t timeout) const;

    class State;

protected:
    explicit WaitObject(std::shared_ptr<State> state) noexcept;
    State& GetState() const;

private:
    friend class WaitObjects;
    std::shared_ptr<State> m_state;
};

/// A wait object that can be signalled.
class VANTOBASE_API WaitObjectEx : public WaitObject {
public:
    WaitObjectEx() = default;
    static WaitObjectEx Create(bool manualReset = true, bool initiallySignalled = false);

    void Signal() const;
    void Reset() const;

protected:
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
    std::size_t Add(const WaitObject& object);
    void RemoveAll() noexcept { m_objects.clear(); }
    std::size_t Size() const noexcept { return m_objects.size(); }

    bool WaitForAll(std::uint32_t timeout) const;
    bool WaitForAny(std::uint32_t timeout, std::size_t* index = nullptr) const;

private:
    std::vector<WaitObject> m_objects;
};

}  // namespace Vanto
