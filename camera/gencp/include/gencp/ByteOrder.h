/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Big-endian numbers in byte ranges: the order of everything on a GenCP serial line
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace gencp {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

/// The number at an offset. REQUIRES: all its bytes lie in the range.
constexpr std::uint16_t Load16(ByteView bytes, std::size_t offset) {
    return static_cast<std::uint16_t>((bytes[offset] << 8) | bytes[offset + 1]);
}

constexpr std::uint32_t Load32(ByteView bytes, std::size_t offset) {
    return (static_cast<std::uint32_t>(Load16(bytes, offset)) << 16) | Load16(bytes, offset + 2);
}

constexpr std::uint64_t Load64(ByteView bytes, std::size_t offset) {
    return (static_cast<std::uint64_t>(Load32(bytes, offset)) << 32) | Load32(bytes, offset + 4);
}

/// Put a number at an offset. REQUIRES: all its bytes lie in the range.
constexpr void Store16(std::span<std::uint8_t> bytes, std::size_t offset, std::uint16_t value) {
    bytes[offset] = static_cast<std::uint8_t>(value >> 8);
    bytes[offset + 1] = static_cast<std::uint8_t>(value);
}

constexpr void Store32(std::span<std::uint8_t> bytes, std::size_t offset, std::uint32_t value) {
    Store16(bytes, offset, static_cast<std::uint16_t>(value >> 16));
    Store16(bytes, offset + 2, static_cast<std::uint16_t>(value));
}

constexpr void Store64(std::span<std::uint8_t> bytes, std::size_t offset, std::uint64_t value) {
    Store32(bytes, offset, static_cast<std::uint32_t>(value >> 32));
    Store32(bytes, offset + 4, static_cast<std::uint32_t>(value));
}

}  // namespace gencp
