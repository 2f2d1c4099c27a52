/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How long the module's own code stays in memory
 */
#pragma once

namespace CLProtocol {

/// Keeps the module loaded as long as the process lives: foreign libraries and threads that are still in them may
/// call or return to its code at any time. Thread-safe.
void KeepModuleLoaded() noexcept;

}  // namespace CLProtocol
