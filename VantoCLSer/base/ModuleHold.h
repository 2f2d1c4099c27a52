/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How long the plug-in's own code stays in memory
 */
#pragma once

namespace Vanto {

/// Takes a reference to the library that this code is part of; nothing where that is a program. Thread-safe, as the
/// others. To be called while the system can load libraries: while one hangs it can't.
void HoldModule() noexcept;
/// Gives it back; the caller's own is another one.
void ReleaseModule() noexcept;
/// Keeps it as long as the process lives: a thread that is left alone in a foreign library returns to this code.
void KeepModule() noexcept;

}  // namespace Vanto
