/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The threads of this process, and how often each has run
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

namespace integration {

/// By thread, without the calling one, how often it was given a processor and lost it again.
std::map<std::string, std::uint64_t> ThreadSwitches();

/// Waits, a minute at most, until there are so many threads beside the calling one.
bool WaitForOtherThreads(std::size_t expected);

}  // namespace integration
