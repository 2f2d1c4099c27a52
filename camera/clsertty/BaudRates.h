/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Camera Link baud-rate flags and the bits per second they stand for
 */
#pragma once

#include <cstdint>

namespace ClSerTty {

/// The flags of the eight rates from 9600 to 921600 bits per second.
inline constexpr std::uint32_t kAllBaudRates = 0xFF;

std::uint32_t BitsPerSecond(std::uint32_t flag);
std::uint32_t BaudRatesUpTo(std::uint32_t bitsPerSecond);
std::uint32_t FastestBaudRate(std::uint32_t mask);

}  // namespace ClSerTty
