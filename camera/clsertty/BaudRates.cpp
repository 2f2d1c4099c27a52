/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Camera Link baud-rate flags and the bits per second they stand for
 */

#include "BaudRates.h"

#include <bit>

#include "base/BaudRates.h"

namespace ClSerTty {

/**
 * \brief Give the rate that a flag stands for
 * \param[in] flag One bit of kAllBaudRates
 * \return Bits per second; 0 for anything but exactly one known flag
 */
std::uint32_t BitsPerSecond(std::uint32_t flag) {
    const base::BaudRate* const rate = base::FindBaudRateByFlag(flag);
    return rate != nullptr ? rate->bitsPerSecond : 0;
}

/**
 * \brief Give the flags of all rates that a line of limited speed can do
 * \param[in] bitsPerSecond The line's limit
 */
std::uint32_t BaudRatesUpTo(std::uint32_t bitsPerSecond) {
    std::uint32_t mask = 0;
    for (const base::BaudRate& rate : base::kBaudRates) {
        if (rate.bitsPerSecond <= bitsPerSecond)
            mask |= rate.flag;
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
