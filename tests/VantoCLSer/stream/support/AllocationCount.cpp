/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Counts and limits what a thread allocates
 */

#include "AllocationCount.h"

#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t kNoLimit = static_cast<std::size_t>(-1);

thread_local std::size_t t_allocations = 0;
thread_local std::size_t t_limit = kNoLimit;

void* Allocate(std::size_t size) noexcept {
    ++t_allocations;
    return size <= t_limit ? std::malloc(size != 0 ? size : 1) : nullptr;
}

}  // namespace

void* operator new(std::size_t size) {
    if (void* memory = Allocate(size))
        return memory;
    throw std::bad_alloc();
}

// Its memory comes back through the same operator delete, so it must be of the same kind.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace stream_test {

std::size_t AllocationsOfThisThread() noexcept {
    return t_allocations;
}

AllocationLimit::AllocationLimit(std::size_t bytes) noexcept {
    t_limit = bytes;
}

AllocationLimit::~AllocationLimit() {
    t_limit = kNoLimit;
}

}  // namespace stream_test
