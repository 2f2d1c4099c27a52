/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How the producer's file is unloaded
 */
#pragma once

namespace gentl {

/// Keeps the file loaded where the system would unload it under threads that still run in it. To be called as often as
/// LetUnload.
void KeepLoaded() noexcept;
void LetUnload() noexcept;

/// Whether other threads go on while the file's static objects are destroyed, so that they can be waited for.
bool DoThreadsOutliveStatics() noexcept;

}  // namespace gentl
