/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Whether this process is a copy of the one that initialised the producer
 */
#pragma once

namespace gentl {

/// To be called once, before IsForkedChild can be true.
void WatchForks();
/// A copy has the locks of the original as they were at that moment, but none of its threads: nothing can be used.
bool IsForkedChild() noexcept;

}  // namespace gentl
