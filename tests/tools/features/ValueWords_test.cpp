/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of values as people type them
 */
#include "features/ValueWords.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace tools;

TEST(IntegerFromWord, TakesDecimalAndHexadecimal) {
    EXPECT_EQ(IntegerFromWord("16"), 16);
    EXPECT_EQ(IntegerFromWord(" -2 "), -2);
    EXPECT_EQ(IntegerFromWord("+7"), 7);
    EXPECT_EQ(IntegerFromWord("0x10"), 16);
    EXPECT_EQ(IntegerFromWord("0XfF"), 255);
    EXPECT_EQ(IntegerFromWord("-0x10"), -16);
}

TEST(IntegerFromWord, TakesAllSixtyFourBits) {
    EXPECT_EQ(IntegerFromWord("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(IntegerFromWord("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(IntegerFromWord("0xFFFFFFFFFFFFFFFF"), -1);
}

TEST(IntegerFromWord, RefusesTheRest) {
    for (const char* word :
         {"", " ", "-", "+", "0x", "x10", "12.5", "1e3", "12 3", "1_000", "--1", "+-1", "on", "9223372036854775808",
          "-9223372036854775809", "0x10000000000000000", "-0x8000000000000001", "99999999999999999999"})
        EXPECT_EQ(IntegerFromWord(word), std::nullopt) << word;
}

TEST(NumberFromWord, TakesWhatPeopleWrite) {
    EXPECT_EQ(NumberFromWord("12.5"), 12.5);
    EXPECT_EQ(NumberFromWord("-1e3"), -1000.0);
    EXPECT_EQ(NumberFromWord("+.5"), 0.5);
    EXPECT_EQ(NumberFromWord("0x10"), 16.0);
}

TEST(NumberFromWord, RefusesTheRest) {
    for (const char* word : {"", "12,5", "inf", "nan", "-inf", "1e999", "12.5us", "+-1", "."})
        EXPECT_EQ(NumberFromWord(word), std::nullopt) << word;
}

TEST(SwitchFromWord, TakesWordsInAnyCase) {
    for (const char* word : {"on", "On", "TRUE", "yes", "1", " true "})
        EXPECT_EQ(SwitchFromWord(word), true) << word;
    for (const char* word : {"off", "False", "NO", "0"})
        EXPECT_EQ(SwitchFromWord(word), false) << word;
    for (const char* word : {"", "2", "o", "onn", "ja"})
        EXPECT_EQ(SwitchFromWord(word), std::nullopt) << word;
}

TEST(BytesFromWord, TakesPairsOfDigits) {
    const std::vector<std::uint8_t> bytes{0x01, 0xFE, 0x20};
    for (const char* word : {"01fe20", "0x01FE20", "01 fe 20", "01:fe:20"})
        EXPECT_EQ(BytesFromWord(word), bytes) << word;
}

TEST(BytesFromWord, RefusesTheRest) {
    for (const char* word : {"", "0x", "1", "012", "0g", "01  02", ":01", "01:", "-1", "+1"})
        EXPECT_EQ(BytesFromWord(word), std::nullopt) << word;
}

TEST(HexText, IsWhatBytesFromWordTakes) {
    const std::vector<std::uint8_t> bytes{0x00, 0x7F, 0xFF};
    EXPECT_EQ(HexText(bytes), "007fff");
    EXPECT_EQ(BytesFromWord(HexText(bytes)), bytes);
}

TEST(WithoutUnit, LeavesTheNumber) {
    EXPECT_EQ(WithoutUnit("2500us", "us"), "2500");
    EXPECT_EQ(WithoutUnit(" 2500 us ", "us"), "2500");
    EXPECT_EQ(WithoutUnit("2500", "us"), "2500");
    EXPECT_EQ(WithoutUnit("2500 ms", "us"), "2500 ms");
    EXPECT_EQ(WithoutUnit("2500", ""), "2500");
}

}  // namespace
