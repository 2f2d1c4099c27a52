/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Critical sections on Windows
 */

#include "os/CriticalSection.h"

#include <windows.h>

namespace os {

struct CriticalSection::Impl {
    explicit Impl(DWORD spinCount) { ::InitializeCriticalSectionAndSpinCount(&section, spinCount); }
    ~Impl() { ::DeleteCriticalSection(&section); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    CRITICAL_SECTION section;
};

CriticalSection::CriticalSection(std::uint32_t spinCount) : m_impl(std::make_unique<Impl>(spinCount)) {}

CriticalSection::~CriticalSection() = default;

void CriticalSection::lock() {
    ::EnterCriticalSection(&m_impl->section);
}

void CriticalSection::unlock() noexcept {
    ::LeaveCriticalSection(&m_impl->section);
}

}  // namespace os
