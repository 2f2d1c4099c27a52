/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The baud rates of a Camera Link serial line: flag, speed, and entry value of the camera's enumeration
 */

#include "gencp/BaudRate.h"

#include <algorithm>

#include "gencp/Protocol.h"

namespace gencp {

namespace {

const BaudRate* Find(std::uint32_t BaudRate::*member, std::uint32_t value) noexcept {
    const auto found = std::ranges::find(kBaudRates, value, member);
    return found == kBaudRates.end() ? nullptr : &*found;
}

}  // namespace

/// The rate of exactly one flag, else null.
const BaudRate* FindBaudRateByFlag(std::uint32_t flag) noexcept {
    return Find(&BaudRate::flag, flag);
}

/// The rate of so many bit/s, else null.
const BaudRate* FindBaudRateBySpeed(std::uint32_t bitsPerSecond) noexcept {
    return Find(&BaudRate::bitsPerSecond, bitsPerSecond);
}

/// The rate of an entry value of ClSerialPortBaudRate, else null.
const BaudRate* FindBaudRateByEntryValue(std::uint32_t entryValue) noexcept {
    return Find(&BaudRate::entryValue, entryValue);
}

/**
 * \brief How long bytes take on the line
 * \param[in] bytes Number of bytes, start and stop bit are added
 * \param[in] bitsPerSecond Greater than 0
 */
std::chrono::nanoseconds TransferTime(std::size_t bytes, std::uint32_t bitsPerSecond) noexcept {
    constexpr std::uint64_t kNanosecondsPerSecond = 1'000'000'000;
    const std::uint64_t bits = static_cast<std::uint64_t>(bytes) * kBitsPerByte;
    return std::chrono::nanoseconds((bits * kNanosecondsPerSecond + bitsPerSecond - 1) / bitsPerSecond);
}

}  // namespace gencp
