/* SPDX-License-Identifier: Apache-2.0 */
#include "gencp/Checksum.h"

#include <gtest/gtest.h>

namespace {

using gencp::Bytes;
using gencp::Checksum;

TEST(Checksum, IsTheComplementOfTheOnesComplementSum) {
    // The example of RFC 1071: 0001 f203 f4f5 f6f7 sum to ddf2.
    EXPECT_EQ(Checksum(Bytes{0x00, 0x01, 0xf2, 0x03, 0xf4, 0xf5, 0xf6, 0xf7}), 0x220D);
}

TEST(Checksum, CountsAnOddLastByteAsAHighByte) {
    EXPECT_EQ(Checksum(Bytes{0x12, 0x34, 0x56}), Checksum(Bytes{0x12, 0x34, 0x56, 0x00}));
    EXPECT_EQ(Checksum(Bytes{0x56}), 0xA9FF);
}

TEST(Checksum, OfNothingIsAllOnes) {
    EXPECT_EQ(Checksum({}), 0xFFFF);
}

TEST(Checksum, FoldsEveryCarry) {
    EXPECT_EQ(Checksum(Bytes(2048, 0xFF)), 0x0000);
    EXPECT_EQ(Checksum(Bytes{0xFF, 0xFF, 0x00, 0x01}), 0xFFFE);
}

TEST(Checksum, OfZeroIsTakenInEitherForm) {
    const Bytes bytes{0xFF, 0xFF};
    EXPECT_TRUE(gencp::IsChecksumOf(bytes, 0x0000));
    EXPECT_TRUE(gencp::IsChecksumOf(bytes, 0xFFFF));
    EXPECT_FALSE(gencp::IsChecksumOf(bytes, 0x0001));
    const Bytes others{0xFF, 0xFE};
    EXPECT_TRUE(gencp::IsChecksumOf(others, 0x0001));
    EXPECT_FALSE(gencp::IsChecksumOf(others, 0x0000));
    EXPECT_FALSE(gencp::IsChecksumOf(others, 0xFFFF));
}

TEST(Checksum, SeesEverySingleBitError) {
    const Bytes good{0x00, 0x00, 0x40, 0x00, 0x08, 0x00, 0x00, 0x0C, 0x00, 0x07};
    for (std::size_t bit = 0; bit < good.size() * 8; ++bit) {
        Bytes bad = good;
        bad[bit / 8] ^= static_cast<std::uint8_t>(1u << (bit % 8));
        EXPECT_NE(Checksum(bad), Checksum(good)) << bit;
    }
}

}  // namespace
