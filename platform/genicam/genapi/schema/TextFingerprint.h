/* SPDX-License-Identifier: Apache-2.0 */
/*
 * By what a process knows a text again
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace GenApi {

/// Two texts that differ have two fingerprints, but for a chance of less than 2^-60 that nobody can better: it depends
/// on numbers that the process draws.
struct TextFingerprint {
    std::uint64_t first = 0;
    std::uint64_t second = 0;
    std::size_t size = 0;

    friend bool operator==(const TextFingerprint&, const TextFingerprint&) = default;
};

TextFingerprint FingerprintOf(std::string_view text) noexcept;

}  // namespace GenApi
