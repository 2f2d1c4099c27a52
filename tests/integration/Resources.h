/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a test must leave as it found it
 */
#pragma once

#include <cstddef>

namespace integration {

/// Open files or handles, and threads, of this process.
std::size_t Resources();

}  // namespace integration
