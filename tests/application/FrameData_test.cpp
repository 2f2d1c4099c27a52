/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of which frames are cut
 */
#include "application/FrameData.h"

#include <gtest/gtest.h>

namespace {

Vanto::GrabResult Result(std::int32_t width, std::int32_t pixelType, std::uint64_t bytes) {
    Vanto::GrabResult result;
    result.status = Vanto::Grabbed;
    result.width = width;
    result.height = 3;
    result.pixelType = pixelType;
    result.payloadSize = bytes;
    return result;
}

TEST(FrameIsCut, WhereAByteIsMissing) {
    EXPECT_FALSE(Vanto::IsCut(Result(8, Vanto::PixelType_Mono8, 24)));
    EXPECT_TRUE(Vanto::IsCut(Result(8, Vanto::PixelType_Mono8, 23)));
}

TEST(FrameIsCut, WhereItsLastByteIsNotFilledUp) {
    EXPECT_FALSE(Vanto::IsCut(Result(3, Vanto::PixelType_Mono10p, 12)));
    EXPECT_TRUE(Vanto::IsCut(Result(3, Vanto::PixelType_Mono10p, 11)));
    EXPECT_FALSE(Vanto::IsCut(Result(3, Vanto::PixelType_Mono1p, 2))) << "9 bits";
    EXPECT_TRUE(Vanto::IsCut(Result(3, Vanto::PixelType_Mono1p, 1)));
}

TEST(FrameIsCut, NotWhereItsSizeIsUnknown) {
    EXPECT_FALSE(Vanto::IsCut(Result(8, Vanto::PixelType_Undefined, 1)));
    EXPECT_FALSE(Vanto::IsCut(Result(-1, Vanto::PixelType_Mono8, 1)));
}

}  // namespace
