/* SPDX-License-Identifier: Apache-2.0 */
/*
 * For tests: a process in which the memory ends at a certain allocation
 */

#include "failing/FailingAllocation.h"

#include <execinfo.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

std::atomic<std::ptrdiff_t> g_live{0};
std::atomic<std::int64_t> g_remaining{kNever};  // below 0 once one has failed

std::atomic<bool> g_lasts{false};
std::array<void*, 40> g_stack;
std::atomic<int> g_depth{0};

bool Fails() noexcept {
    if (g_remaining.load(std::memory_order_relaxed) == kNever)
        return false;
    const std::int64_t before = g_remaining.fetch_sub(1);
    if (before != 0)
        return before < 0 && g_lasts;
    g_depth = ::backtrace(g_stack.data(), static_cast<int>(g_stack.size()));
    return true;
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

// A sanitizer has these of its own, which know nothing of the others here.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* memory, const std::nothrow_t&) noexcept {
    operator delete(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace failing {

std::ptrdiff_t LiveBlocks() noexcept {
    return g_live;
}

FailingAllocation::FailingAllocation(std::size_t index, Shortage shortage) noexcept {
    g_lasts = shortage == Shortage::kFromThenOn;
    g_remaining = static_cast<std::int64_t>(index);
}

FailingAllocation::~FailingAllocation() {
    g_remaining = kNever;
}

bool FailingAllocation::HasFailed() const noexcept {
    return g_remaining < 0;
}

void PrintWhereItFailed() noexcept {
    ::backtrace_symbols_fd(g_stack.data(), g_depth, STDERR_FILENO);
}

}  // namespace failing
