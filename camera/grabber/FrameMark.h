/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The number and the checksum that a simulated frame carries in its first bytes
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace grabber {

/// Bytes of the mark: the frame's number, then the checksum over number and all bytes behind the mark. Little-endian.
inline constexpr std::size_t kFrameMarkSize = 16;

std::uint64_t FrameChecksum(std::span<const std::uint8_t> bytes, std::uint64_t number) noexcept;
void WriteFrameMark(std::span<std::uint8_t> image, std::uint64_t number) noexcept;
std::optional<std::uint64_t> ReadFrameMark(std::span<const std::uint8_t> image) noexcept;

}  // namespace grabber
