/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameStream: frames on standard output, for other programs
 */
#include "images/FrameStream.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "error/ExitCode.h"
#include "output/Output.h"

namespace tools {

namespace {

std::string_view TextOf(const std::vector<std::uint8_t>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::uint8_t Sample(double value) {
    return static_cast<std::uint8_t>(std::clamp(std::lround(value), 0L, 255L));
}

/// Red, green and blue as three planes of brightness and colour differences: ITU-R BT.601, 16 to 235 and 16 to 240.
std::vector<std::uint8_t> PlanesOf(const PnmPixels& pixels) {
    const std::size_t count = pixels.size / 3;
    std::vector<std::uint8_t> planes(pixels.size);
    for (std::size_t index = 0; index < count; ++index) {
        const double red = pixels.first[3 * index] / 255.0;
        const double green = pixels.first[3 * index + 1] / 255.0;
        const double blue = pixels.first[3 * index + 2] / 255.0;
        planes[index] = Sample(16.0 + 65.481 * red + 128.553 * green + 24.966 * blue);
        planes[count + index] = Sample(128.0 - 37.797 * red - 74.203 * green + 112.0 * blue);
        planes[2 * count + index] = Sample(128.0 + 112.0 * red - 93.786 * green - 18.214 * blue);
    }
    return planes;
}

}  // namespace

PnmPixels PixelsOf(const std::vector<std::uint8_t>& pnm) {
    constexpr int kHeaderLines = 3;  // P5 or P6, the size, the greatest value
    const std::string_view text = TextOf(pnm);
    std::size_t end = 0;
    for (int line = 0; line < kHeaderLines; ++line)
        end = text.find('\n', end) + 1;
    const bool isWide = !text.substr(0, end).ends_with("\n255\n");
    return {pnm.data() + end, pnm.size() - end, text.starts_with("P6"), isWide};
}

FrameStream::FrameStream(Output& output, std::string format, double rate)
    : m_output(output), m_format(std::move(format)), m_rate(rate) {}

bool FrameStream::Write(const FrameImage& image) {
    const Vanto::ImageView& view = image.view;
    if (m_format == "raw") {
        m_output.Print({static_cast<const char*>(view.data), view.size});
    } else if (image.isCut) {
        return true;  // no image with missing lines
    } else {
        std::vector<std::uint8_t> pnm;
        Vanto::AppendPnm(pnm, view);
        if (m_format == "y4m")
            WriteVideo(pnm, view.width, view.height);
        else
            m_output.Print(TextOf(pnm));
    }
    ++m_count;
    return m_output.Flush();
}

void FrameStream::WriteVideo(const std::vector<std::uint8_t>& pnm, std::uint32_t width, std::uint32_t height) {
    const PnmPixels pixels = PixelsOf(pnm);
    if (pixels.isWide)
        throw ToolError("a y4m stream has eight bits a sample",
                        "--set PixelFormat=Mono8 takes such images; --format pnm has up to sixteen.");
    constexpr double kMillis = 1000.0;
    if (m_count == 0)
        m_output.Print(fmt::format("YUV4MPEG2 W{} H{} F{}:1000 Ip A1:1 {}\n", width, height,
                                   std::max(std::lround(m_rate * kMillis), 1L), pixels.isColour ? "C444" : "Cmono"));
    m_output.Print("FRAME\n");
    if (pixels.isColour)
        m_output.Print(TextOf(PlanesOf(pixels)));
    else
        m_output.Print({reinterpret_cast<const char*>(pixels.first), pixels.size});
}

}  // namespace tools
