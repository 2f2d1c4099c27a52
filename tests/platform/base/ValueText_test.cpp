/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of values as people type them
 */
#include "base/ValueText.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/Text.h"

namespace {

using namespace base;

TEST(IntegerFromText, TakesDecimalAndHexadecimal) {
    EXPECT_EQ(base::IntegerFromText("16"), 16);
    EXPECT_EQ(base::IntegerFromText(" -2 "), -2);
    EXPECT_EQ(base::IntegerFromText("+7"), 7);
    EXPECT_EQ(base::IntegerFromText("0x10"), 16);
    EXPECT_EQ(base::IntegerFromText("0XfF"), 255);
    EXPECT_EQ(base::IntegerFromText("-0x10"), -16);
}

TEST(IntegerFromText, TakesAllSixtyFourBits) {
    EXPECT_EQ(base::IntegerFromText("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(base::IntegerFromText("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(base::IntegerFromText("0xFFFFFFFFFFFFFFFF"), -1);
}

TEST(IntegerFromText, RefusesTheRest) {
    for (const char* word :
         {"", " ", "-", "+", "0x", "x10", "12.5", "1e3", "12 3", "1_000", "--1", "+-1", "on", "9223372036854775808",
          "-9223372036854775809", "0x10000000000000000", "-0x8000000000000001", "99999999999999999999"})
        EXPECT_EQ(base::IntegerFromText(word), std::nullopt) << word;
}

TEST(NumberFromText, TakesWhatPeopleWrite) {
    EXPECT_EQ(base::NumberFromText("12.5", {}), 12.5);
    EXPECT_EQ(base::NumberFromText("-1e3", {}), -1000.0);
    EXPECT_EQ(base::NumberFromText("+.5", {}), 0.5);
    EXPECT_EQ(base::NumberFromText("0x10", {}), 16.0);
}

TEST(NumberFromText, RefusesTheRest) {
    for (const char* word : {"", "12,5", "inf", "nan", "-inf", "1e999", "12.5us", "+-1", "."})
        EXPECT_EQ(base::NumberFromText(word, {}), std::nullopt) << word;
}

TEST(SwitchFromText, TakesWordsInAnyCase) {
    for (const char* word : {"on", "On", "TRUE", "yes", "1", " true "})
        EXPECT_EQ(base::SwitchFromText(word), true) << word;
    for (const char* word : {"off", "False", "NO", "0"})
        EXPECT_EQ(base::SwitchFromText(word), false) << word;
    for (const char* word : {"", "2", "o", "onn", "ja"})
        EXPECT_EQ(base::SwitchFromText(word), std::nullopt) << word;
}

TEST(BytesFromText, TakesPairsOfDigits) {
    const std::vector<std::uint8_t> bytes{0x01, 0xFE, 0x20};
    for (const char* word : {"01fe20", "0x01FE20", "01 fe 20", "01:fe:20"})
        EXPECT_EQ(base::BytesFromText(word), bytes) << word;
}

TEST(BytesFromText, RefusesTheRest) {
    for (const char* word : {"", "0x", "1", "012", "0g", "01  02", ":01", "01:", "-1", "+1"})
        EXPECT_EQ(base::BytesFromText(word), std::nullopt) << word;
}

TEST(HexText, IsWhatBytesFromTextTakes) {
    const std::vector<std::uint8_t> bytes{0x00, 0x7F, 0xFF};
    EXPECT_EQ(HexText(bytes), "007fff");
    EXPECT_EQ(base::BytesFromText(HexText(bytes)), bytes);
}

TEST(NumberFromText, TakesUnitsOfTheSameKind) {
    EXPECT_EQ(NumberFromText("2500us", "us"), 2500.0);
    EXPECT_EQ(NumberFromText(" 2.5 ms ", "us"), 2500.0);
    EXPECT_EQ(NumberFromText("0.1 s", "us"), 100000.0);
    EXPECT_EQ(NumberFromText("2 kHz", "Hz"), 2000.0);
    EXPECT_EQ(NumberFromText("1.5e1 ms", "s"), 0.015);
    EXPECT_EQ(IntegerFromText("2 ms", "us"), 2000);
    EXPECT_EQ(IntegerFromText("0xfF px", "px"), 255);
}

TEST(NumberFromText, TakesNothingTimesAnything) {
    EXPECT_EQ(NumberFromText("0e2147483647 s", "us"), 0.0);
    EXPECT_EQ(NumberFromText("0e-2147483648 us", "s"), 0.0);
}

TEST(NumberFromText, RefusesOtherUnits) {
    EXPECT_EQ(NumberFromText("2 ms", "Hz"), std::nullopt);
    EXPECT_EQ(NumberFromText("2 ms", ""), std::nullopt);
    EXPECT_EQ(NumberFromText("2 xs", "us"), std::nullopt);
    EXPECT_EQ(IntegerFromText("1 us", "ms"), std::nullopt) << "a thousandth is no integer";
}

}  // namespace
