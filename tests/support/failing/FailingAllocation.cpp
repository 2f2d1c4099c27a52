/* SPDX-License-Identifier: Apache-2.0 */
/*
 * For tests: a process in which the memory ends at a certain allocation
 */

#include "failing/FailingAllocation.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

std::atomic<std::ptrdiff_t> g_live{0};
std::atomic<std::int64_t> g_remaining{kNever};  // below 0 once one has failed

bool Fails() noexcept {
    return g_remaining.load(std::memory_order_relaxed) != kNever && g_remaining.fetch_sub(1) == 0;
}

}  // namespace

void* operator new(std::size_t size) {
    void* const memory = Fails() ? nullptr : std::malloc(size != 0 ? size : 1);
    if (memory == nullptr)
        throw std::bad_alloc();
    ++g_live;
    return memory;
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr)
        --g_live;
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace failing {

std::ptrdiff_t LiveBlocks() noexcept {
    return g_live;
}

FailingAllocation::FailingAllocation(std::size_t index) noexcept {
    g_remaining = static_cast<std::int64_t>(index);
}

FailingAllocation::~FailingAllocation() {
    g_remaining = kNever;
}

bool FailingAllocation::HasFailed() const noexcept {
    return g_remaining < 0;
}

}  // namespace failing
