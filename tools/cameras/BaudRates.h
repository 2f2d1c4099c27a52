/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The baud rates of a Camera Link serial line, and what to tell people about them
 */
#pragma once

#include <cstdint>
#include <string>

#include "base/BaudRates.h"

namespace tools {

using base::BaudRate;
using base::kBaudRates;

/// A camera that is switched on begins with it.
inline constexpr std::uint32_t kFirstBaudRate = 9600;

/// The rate of a flag in bit/s; 0 for a flag that is none.
constexpr std::uint32_t BaudRateOfFlag(std::uint32_t flag) noexcept {
    const BaudRate* const rate = base::FindBaudRateByFlag(flag);
    return rate != nullptr ? rate->bitsPerSecond : 0;
}

/// What to tell of a camera that a program left at a rate; \a device is a name that commands know it by.
std::string StrandedText(const std::string& camera, const std::string& device, std::uint32_t bitsPerSecond,
                         std::uint32_t restBitsPerSecond);

}  // namespace tools
