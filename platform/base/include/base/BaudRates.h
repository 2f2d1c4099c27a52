/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The baud rates of a Camera Link serial line, as the serial API and the cameras' descriptions number them
 */
#pragma once

#include <array>
#include <cstdint>

namespace base {

struct BaudRate {
    std::uint32_t flag;           ///< of the Camera Link serial API and of a GenCP camera's SBRM, one bit
    std::uint32_t bitsPerSecond;  ///< bit/s
    std::uint32_t entryValue;     ///< of the camera's enumeration ClSerialPortBaudRate
};

/// From the slowest to the fastest, each the flag above the one before. No rate has the entry value 16.
inline constexpr std::array<BaudRate, 8> kBaudRates{{{0x01, 9600, 15},
                                                     {0x02, 19200, 17},
                                                     {0x04, 38400, 18},
                                                     {0x08, 57600, 19},
                                                     {0x10, 115200, 20},
                                                     {0x20, 230400, 21},
                                                     {0x40, 460800, 22},
                                                     {0x80, 921600, 23}}};

}  // namespace base
