/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SampleRows: an image of any writable pixel type as rows of samples
 */
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "vanto/ImageWriter.h"

namespace Vanto {

/// How the samples of a pixel type lie in memory.
struct SampleLayout {
    unsigned channels;    ///< 1 grey or Bayer, 3 colour, 4 with alpha
    unsigned bits;        ///< that count in each sample
    unsigned storedBits;  ///< that each sample takes
    bool isBlueFirst;
};

std::optional<SampleLayout> FindSampleLayout(EPixelType pixelType) noexcept;

/// Reads an image row by row; samples are in the order red, green, blue, alpha. Reentrant.
class SampleRows {
public:
    explicit SampleRows(const ImageView& image);

    std::uint32_t Width() const noexcept { return m_image.width; }
    std::uint32_t Height() const noexcept { return m_image.height; }
    unsigned Channels() const noexcept { return m_layout.channels; }
    unsigned Bits() const noexcept { return m_layout.bits; }

    std::span<const std::uint16_t> Read(std::uint32_t row);

private:
    std::size_t RowBytes() const;
    std::uint16_t SampleAt(const std::uint8_t* row, std::size_t index) const noexcept;

    const ImageView m_image;
    const SampleLayout m_layout;
    std::size_t m_pitch = 0;
    std::vector<std::uint16_t> m_row;
};

}  // namespace Vanto
