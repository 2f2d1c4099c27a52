/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Drawn frames
 */

#include "Picture.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>

#include "FrameMark.h"

namespace {

using grabber::Geometry;
using grabber::Pattern;
using grabber::Picture;
using grabber::ReadFrameMark;
using grabber::Settings;

constexpr Geometry kMono8{.width = 40, .height = 8, .bytesPerPixel = 1, .bits = 8};

std::vector<std::uint8_t> PixelsOf(const Vanto::FgFrame& frame) {
    std::vector<std::uint8_t> pixels;
    const auto* line = static_cast<const std::uint8_t*>(frame.data);
    for (std::int32_t count = 0; count < frame.lineCount; ++count, line += frame.linePitch)
        pixels.insert(pixels.end(), line, line + frame.lineLength);
    return pixels;
}

TEST(Picture, DescribesItself) {
    Settings settings;
    settings.firstTag = 100;
    Picture picture(kMono8, settings);
    const Vanto::FgFrame frame = picture.Draw(7);
    EXPECT_EQ(frame.width, 40U);
    EXPECT_EQ(frame.lineCount, 8);
    EXPECT_EQ(frame.lineLength, 40U);
    EXPECT_EQ(frame.linePitch, 40U);
    EXPECT_EQ(frame.dataSize, 320U);
    EXPECT_EQ(frame.frameTag, 107U);
}

TEST(Picture, PutsLinesAtMultiplesOfThePitch) {
    Settings settings;
    settings.pitch = 64;
    Picture picture(kMono8, settings);
    const Vanto::FgFrame frame = picture.Draw(7);
    EXPECT_EQ(frame.linePitch, 64U);
    EXPECT_EQ(frame.dataSize, 320U);
    EXPECT_EQ(ReadFrameMark(PixelsOf(frame)), 7U);
}

TEST(Picture, RefusesAPitchThatMakesItTooLarge) {
    Settings settings;
    settings.pitch = 1 << 20;
    const Geometry tall{.width = 40, .height = 2049, .bytesPerPixel = 1, .bits = 8};
    EXPECT_THROW(Picture(tall, settings), std::invalid_argument);
}

TEST(Picture, CarriesItsMarkInEveryFormatAndPattern) {
    for (const auto& [bytes, bits] : {std::pair{1U, 8U}, std::pair{2U, 10U}, std::pair{2U, 16U}, std::pair{3U, 8U}}) {
        for (const Pattern pattern : {Pattern::kDiagonal, Pattern::kColumns, Pattern::kNoise, Pattern::kBlack}) {
            Settings settings;
            settings.pattern = pattern;
            Picture picture({.width = 33, .height = 5, .bytesPerPixel = bytes, .bits = bits}, settings);
            for (std::uint64_t number = 0; number < 3; ++number)
                EXPECT_EQ(ReadFrameMark(PixelsOf(picture.Draw(number))), number);
        }
    }
}

TEST(Picture, ChangesFromFrameToFrame) {
    for (const Pattern pattern : {Pattern::kDiagonal, Pattern::kColumns, Pattern::kNoise}) {
        Settings settings;
        settings.pattern = pattern;
        Picture picture(kMono8, settings);
        const std::vector<std::uint8_t> first = PixelsOf(picture.Draw(0));
        const std::vector<std::uint8_t> second = PixelsOf(picture.Draw(1));
        EXPECT_NE(std::vector(first.begin() + 16, first.end()), std::vector(second.begin() + 16, second.end()));
    }
}

TEST(Picture, UsesTheWholeRangeOfAPixel) {
    Picture picture({.width = 2048, .height = 2, .bytesPerPixel = 2, .bits = 12}, Settings());
    const std::vector<std::uint8_t> pixels = PixelsOf(picture.Draw(0));
    unsigned highest = 0;
    for (std::size_t at = 16; at < pixels.size(); at += 2)
        highest = std::max(highest, pixels[at] + 256U * pixels[at + 1]);
    EXPECT_GE(highest, 4092U);
    EXPECT_LE(highest, 4095U);
}

TEST(Picture, MayBeSmallerThanAMark) {
    Picture picture({.width = 1, .height = 1, .bytesPerPixel = 1, .bits = 8}, Settings());
    EXPECT_EQ(picture.Draw(0).dataSize, 1U);
}

// So small that a frame has no mark: every byte is of the picture.
constexpr Geometry kUnmarked{.width = 5, .height = 3, .bytesPerPixel = 1, .bits = 8};

std::vector<std::uint8_t> Drawn(const Geometry& geometry, Pattern pattern, std::uint64_t number) {
    Settings settings;
    settings.pattern = pattern;
    Picture picture(geometry, settings);
    return PixelsOf(picture.Draw(number));
}

TEST(Picture, IsARampThatMovesWithLineAndNumber) {
    using Pixels = std::vector<std::uint8_t>;
    EXPECT_EQ(Drawn(kUnmarked, Pattern::kDiagonal, 0), (Pixels{0, 1, 2, 3, 4, 1, 2, 3, 4, 5, 2, 3, 4, 5, 6}));
    EXPECT_EQ(Drawn(kUnmarked, Pattern::kDiagonal, 254), (Pixels{254, 255, 0, 1, 2, 255, 0, 1, 2, 3, 0, 1, 2, 3, 4}));
    EXPECT_EQ(Drawn(kUnmarked, Pattern::kColumns, 7), (Pixels{7, 8, 9, 10, 11, 7, 8, 9, 10, 11, 7, 8, 9, 10, 11}));
    EXPECT_EQ(Drawn(kUnmarked, Pattern::kColumns, 256), Drawn(kUnmarked, Pattern::kColumns, 0));
    EXPECT_EQ(Drawn(kUnmarked, Pattern::kBlack, 7), Pixels(15));
}

TEST(Picture, HasTheSameNoiseEachTime) {
    std::minstd_rand random(1);
    std::vector<std::uint8_t> noise(256);
    for (std::uint8_t& pixel : noise)
        pixel = static_cast<std::uint8_t>(random() >> 8);
    std::vector<std::uint8_t> pixels;
    for (const std::size_t offset : {3 * 40503U, 3 * 40503U + 2654435761U, 3 * 40503U + 2 * 2654435761U}) {
        for (std::size_t column = 0; column < kUnmarked.width; ++column)
            pixels.push_back(noise[offset % 256 + column]);
    }
    EXPECT_EQ(Drawn(kUnmarked, Pattern::kNoise, 3), pixels);
}

TEST(Picture, PutsTheLowByteOfAPixelFirstAndColoursApart) {
    using Pixels = std::vector<std::uint8_t>;
    EXPECT_EQ(Drawn({.width = 3, .height = 1, .bytesPerPixel = 2, .bits = 12}, Pattern::kColumns, 100),
              (Pixels{0x90, 0x01, 0x94, 0x01, 0x98, 0x01}));
    EXPECT_EQ(Drawn({.width = 2, .height = 1, .bytesPerPixel = 3, .bits = 8}, Pattern::kColumns, 10),
              (Pixels{10, 95, 180, 11, 96, 181}));
}

TEST(Picture, MovesThroughAllValuesOfItsLongestPeriod) {
    const Geometry deep{.width = 3, .height = 1, .bytesPerPixel = 2, .bits = 16};
    EXPECT_EQ(Drawn(deep, Pattern::kColumns, 1024), Drawn(deep, Pattern::kColumns, 0));
    EXPECT_EQ(Drawn(deep, Pattern::kColumns, 1023), (std::vector<std::uint8_t>{0xC0, 0xFF, 0, 0, 0x40, 0}));
}

TEST(Picture, ShowsWhatLiesBetweenItsLines) {
    Settings settings;
    settings.pitch = 8;
    Picture picture(kUnmarked, settings);
    const auto* bytes = static_cast<const std::uint8_t*>(picture.Draw(0).data);
    EXPECT_EQ(std::vector<std::uint8_t>(bytes, bytes + 16),
              (std::vector<std::uint8_t>{0, 1, 2, 3, 4, 0xA5, 0xA5, 0xA5, 1, 2, 3, 4, 5, 0xA5, 0xA5, 0xA5}));
}

}  // namespace
