/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Descriptions in zip archives
 */
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace base {

/// Whatever keeps an archive from being unpacked; says what, as the end of a sentence.
class ZipError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What is unpacked at most. Archives come from files and cameras that nobody vouches for.
constexpr std::uint64_t kLargestUnzipped = std::uint64_t{64} << 20;

bool IsZip(std::string_view bytes) noexcept;
std::string UnzipDescription(std::string_view archive);

}  // namespace base
