/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts of the bootstrap registers, as tokens of a DeviceID
 */
#pragma once

#include <cstdint>
#include <string>

#include "gencp/ByteOrder.h"

namespace marlow {

enum class TextEncoding { kAscii, kUtf8, kUtf16 };

TextEncoding EncodingOf(std::uint64_t deviceCapability) noexcept;
std::size_t TerminatedLength(gencp::ByteView bytes, TextEncoding encoding) noexcept;
std::string DecodeToken(gencp::ByteView bytes, TextEncoding encoding);

}  // namespace marlow
