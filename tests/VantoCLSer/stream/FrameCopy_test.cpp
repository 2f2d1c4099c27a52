/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Copying frames: what is copied, and that nothing else is touched. Data and buffers have exactly the size that the
 * test needs, so that an address sanitizer sees each byte too much.
 */

#include "VantoCLSer/stream/FrameCopy.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <vector>

namespace {

using Vanto::CopyFrame;
using Vanto::FgFrame;
using Bytes = std::vector<std::uint8_t>;

Bytes Counting(std::size_t size) {
    Bytes bytes(size);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
    return bytes;
}

FgFrame FrameOf(const Bytes& data, std::uint64_t lineLength, std::uint64_t linePitch, std::int32_t lines,
                std::uint64_t dataSize) {
    FgFrame frame{};
    frame.lineCount = lines;
    frame.lineLength = lineLength;
    frame.linePitch = linePitch;
    frame.dataSize = dataSize;
    frame.data = data.data();
    return frame;
}

// Copies into a new buffer of 0xEE; the result's size must be as expected.
Bytes Copied(const FgFrame& frame, std::size_t bufferSize, std::uint64_t expectedSize) {
    Bytes buffer(bufferSize, 0xEE);
    EXPECT_EQ(CopyFrame(frame, buffer.data(), buffer.size()), expectedSize);
    return buffer;
}

TEST(FrameCopy, CopiesAContiguousFrame) {
    const Bytes data = Counting(12);
    EXPECT_EQ(Copied(FrameOf(data, 4, 4, 3, 12), 12, 12), data);
}

TEST(FrameCopy, LeavesTheRestOfTheBuffer) {
    const Bytes data = Counting(2);
    EXPECT_EQ(Copied(FrameOf(data, 2, 2, 1, 2), 4, 2), (Bytes{1, 2, 0xEE, 0xEE}));
}

TEST(FrameCopy, CutsAContiguousFrame) {
    const Bytes data = Counting(12);
    EXPECT_EQ(Copied(FrameOf(data, 4, 4, 3, 12), 5, 5), (Bytes{1, 2, 3, 4, 5}));
}

TEST(FrameCopy, GoesByTheSizeOfAContiguousFrameAlone) {
    const Bytes data = Counting(3);
    EXPECT_EQ(Copied(FrameOf(data, 4, 4, -7, 3), 3, 3), data);
}

TEST(FrameCopy, LeavesTheGapsBetweenLinesOut) {
    const Bytes data = Counting(14);  // two gaps of two bytes, none behind the last line
    EXPECT_EQ(Copied(FrameOf(data, 4, 6, 2, 8), 8, 8), (Bytes{1, 2, 3, 4, 7, 8, 9, 10}));
}

TEST(FrameCopy, CutsAPitchedFrameWithinALine) {
    const Bytes data = Counting(16);
    EXPECT_EQ(Copied(FrameOf(data, 4, 6, 3, 12), 6, 6), (Bytes{1, 2, 3, 4, 7, 8}));
}

TEST(FrameCopy, CutsAPitchedFrameBetweenLines) {
    const Bytes data = Counting(4);  // as much as one line needs
    EXPECT_EQ(Copied(FrameOf(data, 4, 6, 3, 12), 4, 4), (Bytes{1, 2, 3, 4}));
}

TEST(FrameCopy, EndsWithinTheLastLine) {
    const Bytes data = Counting(14);  // two lines with their gaps, and half of the third
    EXPECT_EQ(Copied(FrameOf(data, 4, 6, 3, 10), 12, 10), (Bytes{1, 2, 3, 4, 7, 8, 9, 10, 13, 14, 0xEE, 0xEE}));
}

TEST(FrameCopy, SurvivesAHugeSize) {
    const Bytes data = Counting(10);
    const std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(Copied(FrameOf(data, 4, 4, 2, huge), 5, 5), (Bytes{1, 2, 3, 4, 5}));
    EXPECT_EQ(Copied(FrameOf(data, 4, 6, 2, huge), 7, 7), (Bytes{1, 2, 3, 4, 7, 8, 9}));
}

TEST(FrameCopy, CopiesOneLineOfAnyPitch) {
    const Bytes data = Counting(4);
    for (const std::uint64_t pitch : {0U, 1U, 5U})
        EXPECT_EQ(Copied(FrameOf(data, 4, pitch, 1, 4), 4, 4), data) << pitch;
}

TEST(FrameCopy, CopiesALineWithoutPitchAgainAndAgain) {
    const Bytes data = Counting(2);
    EXPECT_EQ(Copied(FrameOf(data, 2, 0, 3, 6), 6, 6), (Bytes{1, 2, 1, 2, 1, 2}));
}

TEST(FrameCopy, EndsWithTheLastLine) {
    const Bytes data = Counting(10);
    EXPECT_EQ(Copied(FrameOf(data, 4, 6, 2, 100), 12, 12), (Bytes{1, 2, 3, 4, 7, 8, 9, 10, 0xEE, 0xEE, 0xEE, 0xEE}));
}

TEST(FrameCopy, CopiesLinesThatOverlap) {
    const Bytes data = Counting(6);
    EXPECT_EQ(Copied(FrameOf(data, 4, 2, 2, 8), 8, 8), (Bytes{1, 2, 3, 4, 3, 4, 5, 6}));
}

// The size counts pixels: the memory behind them is longer by the gaps between the lines.
TEST(FrameCopy, CopiesAsManyPixelsAsTheSizeSaysWhenThereAreMoreLines) {
    const Bytes data = Counting(10);
    EXPECT_EQ(Copied(FrameOf(data, 4, 6, 3, 8), 8, 8), (Bytes{1, 2, 3, 4, 7, 8, 9, 10}));
}

TEST(FrameCopy, EndsWithinALineThatIsNotTheLast) {
    const Bytes data = Counting(9);
    EXPECT_EQ(Copied(FrameOf(data, 4, 6, 9, 7), 8, 7), (Bytes{1, 2, 3, 4, 7, 8, 9, 0xEE}));
}

TEST(FrameCopy, CopiesNoLinesWhenThereAreNone) {
    const Bytes data = Counting(4);
    for (const std::int32_t lines : {0, -1, std::numeric_limits<std::int32_t>::min()})
        EXPECT_EQ(Copied(FrameOf(data, 4, 6, lines, 4), 4, 4), Bytes(4, 0xEE)) << lines;
}

TEST(FrameCopy, SurvivesAHugeLineCount) {
    const Bytes data = Counting(14);
    EXPECT_EQ(Copied(FrameOf(data, 4, 6, std::numeric_limits<std::int32_t>::max(), 10), 10, 10),
              (Bytes{1, 2, 3, 4, 7, 8, 9, 10, 13, 14}));
}

TEST(FrameCopy, SurvivesLinesWithoutLength) {
    const Bytes data = Counting(4);
    EXPECT_EQ(Copied(FrameOf(data, 0, 6, std::numeric_limits<std::int32_t>::max(), 4), 4, 4), Bytes(4, 0xEE));
}

TEST(FrameCopy, SurvivesAHugePitch) {
    const Bytes data = Counting(4);
    const std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(Copied(FrameOf(data, 4, huge, 2, 8), 8, 8), (Bytes{1, 2, 3, 4, 0xEE, 0xEE, 0xEE, 0xEE}));
}

TEST(FrameCopy, SurvivesAHugeLineLength) {
    const Bytes data = Counting(4);
    const std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(Copied(FrameOf(data, huge, 6, 2, 4), 8, 4), (Bytes{1, 2, 3, 4, 0xEE, 0xEE, 0xEE, 0xEE}));
}

TEST(FrameCopy, CopiesNothingFromAnEmptyFrame) {
    FgFrame frame{};
    EXPECT_EQ(Copied(frame, 4, 0), Bytes(4, 0xEE));
}

}  // namespace
