/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Size and pixels of simulated pictures
 */

#include "Geometry.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace {

using grabber::CameraValues;
using grabber::Geometry;
using grabber::MakeGeometry;

Geometry GeometryOf(std::int64_t pixelFormat, std::int64_t pixelSize = -1) {
    return MakeGeometry({.width = 10, .height = 4, .pixelFormat = pixelFormat, .pixelSize = pixelSize});
}

TEST(Geometry, KnowsFormatsOfOneByte) {
    for (const std::int64_t format : {0x01080001, 0x01080008, 0x0108000B}) {
        EXPECT_EQ(GeometryOf(format).Size(), 40U);
        EXPECT_EQ(GeometryOf(format).bits, 8U);
    }
}

TEST(Geometry, KnowsFormatsOfTwoBytes) {
    const std::pair<std::int64_t, unsigned> rows[] = {{0x01100003, 10}, {0x01100005, 12}, {0x01100025, 14},
                                                      {0x01100007, 16}, {0x0110000D, 10}, {0x01100012, 12},
                                                      {0x0110010A, 14}, {0x01100031, 16}};
    for (const auto& [format, bits] : rows) {
        EXPECT_EQ(GeometryOf(format).Size(), 80U) << format;
        EXPECT_EQ(GeometryOf(format).bits, bits) << format;
    }
}

TEST(Geometry, KnowsColour) {
    EXPECT_EQ(GeometryOf(0x02180014).LineLength(), 30U);
}

TEST(Geometry, GoesByPixelSizeForOtherFormats) {
    EXPECT_EQ(GeometryOf(3, 8).bytesPerPixel, 1U);
    EXPECT_EQ(GeometryOf(3, 9).bytesPerPixel, 2U);
    EXPECT_EQ(GeometryOf(3, 16).bytesPerPixel, 2U);
    EXPECT_EQ(GeometryOf(3, 24).bytesPerPixel, 3U);
}

TEST(Geometry, RefusesUnknownPixels) {
    for (const std::int64_t size : {-1, 0, 17, 32})
        EXPECT_THROW(GeometryOf(3, size), std::invalid_argument) << size;
}

TEST(Geometry, RefusesSizesThatNoCameraHas) {
    constexpr std::int64_t kHuge = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t side : {std::int64_t{-1}, std::int64_t{0}, std::int64_t{1} << 21, kHuge}) {
        EXPECT_THROW(MakeGeometry({.width = side, .height = 4, .pixelFormat = 0x01080001}), std::invalid_argument);
        EXPECT_THROW(MakeGeometry({.width = 4, .height = side, .pixelFormat = 0x01080001}), std::invalid_argument);
    }
    EXPECT_THROW(MakeGeometry({.width = 1 << 20, .height = 1 << 20, .pixelFormat = 0x01080001}), std::invalid_argument);
}

// Each row of formats, from its first to its last number; beside it are formats that are not known.
TEST(Geometry, KnowsNoFormatBesideItsRows) {
    const std::pair<std::int64_t, std::int64_t> rows[] = {
        {0x01080001, 0x01080001}, {0x01100003, 0x01100003}, {0x01100005, 0x01100005}, {0x01100025, 0x01100025},
        {0x01100007, 0x01100007}, {0x01080008, 0x0108000B}, {0x0110000C, 0x01100013}, {0x01100109, 0x0110010C},
        {0x0110002E, 0x01100031}, {0x02180014, 0x02180014}};
    for (const auto& [first, last] : rows) {
        EXPECT_THROW(GeometryOf(first - 1), std::invalid_argument) << first;
        EXPECT_THROW(GeometryOf(last + 1), std::invalid_argument) << last;
        EXPECT_NO_THROW(GeometryOf(first)) << first;
        EXPECT_NO_THROW(GeometryOf(last)) << last;
    }
    EXPECT_EQ(GeometryOf(0x0110000F).bits, 10U);
    EXPECT_EQ(GeometryOf(0x01100010).bits, 12U);
    EXPECT_EQ(GeometryOf(0x02180014).bits, 8U);
}

TEST(Geometry, TakesTheBitsOfOtherFormatsFromTheirPixelSize) {
    for (const unsigned size : {1U, 8U, 9U, 16U})
        EXPECT_EQ(GeometryOf(3, size).bits, size);
    EXPECT_EQ(GeometryOf(3, 1).bytesPerPixel, 1U);
    EXPECT_EQ(GeometryOf(3, 24).bits, 8U);
}

TEST(Geometry, AllowsTheLargestSidesAndPictures) {
    const auto of = [](std::int64_t width, std::int64_t height) {
        return MakeGeometry({.width = width, .height = height, .pixelFormat = 0x01080001});
    };
    EXPECT_EQ(of(1 << 20, 1).width, 1U << 20);
    EXPECT_EQ(of(1, 1 << 20).height, 1U << 20);
    EXPECT_THROW(of((1 << 20) + 1, 1), std::invalid_argument);
    EXPECT_THROW(of(1, (1 << 20) + 1), std::invalid_argument);
    EXPECT_EQ(of(1 << 20, 2048).Size(), grabber::kLargestPicture);
    EXPECT_THROW(of(1 << 20, 2049), std::invalid_argument);
}

}  // namespace
