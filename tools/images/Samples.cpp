/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Samples: the single values of an image as Vanto::AppendPnm makes it
 */
#include "images/Samples.h"

#include <algorithm>
#include <charconv>

namespace tools {

namespace {

/// The number in the header's last line.
unsigned WhiteOf(const std::vector<std::uint8_t>& pnm, const PnmPixels& pixels) {
    const auto* const end = reinterpret_cast<const char*>(pixels.first) - 1;
    const char* begin = end;
    while (begin > reinterpret_cast<const char*>(pnm.data()) && begin[-1] != '\n')
        --begin;
    unsigned white = 0;
    std::from_chars(begin, end, white);
    return std::max(white, 1U);
}

}  // namespace

Samples::Samples(const std::vector<std::uint8_t>& pnm) : m_pixels(PixelsOf(pnm)), m_white(WhiteOf(pnm, m_pixels)) {}

}  // namespace tools
