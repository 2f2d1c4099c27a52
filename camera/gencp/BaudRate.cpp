/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How long bytes take at a baud rate
 */

#include "gencp/BaudRate.h"

#include "gencp/Protocol.h"

namespace gencp {

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
