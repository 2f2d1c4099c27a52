/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Counts what a thread allocates
 */

#include "AllocationCount.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t t_allocations = 0;

}  // namespace

void* operator new(std::size_t size) {
    ++t_allocations;
    if (void* memory = std::malloc(size != 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

// Its memory comes back through the same operator delete, so it must be of the same kind.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++t_allocations;
    return std::malloc(size != 0 ? size : 1);
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

}  // namespace stream_test
