/* SPDX-License-Identifier: Apache-2.0 */
#include "images/FrameCounts.h"

#include <gtest/gtest.h>

namespace {

using tools::FrameCounts;
using Vanto::GrabResult;

GrabResult Frame(std::uint32_t tag, std::uint64_t bytes = 64) {
    GrabResult result;
    result.status = Vanto::Grabbed;
    result.frameTag = tag;
    result.width = 8;
    result.height = 8;
    result.pixelType = Vanto::PixelType_Mono8;
    result.payloadSize = bytes;
    return result;
}

GrabResult Failed() {
    GrabResult result;
    result.status = Vanto::GrabFailed;
    return result;
}

FrameCounts CountsOf(const std::vector<GrabResult>& results) {
    FrameCounts counts;
    for (const GrabResult& result : results)
        counts.Add(result);
    return counts;
}

TEST(FrameCounts, CountDeliveredFramesAndBytes) {
    const FrameCounts counts = CountsOf({Frame(5), Frame(6), Frame(7)});
    EXPECT_EQ(counts.Delivered(), 3U);
    EXPECT_EQ(counts.Bytes(), 192U);
    EXPECT_EQ(counts.Dropped(), 0U);
}

TEST(FrameCounts, CountWhatIsMissingBetweenTags) {
    EXPECT_EQ(CountsOf({Frame(5), Frame(7), Frame(10)}).Dropped(), 3U);
}

TEST(FrameCounts, TagsBeginAnewBehindTheLastNumber) {
    EXPECT_EQ(CountsOf({Frame(0xFFFFFFFE), Frame(1)}).Dropped(), 2U);
}

TEST(FrameCounts, TagsThatStandOrGoBackSayNothing) {
    EXPECT_EQ(CountsOf({Frame(5), Frame(5), Frame(0), Frame(1)}).Dropped(), 0U);
}

TEST(FrameCounts, AFailedFrameIsNotDropped) {
    const FrameCounts counts = CountsOf({Frame(5), Failed(), Frame(7), Failed(), Frame(10)});
    EXPECT_EQ(counts.Failed(), 2U);
    EXPECT_EQ(counts.Delivered(), 3U);
    EXPECT_EQ(counts.Dropped(), 1U);
}

TEST(FrameCounts, CutFramesAreDeliveredWithAPartOfTheirBytes) {
    const FrameCounts counts = CountsOf({Frame(0), Frame(1, 63)});
    EXPECT_EQ(counts.Delivered(), 2U);
    EXPECT_EQ(counts.Cut(), 1U);
}

TEST(FrameCounts, PackedPixelsFillUpTheLastByte) {
    GrabResult result = Frame(0, 12);
    result.width = 3;
    result.height = 3;
    result.pixelType = Vanto::PixelType_Mono10p;
    EXPECT_FALSE(tools::IsCut(result));
    result.payloadSize = 11;
    EXPECT_TRUE(tools::IsCut(result));
}

TEST(FrameCounts, FramesOfUnknownSizeAreNotCut) {
    GrabResult result = Frame(0, 1);
    result.pixelType = Vanto::PixelType_Undefined;
    EXPECT_FALSE(tools::IsCut(result));
    result = Frame(0, 1);
    result.width = -1;
    EXPECT_FALSE(tools::IsCut(result));
}

TEST(FrameCounts, CancelledBuffersCountNowhere) {
    GrabResult result = Frame(9);
    result.status = Vanto::Canceled;
    const FrameCounts counts = CountsOf({Frame(5), result, Frame(6)});
    EXPECT_EQ(counts.Delivered(), 2U);
    EXPECT_EQ(counts.Dropped(), 0U);
}

}  // namespace
