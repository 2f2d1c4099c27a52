/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Camera Link baud-rate flags and the bits per second they stand for
 */

#include "BaudRates.h"

#include <array>
#include <bit>

namespace ClSerTty {

namespace {

constexpr std::array<std::uint32_t, 8> kRates{9600, 19200, 38400, 57600, 115200, 230400, 460800, 921600};

}  // namespace

/**
 * \brief Give the rate that a flag stands for
 * \param[in] flag One bit of kAllBaudRates
 * \return Bits per second; 0 for anything but exactly one known flag
 */
std::uint32_t BitsPerSecond(std::uint32_t flag) {
    if (!std::has_single_bit(flag) || (flag & kAllBaudRates) == 0) {
        return 0;
    }
    return kRates[static_cast<std::size_t>(std::countr_zero(flag))];
}

/**
 * \brief Give the flags of all rates that a line of limited speed can do
 * \param[in] bitsPerSecond The line's limit
 */
std::uint32_t BaudRatesUpTo(std::uint32_t bitsPerSecond) {
    std::uint32_t mask = 0;
    for (std::size_t bit = 0; bit < kRates.size(); ++bit) {
        if (kRates[bit] <= bitsPerSecond) {
            mask |= 1U << bit;
        }
    }
    return mask;
}

/**
 * \brief Give the flag of the highest rate in a mask
 * \return One flag, or 0 for a mask without any
 */
std::uint32_t FastestBaudRate(std::uint32_t mask) {
    return std::bit_floor(mask & kAllBaudRates);
}

}  // namespace ClSerTty
