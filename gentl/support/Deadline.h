/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Time-outs of the interface as moments
 */
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace gentl {

/// How long an update that a feature's command asks for may take, in ms.
inline constexpr std::uint64_t kFeatureUpdatePatience = 1000;

/// So many milliseconds from now; what is longer than a year, GENTL_INFINITE included, is a year.
inline std::chrono::steady_clock::time_point DeadlineAfter(std::uint64_t timeout) {
    constexpr std::uint64_t kYear = 1000ULL * 3600 * 24 * 365;
    return std::chrono::steady_clock::now() + std::chrono::milliseconds(std::min(timeout, kYear));
}

}  // namespace gentl
