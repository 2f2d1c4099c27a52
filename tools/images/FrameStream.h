/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameStream: frames on standard output, for other programs
 */
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "images/FrameFiles.h"

namespace tools {

class Output;

/// Writes frames one behind the other: their bytes as they are (raw), each as a PNM image (pnm), or as a stream of
/// YUV4MPEG2 (y4m), which players and encoders of videos read. Thread-bound.
class FrameStream {
public:
    /// \param[in] format "raw", "pnm" or "y4m"
    /// \param[in] rate Frames per second, for players
    FrameStream(Output& output, std::string format, double rate);

    /// False when nobody reads any more.
    bool Write(const FrameImage& image);
    std::uint64_t Count() const noexcept { return m_count; }

private:
    void WriteVideo(const std::vector<std::uint8_t>& pnm, std::uint32_t width, std::uint32_t height);

    Output& m_output;
    std::string m_format;
    double m_rate;
    std::uint64_t m_count = 0;
};

/// The pixels of an image in the notation of PNM, behind its header: one byte or two of grey, or three colours.
struct PnmPixels {
    const std::uint8_t* first;
    std::size_t size;
    bool isColour;
    bool isWide;  ///< two bytes a sample, big-endian
};
PnmPixels PixelsOf(const std::vector<std::uint8_t>& pnm);

}  // namespace tools
