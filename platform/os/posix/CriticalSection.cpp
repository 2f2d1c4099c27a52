/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Critical sections on POSIX systems
 */

#include "os/CriticalSection.h"

#include <mutex>

#include "os/LockName.h"

namespace os {

struct CriticalSection::Impl {
    std::mutex mutex;
    [[no_unique_address]] const LockName mutexName{&mutex, "critical section"};
};

CriticalSection::CriticalSection(std::uint32_t /*spinCount*/) : m_impl(std::make_unique<Impl>()) {}

CriticalSection::~CriticalSection() = default;

void CriticalSection::lock() {
    m_impl->mutex.lock();
}

void CriticalSection::unlock() noexcept {
    m_impl->mutex.unlock();
}

}  // namespace os
