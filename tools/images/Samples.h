/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Samples: the single values of an image as Vanto::AppendPnm makes it
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "images/FrameStream.h"

namespace tools {

/// The image has to outlive it.
class Samples {
public:
    explicit Samples(const std::vector<std::uint8_t>& pnm);

    std::size_t Count() const noexcept { return m_pixels.size / (m_pixels.isWide ? 2 : 1); }
    std::size_t Channels() const noexcept { return m_pixels.isColour ? 3 : 1; }
    unsigned White() const noexcept { return m_white; }  ///< the greatest value that there may be
    unsigned At(std::size_t index) const {
        if (!m_pixels.isWide)
            return m_pixels.first[index];
        return static_cast<unsigned>(m_pixels.first[2 * index]) << 8 | m_pixels.first[2 * index + 1];
    }

private:
    const PnmPixels m_pixels;
    const unsigned m_white;
};

}  // namespace tools
