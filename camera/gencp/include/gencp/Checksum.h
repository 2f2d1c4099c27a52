/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The checksum of GenCP packets on a serial link
 */
#pragma once

#include "gencp/ByteOrder.h"

namespace gencp {

std::uint16_t Checksum(ByteView bytes) noexcept;
bool IsChecksumOf(ByteView bytes, std::uint16_t received) noexcept;

}  // namespace gencp
