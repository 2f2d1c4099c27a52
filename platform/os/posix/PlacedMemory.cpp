/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Memory at an address of which one half is given
 */

#include "os/PlacedMemory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <new>

namespace os {

namespace {

static_assert(sizeof(void*) == 8);
constexpr std::size_t kLowerHalf = std::size_t{1} << 32;

}  // namespace

/// Takes addresses of which one must fit, and gives back all but the pages there.
PlacedMemory::PlacedMemory(std::uint32_t lowerHalf, std::size_t size) {
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const std::size_t whole = kLowerHalf + (size / page + 2) * page;
    void* const room = ::mmap(nullptr, whole, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (room == MAP_FAILED)
        throw std::bad_alloc();
    char* const start = static_cast<char*>(room);
    m_data = start + static_cast<std::uint32_t>(lowerHalf -
                                                static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(start)));
    const std::size_t before = static_cast<std::size_t>(m_data - start) / page * page;
    m_begin = start + before;
    m_length = (static_cast<std::size_t>(m_data - start) - before + size + page - 1) / page * page;
    ::munmap(start + before + m_length, whole - before - m_length);
    if (before > 0)
        ::munmap(start, before);
    if (::mprotect(m_begin, m_length, PROT_READ | PROT_WRITE) != 0) {
        ::munmap(m_begin, m_length);
        throw std::bad_alloc();
    }
}

PlacedMemory::~PlacedMemory() {
    ::munmap(m_begin, m_length);
}

}  // namespace os
