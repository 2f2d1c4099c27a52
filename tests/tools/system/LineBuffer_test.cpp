/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of lines out of pieces
 */
#include "system/LineBuffer.h"

#include <gtest/gtest.h>

namespace {

using tools::LineBuffer;

TEST(LineBuffer, GivesALineOnceItIsWhole) {
    LineBuffer buffer;
    buffer.Append("one\ntw");
    EXPECT_EQ(buffer.Take(), "one");
    EXPECT_EQ(buffer.Take(), std::nullopt);
    buffer.Append("o\n\n");
    EXPECT_EQ(buffer.Take(), "two");
    EXPECT_EQ(buffer.Take(), "");
}

TEST(LineBuffer, SaysWhenALineHasNoEnd) {
    LineBuffer buffer;
    buffer.Append(std::string(64 * 1024, 'x'));
    EXPECT_FALSE(buffer.IsTooLong());
    buffer.Append("x");
    EXPECT_TRUE(buffer.IsTooLong());
}

}  // namespace
