/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A lock for short times, which tries again a number of times before it waits
 */
#pragma once

#include <cstdint>
#include <memory>

namespace os {

/// For std::lock_guard and std::unique_lock. The spin count matters on Windows only.
class CriticalSection {
public:
    explicit CriticalSection(std::uint32_t spinCount);
    ~CriticalSection();
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void lock();
    void unlock() noexcept;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace os
