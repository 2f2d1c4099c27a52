/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Names of locks and waits, for the build that records in which order they are taken
 */
#pragma once

namespace os {

#ifdef VANTO_LOCK_ORDER

// The recorder, which is loaded before a program: see docs/lock-order.md. Null without it.
extern "C" {
[[gnu::weak]] void vanto_lock_named(const void* lock, const char* name) noexcept;
[[gnu::weak]] void vanto_lock_forgotten(const void* lock) noexcept;
[[gnu::weak]] void vanto_work_begun(const char* name) noexcept;
[[gnu::weak]] void vanto_work_ended(const char* name) noexcept;
[[gnu::weak]] void vanto_work_awaited(const char* name) noexcept;
}

/// Names a lock for its own lifetime. All locks of one name have one place in the order.
class LockName {
public:
    LockName() = default;
    LockName(const void* lock, const char* name) noexcept { Set(lock, name); }
    ~LockName() { Set(nullptr, nullptr); }
    LockName(const LockName&) = delete;
    LockName& operator=(const LockName&) = delete;

    /// The lock is where its object begins, as are those of the standard library, of Boost and of GenApi.
    void Set(const void* lock, const char* name) noexcept {
        if (m_lock != nullptr && vanto_lock_forgotten != nullptr)
            vanto_lock_forgotten(m_lock);
        m_lock = lock;
        if (m_lock != nullptr && vanto_lock_named != nullptr)
            vanto_lock_named(m_lock, name);
    }

private:
    const void* m_lock = nullptr;
};

/// Says for its own lifetime that this thread does work for whose end others wait.
class AwaitedWork {
public:
    explicit AwaitedWork(const char* name) noexcept : m_name(name) {
        if (vanto_work_begun != nullptr)
            vanto_work_begun(m_name);
    }
    ~AwaitedWork() {
        if (vanto_work_ended != nullptr)
            vanto_work_ended(m_name);
    }
    AwaitedWork(const AwaitedWork&) = delete;
    AwaitedWork& operator=(const AwaitedWork&) = delete;

private:
    const char* m_name;
};

/// Says that this thread is about to wait, without bound, for the end of such work.
inline void AwaitWork(const char* name) noexcept {
    if (vanto_work_awaited != nullptr)
        vanto_work_awaited(name);
}

#else

// Nothing of it is left: members are [[no_unique_address]].
class LockName {
public:
    // Not defaulted: of members with a trivial one clang would say that nobody uses them.
    constexpr LockName() noexcept {}
    constexpr LockName(const void*, const char*) noexcept {}
    constexpr void Set(const void*, const char*) noexcept {}
};

class [[maybe_unused]] AwaitedWork {
public:
    constexpr explicit AwaitedWork(const char*) noexcept {}
};

constexpr void AwaitWork(const char*) noexcept {}

#endif

}  // namespace os
