/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what is told and drawn of an image
 */
#include "images/FrameLook.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "images/FrameStream.h"
#include "images/Preview.h"
#include "output/Output.h"

namespace {

using namespace tools;

std::vector<std::uint8_t> Bytes(const std::string& text) {
    return {text.begin(), text.end()};
}

TEST(StatisticsOf, CountsBytes) {
    const SampleStatistics statistics = StatisticsOf(Bytes(std::string("P5\n2 2\n255\n") + "\x0A\x14\xFF\x1E"));
    EXPECT_EQ(statistics.least, 10U);
    EXPECT_EQ(statistics.most, 255U);
    EXPECT_DOUBLE_EQ(statistics.mean, (10 + 20 + 255 + 30) / 4.0);
    EXPECT_DOUBLE_EQ(statistics.saturated, 0.25);
    EXPECT_EQ(StatisticsText(statistics), "min 10, mean 78.8, max 255, 25.0% saturated");
}

TEST(StatisticsOf, CountsWideSamples) {
    const SampleStatistics statistics =
        StatisticsOf(Bytes(std::string("P5\n2 1\n4095\n") + std::string("\x0F\xFF\x01\x00", 4)));
    EXPECT_EQ(statistics.most, 4095U);
    EXPECT_EQ(statistics.least, 256U);
    EXPECT_DOUBLE_EQ(statistics.saturated, 0.5);
}

TEST(PrintPreview, DrawsLettersWithoutATerminal) {
    std::FILE* const file = std::tmpfile();
    Output output(file, file);
    PrintPreview(output, Bytes(std::string("P5\n2 4\n255\n") + std::string("\x00\xFF\x00\xFF\xFF\x00\xFF\x00", 8)), 2,
                 4);
    output.Flush();
    std::rewind(file);
    char text[64] = {};
    const std::size_t count = std::fread(text, 1, sizeof text - 1, file);
    std::fclose(file);
    EXPECT_EQ(std::string(text, count), " @\n@ \n");
}

TEST(PixelsOf, IsBehindTheHeader) {
    const std::vector<std::uint8_t> pnm = Bytes(std::string("P6\n1 1\n255\n") + "\n\n\n");
    const PnmPixels pixels = PixelsOf(pnm);
    EXPECT_TRUE(pixels.isColour);
    EXPECT_FALSE(pixels.isWide);
    EXPECT_EQ(pixels.size, 3U);
}

}  // namespace
