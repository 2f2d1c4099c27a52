/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Memory at an address of which one half is given
 */

#include "os/PlacedMemory.h"

#include <windows.h>

#include <new>

namespace os {

namespace {

static_assert(sizeof(void*) == 8);
constexpr std::size_t kLowerHalf = std::size_t{1} << 32;

}  // namespace

/// Takes addresses of which one must fit, and memory only there.
PlacedMemory::PlacedMemory(std::uint32_t lowerHalf, std::size_t size) : m_length(kLowerHalf + size) {
    m_begin = VirtualAlloc(nullptr, m_length, MEM_RESERVE, PAGE_NOACCESS);
    if (m_begin == nullptr)
        throw std::bad_alloc();
    char* const start = static_cast<char*>(m_begin);
    m_data = start + static_cast<std::uint32_t>(lowerHalf -
                                                static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(start)));
    if (VirtualAlloc(m_data, size, MEM_COMMIT, PAGE_READWRITE) == nullptr) {
        VirtualFree(m_begin, 0, MEM_RELEASE);
        throw std::bad_alloc();
    }
}

PlacedMemory::~PlacedMemory() {
    VirtualFree(m_begin, 0, MEM_RELEASE);
}

}  // namespace os
