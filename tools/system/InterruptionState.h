/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the handlers of all systems know of requests to end
 */
#pragma once

#include <mutex>

namespace tools {

/// Notes a request; true for the first one.
bool NoteRequest() noexcept;
/// Whether a command watches the flag.
bool IsWatched() noexcept;
/// Runs the clean-ups that are due, newest first. While the caller holds the result, none goes away under its own feet
/// and its owner waits.
[[nodiscard]] std::unique_lock<std::mutex> RunCleanUps();

}  // namespace tools
