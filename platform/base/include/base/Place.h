/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A place in a text file
 */
#pragma once

#include <cstdint>

namespace base {

/// Both are counted from 1. Columns count characters. Line 0: the file as a whole, or none.
struct Place {
    std::uint64_t line = 0;
    std::uint64_t column = 0;
};

}  // namespace base
