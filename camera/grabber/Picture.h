/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Draws the frames of one grab
 */
#pragma once

#include <vector>

#include "Geometry.h"
#include "Settings.h"
#include "vanto/FgPlugin.h"

namespace grabber {

/// Draws frame after frame into the same memory. Reentrant.
class Picture {
public:
    /// Throws std::invalid_argument when the pitch makes the frames larger than kLargestPicture.
    Picture(const Geometry& geometry, const Settings& settings);

    /// The frame stands until the next one is drawn.
    Vanto::FgFrame Draw(std::uint64_t number);

private:
    void DrawPixels(std::uint64_t number) noexcept;
    void SpreadLines() noexcept;
    std::size_t PixelOffset(std::uint64_t number, std::uint32_t line) const noexcept;

    const Geometry m_geometry;
    const Pattern m_pattern;
    const std::uint32_t m_firstTag;
    const std::size_t m_linePitch;
    std::size_t m_period = 0;           // pixels after which the pattern begins again
    std::vector<std::uint8_t> m_strip;  // of which each line is a part
    std::vector<std::uint8_t> m_image;
    std::vector<std::uint8_t> m_spread;  // the image with gaps between the lines; empty when there are none
};

}  // namespace grabber
