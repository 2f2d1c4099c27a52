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

/// The rate whose member has this value, else null.
constexpr const BaudRate* FindBaudRate(std::uint32_t BaudRate::*member, std::int64_t value) noexcept {
    for (const BaudRate& rate : kBaudRates) {
        if (rate.*member == value)
            return &rate;
    }
    return nullptr;
}

/// The rate of exactly one flag, else null.
constexpr const BaudRate* FindBaudRateByFlag(std::uint32_t flag) noexcept {
    return FindBaudRate(&BaudRate::flag, flag);
}
/// The rate of so many bit/s, else null.
constexpr const BaudRate* FindBaudRateBySpeed(std::uint32_t bitsPerSecond) noexcept {
    return FindBaudRate(&BaudRate::bitsPerSecond, bitsPerSecond);
}
/// The rate of an entry value of ClSerialPortBaudRate, else null.
constexpr const BaudRate* FindBaudRateByEntryValue(std::int64_t entryValue) noexcept {
    return FindBaudRate(&BaudRate::entryValue, entryValue);
}

}  // namespace base
