/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Counts and limits what a thread allocates
 */
#pragma once

#include <cstddef>

namespace stream_test {

/// Calls of operator new by this thread since it began.
std::size_t AllocationsOfThisThread() noexcept;

/// Calls of operator new by this thread for more bytes than this fail, as long as it lives.
class AllocationLimit {
public:
    explicit AllocationLimit(std::size_t bytes) noexcept;
    ~AllocationLimit();
    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;
};

}  // namespace stream_test
