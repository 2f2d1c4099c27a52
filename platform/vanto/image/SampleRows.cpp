/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SampleRows: an image of any writable pixel type as rows of samples
 */

#include "image/SampleRows.h"

#include <string_view>
#include <utility>

#include "Base/GCException.h"
#include "vanto/PixelTypeMapper.h"

namespace Vanto {

namespace {

// Digits at the start of a text, or 0.
unsigned LeadingNumber(std::string_view& text) {
    unsigned number = 0;
    while (!text.empty() && text.front() >= '0' && text.front() <= '9') {
        number = number * 10 + static_cast<unsigned>(text.front() - '0');
        text.remove_prefix(1);
    }
    return number;
}

SampleLayout LayoutOrThrow(EPixelType pixelType) {
    if (const auto layout = FindSampleLayout(pixelType))
        return *layout;
    throw INVALID_ARGUMENT_EXCEPTION("Images of pixel type %s can only be written raw.",
                                     CPixelTypeMapper::GetNameByPixelType(pixelType));
}

}  // namespace

/**
 * \brief The layout of a pixel type, read from its PFNC name: components, bits, and "p" when bits are packed
 * \return Nothing for types whose samples are not laid out so simply
 */
std::optional<SampleLayout> FindSampleLayout(EPixelType pixelType) noexcept {
    struct Components {
        std::string_view prefix;
        unsigned channels;
        bool isBlueFirst;
    };
    static constexpr Components kComponents[] = {
        {"Mono", 1, false}, {"BayerGR", 1, false}, {"BayerRG", 1, false}, {"BayerGB", 1, false}, {"BayerBG", 1, false},
        {"RGBa", 4, false}, {"BGRa", 4, true},     {"RGB", 3, false},     {"BGR", 3, true},
    };
    std::string_view name = CPixelTypeMapper::GetNameByPixelType(pixelType);
    for (const Components& known : kComponents) {
        if (!name.starts_with(known.prefix))
            continue;
        name.remove_prefix(known.prefix.size());
        const unsigned bits = LeadingNumber(name);
        const bool isPacked = name == "p";
        // RGB565p has three widths in one; signed and planar types have other suffixes.
        if (bits == 0 || bits > 16 || (!name.empty() && !isPacked))
            return std::nullopt;
        const unsigned unpackedBits = bits > 8 ? 16u : 8u;
        return SampleLayout{known.channels, bits, isPacked ? bits : unpackedBits, known.isBlueFirst};
    }
    return std::nullopt;
}

/**
 * \brief Look at an image
 * \throw InvalidArgumentException The pixel type has no simple samples, or the image has fewer bytes than its size says
 */
SampleRows::SampleRows(const ImageView& image)
    : m_image(image), m_layout(LayoutOrThrow(image.pixelType)), m_pitch(image.pitch) {
    if (image.data == nullptr || image.width == 0 || image.height == 0)
        throw INVALID_ARGUMENT_EXCEPTION("There is no image to write: %u x %u pixels.", image.width, image.height);
    if (m_pitch == 0)
        m_pitch = RowBytes();
    // Divided instead of multiplied, as the product may not fit.
    if (m_pitch < RowBytes() || image.size < RowBytes() || (image.size - RowBytes()) / m_pitch < image.height - 1) {
        throw INVALID_ARGUMENT_EXCEPTION("The image of %u x %u pixels has only %u bytes.", image.width, image.height,
                                         image.size);
    }
    m_row.resize(std::size_t{image.width} * m_layout.channels);
}

std::size_t SampleRows::RowBytes() const {
    return (std::size_t{m_image.width} * m_layout.channels * m_layout.storedBits + 7) / 8;
}

/**
 * \brief The samples of one row
 * \param[in] row From 0, below Height()
 * \return Width() times Channels() samples, valid until the next call
 */
std::span<const std::uint16_t> SampleRows::Read(std::uint32_t row) {
    const auto* const source = static_cast<const std::uint8_t*>(m_image.data) + row * m_pitch;
    for (std::size_t i = 0; i < m_row.size(); ++i)
        m_row[i] = SampleAt(source, i);
    if (m_layout.isBlueFirst) {
        for (std::size_t i = 0; i < m_row.size(); i += m_layout.channels)
            std::swap(m_row[i], m_row[i + 2]);
    }
    return m_row;
}

// PFNC: samples of more than 8 bits are little-endian; packed samples follow each other from the lowest bit on.
std::uint16_t SampleRows::SampleAt(const std::uint8_t* row, std::size_t index) const noexcept {
    const std::size_t firstBit = index * m_layout.storedBits;
    const std::size_t lastByte = (firstBit + m_layout.storedBits - 1) / 8;
    std::uint32_t value = 0;
    for (std::size_t byte = lastByte + 1; byte-- > firstBit / 8;)
        value = value << 8 | row[byte];
    return static_cast<std::uint16_t>((value >> (firstBit % 8)) & ((1u << m_layout.bits) - 1));
}

}  // namespace Vanto
