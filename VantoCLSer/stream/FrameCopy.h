/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Copies a delivered frame into a buffer
 */
#pragma once

#include <cstdint>

#include "vanto/FgPlugin.h"

namespace Vanto {

/// Copies a frame's pixels without the gaps between its lines, at most \a size bytes. Returns what the copy was bounded
/// by: the smaller of the frame's data size and \a size.
std::uint64_t CopyFrame(const FgFrame& frame, void* buffer, std::uint64_t size) noexcept;

}  // namespace Vanto
