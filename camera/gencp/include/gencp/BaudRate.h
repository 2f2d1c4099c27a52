/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The baud rates of a Camera Link serial line, and what they mean to a camera and its driver
 */
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

#include "base/BaudRates.h"
#include "gencp/Registers.h"

namespace gencp {

using base::BaudRate;
using base::FindBaudRateByEntryValue;
using base::FindBaudRateByFlag;
using base::FindBaudRateBySpeed;
using base::kBaudRates;

inline constexpr std::uint32_t kAllBaudRateFlags = 0xFF;
inline constexpr BaudRate kStartBaudRate = kBaudRates[0];  ///< a line starts with it

/// The driver's own register with the entry value of the present rate; it is never asked of the camera.
inline constexpr Register kBaudRateRegister{0x4D42445200000000, 4};

std::chrono::nanoseconds TransferTime(std::size_t bytes, std::uint32_t bitsPerSecond) noexcept;

}  // namespace gencp
