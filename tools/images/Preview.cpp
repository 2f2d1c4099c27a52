/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A picture in the terminal
 */
#include "images/Preview.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "images/Samples.h"
#include "images/Sixel.h"
#include "output/Output.h"

namespace tools {

namespace {

constexpr std::size_t kUsualColumns = 64;
constexpr std::size_t kMostLines = 24;
// Of a character, where a terminal does not tell: no usual one has less.
constexpr std::size_t kCellWidth = 8;
constexpr std::size_t kCellHeight = 16;

struct Size {
    std::size_t width;
    std::size_t height;
};

/// The size of an image that fits a frame and is not larger than it was; both at least 1.
Size Fitted(Size image, Size frame) {
    const std::size_t width = std::min({image.width, frame.width, frame.height * image.width / image.height});
    return {std::max<std::size_t>(width, 1), std::max<std::size_t>(width * image.height / image.width, 1)};
}

/// An image seen from afar: of a smaller size, with 8 bits a colour.
class Sight {
public:
    Sight(const std::vector<std::uint8_t>& pnm, Size image, Size seen) : m_samples(pnm), m_image(image), m_seen(seen) {}

    std::array<std::uint8_t, 3> At(std::size_t column, std::size_t row) const {
        const std::size_t x = column * m_image.width / m_seen.width;
        const std::size_t y = row * m_image.height / m_seen.height;
        const std::size_t channels = m_samples.Channels();
        const std::size_t first = (y * m_image.width + x) * channels;
        std::array<std::uint8_t, 3> colour{};
        for (std::size_t channel = 0; channel < colour.size(); ++channel)
            colour[channel] = static_cast<std::uint8_t>(m_samples.At(first + (channels == 3 ? channel : 0)) * 255 /
                                                        m_samples.White());
        return colour;
    }

private:
    const Samples m_samples;
    const Size m_image;
    const Size m_seen;
};

std::string Cell(const std::array<std::uint8_t, 3>& upper, const std::array<std::uint8_t, 3>& lower, bool colours) {
    if (colours)
        return fmt::format("\033[38;2;{};{};{}m\033[48;2;{};{};{}m▀", upper[0], upper[1], upper[2], lower[0], lower[1],
                           lower[2]);
    constexpr std::string_view kLetters = " .:-=+*#%@";
    const unsigned brightness = (upper[0] + upper[1] + upper[2] + lower[0] + lower[1] + lower[2]) / 6U;
    return std::string(1, kLetters[brightness * (kLetters.size() - 1) / 255]);
}

void PrintCells(Output& output, const std::vector<std::uint8_t>& pnm, Size image, std::size_t columns) {
    const bool colours = output.HasColours();
    Size seen = Fitted(image, {columns, 2 * kMostLines});
    seen.height += seen.height % 2;
    const Sight sight(pnm, image, seen);
    for (std::size_t row = 0; row < seen.height; row += 2) {
        std::string text;
        for (std::size_t column = 0; column < seen.width; ++column)
            text += Cell(sight.At(column, row), sight.At(column, row + 1), colours);
        output.Line(colours ? text + "\033[0m" : text);
    }
}

void PrintSixels(Output& output, const std::vector<std::uint8_t>& pnm, Size image, std::size_t columns) {
    const Size seen = Fitted(image, {columns * kCellWidth, kMostLines * kCellHeight});
    const Sight sight(pnm, image, seen);
    std::vector<std::uint8_t> rgb;
    rgb.reserve(seen.width * seen.height * 3);
    for (std::size_t row = 0; row < seen.height; ++row)
        for (std::size_t column = 0; column < seen.width; ++column)
            for (const std::uint8_t value : sight.At(column, row))
                rgb.push_back(value);
    output.Line(SixelsOf(std::move(rgb), seen.width, seen.height));
}

}  // namespace

void PrintPreview(Output& output, const std::vector<std::uint8_t>& pnm, std::uint32_t width, std::uint32_t height) {
    const std::size_t columns = output.Width() > 0 ? static_cast<std::size_t>(output.Width()) : kUsualColumns;
    if (width == 0 || height == 0)
        return;
    output.ShowsSixels() ? PrintSixels(output, pnm, {width, height}, columns)
                         : PrintCells(output, pnm, {width, height}, columns);
}

}  // namespace tools
