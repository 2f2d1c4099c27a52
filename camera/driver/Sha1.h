/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SHA-1, as the manifest of a GenCP camera gives it for a file
 */
#pragma once

#include <array>

#include "gencp/ByteOrder.h"

namespace marlow {

using Sha1Digest = std::array<std::uint8_t, 20>;

Sha1Digest Sha1(gencp::ByteView bytes);

}  // namespace marlow
