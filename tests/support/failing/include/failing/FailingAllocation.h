/* SPDX-License-Identifier: Apache-2.0 */
/*
 * For tests: a process in which the memory ends at a certain allocation
 */
#pragma once

#include <cstddef>

namespace failing {

/// Blocks of operator new, of any thread, that were not given back yet.
std::ptrdiff_t LiveBlocks() noexcept;

/// Lets one call of operator new fail: the one with an index, counted over all threads from now on, as long as it
/// lives. One at a time.
class FailingAllocation {
public:
    explicit FailingAllocation(std::size_t index) noexcept;
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    /// Whether there were so many allocations.
    bool HasFailed() const noexcept;
};

}  // namespace failing
