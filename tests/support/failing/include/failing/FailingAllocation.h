/* SPDX-License-Identifier: Apache-2.0 */
/*
 * For tests: a process in which the memory ends at a certain allocation
 */
#pragma once

#include <cstddef>

namespace failing {

/// Blocks of operator new, of any thread, that were not given back yet.
std::ptrdiff_t LiveBlocks() noexcept;

/// How long there is no memory.
enum class Shortage { kOnce, kFromThenOn };

/// Lets a call of operator new fail: the one with an index, counted over all threads from now on, or that one and all
/// behind it, as long as it lives. One at a time.
class FailingAllocation {
public:
    explicit FailingAllocation(std::size_t index, Shortage shortage = Shortage::kOnce) noexcept;
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    /// Whether there were so many allocations.
    bool HasFailed() const noexcept;
};

/// The calls that led to the failure before, for who looks into what came of it.
void PrintWhereItFailed() noexcept;

}  // namespace failing
