/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameLook: what there is to be seen in an image
 */
#include "images/FrameLook.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "images/FrameStream.h"
#include "output/Output.h"

namespace tools {

namespace {

/// The greatest value that the header allows: the number in its last line.
unsigned WhiteOf(const std::vector<std::uint8_t>& pnm, const PnmPixels& pixels) {
    const auto* const end = reinterpret_cast<const char*>(pixels.first) - 1;
    const char* begin = end;
    while (begin > reinterpret_cast<const char*>(pnm.data()) && begin[-1] != '\n')
        --begin;
    unsigned white = 0;
    std::from_chars(begin, end, white);
    return std::max(white, 1U);
}

unsigned SampleAt(const PnmPixels& pixels, std::size_t index) {
    if (!pixels.isWide)
        return pixels.first[index];
    return static_cast<unsigned>(pixels.first[2 * index]) << 8 | pixels.first[2 * index + 1];
}

/// An image of at most 8 bits a sample, looked at from afar.
class Sight {
public:
    Sight(const std::vector<std::uint8_t>& pnm, std::uint32_t width)
        : m_pixels(PixelsOf(pnm)), m_white(WhiteOf(pnm, m_pixels)), m_width(width) {}

    std::array<unsigned, 3> At(std::size_t column, std::size_t row) const {
        const std::size_t channels = m_pixels.isColour ? 3 : 1;
        const std::size_t first = (row * m_width + column) * channels;
        std::array<unsigned, 3> colour{};
        for (std::size_t channel = 0; channel < colour.size(); ++channel)
            colour[channel] = SampleAt(m_pixels, first + (channels == 3 ? channel : 0)) * 255 / m_white;
        return colour;
    }

private:
    PnmPixels m_pixels;
    unsigned m_white;
    std::size_t m_width;
};

std::string Cell(const std::array<unsigned, 3>& upper, const std::array<unsigned, 3>& lower, bool colours) {
    if (colours)
        return fmt::format("\033[38;2;{};{};{}m\033[48;2;{};{};{}m▀", upper[0], upper[1], upper[2], lower[0], lower[1],
                           lower[2]);
    constexpr std::string_view kLetters = " .:-=+*#%@";
    const unsigned brightness = (upper[0] + upper[1] + upper[2] + lower[0] + lower[1] + lower[2]) / 6;
    return std::string(1, kLetters[brightness * (kLetters.size() - 1) / 255]);
}

}  // namespace

SampleStatistics StatisticsOf(const std::vector<std::uint8_t>& pnm) {
    const PnmPixels pixels = PixelsOf(pnm);
    const unsigned white = WhiteOf(pnm, pixels);
    const std::size_t count = pixels.size / (pixels.isWide ? 2 : 1);
    SampleStatistics statistics{.least = std::numeric_limits<unsigned>::max()};
    double sum = 0.0;
    std::size_t saturated = 0;
    for (std::size_t index = 0; index < count; ++index) {
        const unsigned sample = SampleAt(pixels, index);
        statistics.least = std::min(statistics.least, sample);
        statistics.most = std::max(statistics.most, sample);
        saturated += sample >= white ? 1 : 0;
        sum += sample;
    }
    statistics.mean = sum / static_cast<double>(std::max<std::size_t>(count, 1));
    statistics.saturated = static_cast<double>(saturated) / static_cast<double>(std::max<std::size_t>(count, 1));
    return statistics;
}

std::string StatisticsText(const SampleStatistics& statistics) {
    return fmt::format("min {}, mean {:.1f}, max {}, {:.1f}% saturated", statistics.least, statistics.mean,
                       statistics.most, statistics.saturated * 100.0);
}

void PrintPreview(Output& output, const std::vector<std::uint8_t>& pnm, std::uint32_t width, std::uint32_t height) {
    constexpr int kUsualColumns = 64;
    constexpr std::size_t kMostLines = 24;
    const bool colours = !output.Styled(Style::kBold, "x").starts_with("x");
    std::size_t columns = static_cast<std::size_t>(output.Width() > 0 ? output.Width() : kUsualColumns);
    columns = std::min<std::size_t>({columns, width, 2 * kMostLines * width / std::max(height, 1U)});
    columns = std::max<std::size_t>(columns, 1);
    const std::size_t lines = std::max<std::size_t>(columns * height / width / 2, 1);
    const Sight sight(pnm, width);
    for (std::size_t line = 0; line < lines; ++line) {
        std::string text;
        for (std::size_t column = 0; column < columns; ++column) {
            const std::size_t x = column * width / columns;
            text += Cell(sight.At(x, 2 * line * height / (2 * lines)),
                         sight.At(x, (2 * line + 1) * height / (2 * lines)), colours);
        }
        output.Line(colours ? text + "\033[0m" : text);
    }
}

}  // namespace tools
