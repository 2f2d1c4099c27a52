/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The baud rates of a Camera Link serial line: flag, speed, and entry value of the camera's enumeration
 */
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>

#include "gencp/Registers.h"

namespace gencp {

struct BaudRate {
    std::uint32_t flag;           ///< of the Camera Link serial API and of the SBRM, one bit
    std::uint32_t bitsPerSecond;  ///< bit/s
    std::uint32_t entryValue;     ///< of the camera's enumeration ClSerialPortBaudRate
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

inline constexpr std::uint32_t kAllBaudRateFlags = 0xFF;
inline constexpr BaudRate kStartBaudRate = kBaudRates[0];  ///< a line starts with it

/// The driver's own register with the entry value of the present rate; it is never asked of the camera.
inline constexpr Register kBaudRateRegister{0x4D42445200000000, 4};

const BaudRate* FindBaudRateByFlag(std::uint32_t flag) noexcept;
const BaudRate* FindBaudRateBySpeed(std::uint32_t bitsPerSecond) noexcept;
const BaudRate* FindBaudRateByEntryValue(std::uint32_t entryValue) noexcept;

std::chrono::nanoseconds TransferTime(std::size_t bytes, std::uint32_t bitsPerSecond) noexcept;

}  // namespace gencp
