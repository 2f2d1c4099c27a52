/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Counts what a thread allocates
 */
#pragma once

#include <cstddef>

namespace stream_test {

/// Calls of operator new by this thread since it began.
std::size_t AllocationsOfThisThread() noexcept;

}  // namespace stream_test
