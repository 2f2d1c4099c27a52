/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The baud rates of a Camera Link serial line, as the serial API and the cameras' descriptions number them
 */
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

namespace tools {

struct BaudRate {
    std::uint32_t flag;           ///< of the Camera Link serial API
    std::uint32_t bitsPerSecond;  ///< bit/s
    std::int64_t entryValue;      ///< of the feature ClSerialPortBaudRate
};

/// From the slowest to the fastest. No rate has the entry value 16.
inline constexpr std::array<BaudRate, 8> kBaudRates{{{0x01, 9600, 15},
                                                     {0x02, 19200, 17},
                                                     {0x04, 38400, 18},
                                                     {0x08, 57600, 19},
                                                     {0x10, 115200, 20},
                                                     {0x20, 230400, 21},
                                                     {0x40, 460800, 22},
                                                     {0x80, 921600, 23}}};

/// A camera that is switched on begins with it.
inline constexpr std::uint32_t kFirstBaudRate = 9600;

/// The rate of a flag in bit/s; 0 for a flag that is none.
constexpr std::uint32_t BaudRateOfFlag(std::uint32_t flag) noexcept {
    const auto rate = std::ranges::find(kBaudRates, flag, &BaudRate::flag);
    return rate != kBaudRates.end() ? rate->bitsPerSecond : 0;
}

/// What to tell of a camera that a program left at a rate; \a device is a name that commands know it by.
std::string StrandedText(const std::string& camera, const std::string& device, std::uint32_t bitsPerSecond,
                         std::uint32_t restBitsPerSecond);

}  // namespace tools
