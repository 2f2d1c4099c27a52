/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Draws the frames of one grab
 */

#include "Picture.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <stdexcept>

#include "FrameMark.h"

namespace grabber {

namespace {

constexpr std::size_t kLongestPeriod = 1024;
constexpr std::uint8_t kGap = 0xA5;  // shows where bytes between lines get into a picture

std::size_t RoundUp(std::size_t value, std::size_t multiple) {
    return (value + multiple - 1) / multiple * multiple;
}

// One pixel: its brightness in every byte of a colour picture, else in as many little-endian bytes as it has.
void PutPixel(std::uint8_t* to, const Geometry& geometry, std::uint32_t brightness) {
    for (unsigned index = 0; index < geometry.bytesPerPixel; ++index) {
        const std::uint32_t value = geometry.bytesPerPixel == 3 ? brightness + 85 * index : brightness >> (8 * index);
        to[index] = static_cast<std::uint8_t>(value);
    }
}

std::size_t LinePitch(const Geometry& geometry, std::size_t multiple) {
    const std::size_t pitch = RoundUp(geometry.LineLength(), multiple);
    if (pitch > kLargestPicture / geometry.height)
        throw std::invalid_argument("The parameter 'Pitch' makes the pictures too large for the simulated grabber.");
    return pitch;
}

std::vector<std::uint8_t> MakeStrip(const Geometry& geometry, Pattern pattern, std::size_t period) {
    const std::size_t pixels = geometry.width + period;
    std::vector<std::uint8_t> strip(pixels * geometry.bytesPerPixel);
    if (pattern == Pattern::kBlack)
        return strip;
    std::minstd_rand random(1);
    const std::uint32_t range = std::uint32_t{1} << geometry.bits;
    const auto step = static_cast<std::uint32_t>(range / period);
    for (std::size_t pixel = 0; pixel < pixels; ++pixel) {
        const auto ramp = static_cast<std::uint32_t>(pixel % period) * step;
        const std::uint32_t noise = static_cast<std::uint32_t>(random() >> 8) % range;
        PutPixel(strip.data() + pixel * geometry.bytesPerPixel, geometry, pattern == Pattern::kNoise ? noise : ramp);
    }
    return strip;
}

}  // namespace

Picture::Picture(const Geometry& geometry, const Settings& settings)
    : m_geometry(geometry),
      m_pattern(settings.pattern),
      m_firstTag(settings.firstTag),
      m_linePitch(LinePitch(geometry, settings.pitch)),
      m_period(std::min(kLongestPeriod, std::size_t{1} << geometry.bits)),
      m_strip(MakeStrip(geometry, settings.pattern, m_period)),
      m_image(geometry.Size()) {
    if (m_linePitch != geometry.LineLength())
        m_spread.assign(m_linePitch * geometry.height, kGap);
}

/**
 * \brief Draw a frame and mark it with its number and checksum
 * \param[in] number The frame's, which moves the pattern and counts on from the first tag
 */
Vanto::FgFrame Picture::Draw(std::uint64_t number) {
    DrawPixels(number);
    WriteFrameMark(m_image, number);
    SpreadLines();
    Vanto::FgFrame frame{};
    frame.width = m_geometry.width;
    frame.lineCount = static_cast<std::int32_t>(m_geometry.height);
    frame.lineLength = m_geometry.LineLength();
    frame.linePitch = m_linePitch;
    frame.dataSize = m_image.size();
    frame.data = m_spread.empty() ? m_image.data() : m_spread.data();
    frame.frameTag = m_firstTag + static_cast<std::uint32_t>(number);
    return frame;
}

void Picture::DrawPixels(std::uint64_t number) noexcept {
    const std::size_t length = m_geometry.LineLength();
    for (std::uint32_t line = 0; line < m_geometry.height; ++line) {
        const std::size_t from = PixelOffset(number, line) * m_geometry.bytesPerPixel;
        std::memcpy(m_image.data() + line * length, m_strip.data() + from, length);
    }
}

void Picture::SpreadLines() noexcept {
    if (m_spread.empty())
        return;
    const std::size_t length = m_geometry.LineLength();
    for (std::uint32_t line = 0; line < m_geometry.height; ++line)
        std::memcpy(m_spread.data() + line * m_linePitch, m_image.data() + line * length, length);
}

std::size_t Picture::PixelOffset(std::uint64_t number, std::uint32_t line) const noexcept {
    switch (m_pattern) {
        case Pattern::kDiagonal:
            return (number + line) % m_period;
        case Pattern::kColumns:
            return number % m_period;
        case Pattern::kNoise:
            return (number * 40503 + std::uint64_t{line} * 2654435761U) % m_period;
        case Pattern::kBlack:
            break;
    }
    return 0;
}

}  // namespace grabber
