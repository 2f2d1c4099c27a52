/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Number and checksum in the first bytes of a frame
 */

#include "FrameMark.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace {

using grabber::kFrameMarkSize;
using grabber::ReadFrameMark;
using grabber::WriteFrameMark;

std::vector<std::uint8_t> MarkedImage(std::size_t size, std::uint64_t number) {
    std::vector<std::uint8_t> image(size);
    std::iota(image.begin(), image.end(), std::uint8_t{1});
    WriteFrameMark(image, number);
    return image;
}

TEST(FrameMark, IsReadAsWritten) {
    EXPECT_EQ(ReadFrameMark(MarkedImage(1000, 0x123456789ABCDEF0)), 0x123456789ABCDEF0U);
}

TEST(FrameMark, FitsEveryImageThatHoldsIt) {
    for (std::size_t size = kFrameMarkSize; size < kFrameMarkSize + 20; ++size)
        EXPECT_EQ(ReadFrameMark(MarkedImage(size, size)), size);
}

TEST(FrameMark, IsNotWrittenIntoASmallerImage) {
    std::vector<std::uint8_t> image(kFrameMarkSize - 1, 7);
    WriteFrameMark(image, 1);
    EXPECT_EQ(image, std::vector<std::uint8_t>(kFrameMarkSize - 1, 7));
    EXPECT_FALSE(ReadFrameMark(image));
}

TEST(FrameMark, NoticesEveryChangedByte) {
    for (std::size_t at = 0; at < 100; ++at) {
        std::vector<std::uint8_t> image = MarkedImage(100, 5);
        image[at] ^= 0x10;
        EXPECT_FALSE(ReadFrameMark(image)) << at;
    }
}

TEST(FrameMark, NoticesExchangedWords) {
    std::vector<std::uint8_t> image = MarkedImage(100, 5);
    std::swap_ranges(image.begin() + 24, image.begin() + 32, image.begin() + 32);
    EXPECT_FALSE(ReadFrameMark(image));
}

TEST(FrameMark, NoticesTheEndOfAnotherFrame) {
    std::vector<std::uint8_t> image = MarkedImage(4096, 5);
    std::vector<std::uint8_t> next(4096, 9);
    WriteFrameMark(next, 6);
    std::copy(next.begin() + 2048, next.end(), image.begin() + 2048);
    EXPECT_FALSE(ReadFrameMark(image));
}

}  // namespace
