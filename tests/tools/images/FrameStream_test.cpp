/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of frames written one behind the other for other programs
 */
#include "images/FrameStream.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>

#include "error/ExitCode.h"
#include "output/Output.h"

namespace {

using namespace tools;

using Bytes = std::vector<std::uint8_t>;

class FrameStreams : public testing::Test {
protected:
    FrameImage Image(const Bytes& pixels, Vanto::EPixelType type, std::uint32_t width, std::uint32_t height = 1) {
        m_pixels = pixels;
        FrameImage image;
        image.view = {m_pixels.data(), m_pixels.size(), type, width, height, 0};
        return image;
    }
    FrameImage Grey() { return Image({1, 2, 3, 4, 5, 6}, Vanto::PixelType_Mono8, 3, 2); }

    std::string Written() const {
        std::rewind(m_file.get());
        std::string text(1000, '\0');
        text.resize(std::fread(text.data(), 1, text.size(), m_file.get()));
        return text;
    }

    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> m_file{std::tmpfile(), &std::fclose};
    Output m_output{m_file.get(), m_file.get()};

private:
    Bytes m_pixels;
};

TEST_F(FrameStreams, AreBytesAsTheyAre) {
    FrameStream stream(m_output, "raw", 30);
    EXPECT_TRUE(stream.Write(Grey()));
    FrameImage cut = Grey();
    cut.isCut = true;
    EXPECT_TRUE(stream.Write(cut));
    EXPECT_EQ(stream.Count(), 2U);
    EXPECT_EQ(Written(), "\1\2\3\4\5\6\1\2\3\4\5\6");
}

TEST_F(FrameStreams, AreImagesOneBehindTheOther) {
    FrameStream stream(m_output, "pnm", 30);
    EXPECT_TRUE(stream.Write(Grey()));
    EXPECT_TRUE(stream.Write(Grey()));
    EXPECT_EQ(Written(), "P5\n3 2\n255\n\1\2\3\4\5\6P5\n3 2\n255\n\1\2\3\4\5\6");
}

TEST_F(FrameStreams, LeaveOutImagesWithMissingLines) {
    FrameStream stream(m_output, "pnm", 30);
    FrameImage cut = Grey();
    cut.isCut = true;
    EXPECT_TRUE(stream.Write(cut));
    EXPECT_EQ(stream.Count(), 0U);
    EXPECT_EQ(Written(), "");
}

TEST_F(FrameStreams, AreVideosWithOneHeader) {
    FrameStream stream(m_output, "y4m", 12.5);
    EXPECT_TRUE(stream.Write(Grey()));
    EXPECT_TRUE(stream.Write(Grey()));
    EXPECT_EQ(Written(), "YUV4MPEG2 W3 H2 F12500:1000 Ip A1:1 Cmono\nFRAME\n\1\2\3\4\5\6FRAME\n\1\2\3\4\5\6");
}

// What BT.601 says of white, black and the three colours: first all brightness, then both differences.
TEST_F(FrameStreams, HaveColoursAsBrightnessAndDifferences) {
    FrameStream stream(m_output, "y4m", 0);
    const Bytes pixels{255, 255, 255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255};
    EXPECT_TRUE(stream.Write(Image(pixels, Vanto::PixelType_RGB8, 5)));
    const Bytes planes{235, 16, 81, 145, 41, 128, 128, 90, 54, 240, 128, 128, 240, 34, 110};
    EXPECT_EQ(Written(), "YUV4MPEG2 W5 H1 F1:1000 Ip A1:1 C444\nFRAME\n" + std::string(planes.begin(), planes.end()));
}

TEST_F(FrameStreams, RefuseVideosOfMoreThanEightBits) {
    FrameStream stream(m_output, "y4m", 30);
    EXPECT_THROW(stream.Write(Image({1, 0, 2, 0}, Vanto::PixelType_Mono12, 2)), ToolError);
    EXPECT_EQ(Written(), "");
}

}  // namespace
