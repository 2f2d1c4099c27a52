/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of texts
 */

#include "base/Text.h"

#include <gtest/gtest.h>

namespace {

using Parts = std::vector<std::string>;

TEST(Split, GivesOneMoreThanThereAreSeparators) {
    EXPECT_EQ(base::Split("a,,b", ','), (Parts{"a", "", "b"}));
    EXPECT_EQ(base::Split(",", ','), (Parts{"", ""}));
    EXPECT_EQ(base::Split("", ','), Parts{""});
}

TEST(Split, CanLeaveOutWhatIsEmpty) {
    EXPECT_EQ(base::SplitWithoutEmpty(",a,,b,", ','), (Parts{"a", "b"}));
    EXPECT_EQ(base::SplitWithoutEmpty("", ','), Parts{});
}

TEST(Trimmed, LosesBlanksAtItsEndsOnly) {
    EXPECT_EQ(base::Trimmed(" \ta b\r\n"), "a b");
    EXPECT_EQ(base::Trimmed("a"), "a");
}

TEST(Trimmed, OfBlanksIsEmpty) {
    EXPECT_EQ(base::Trimmed(" \t"), "");
    EXPECT_EQ(base::Trimmed(""), "");
}

TEST(Letters, AreComparedIgnoringTheirCase) {
    EXPECT_EQ(base::LowerCase("Abc-Z[\xC3\x84"), "abc-z[\xC3\x84");
    EXPECT_TRUE(base::EqualsIgnoringCase("aBc", "AbC"));
    EXPECT_FALSE(base::EqualsIgnoringCase("abc", "abcd"));
    EXPECT_FALSE(base::EqualsIgnoringCase("[", "{"));
}

TEST(IsControl, IsTrueForTheControlCharactersOfAscii) {
    for (const char control : {'\0', '\n', '\x1F', '\x7F'})
        EXPECT_TRUE(base::IsControl(control));
    for (const char other : {' ', 'a', '\x80', '\xFF'})
        EXPECT_FALSE(base::IsControl(other));
}

TEST(HexText, HasTwoDigitsForEachByte) {
    const std::vector<std::uint8_t> bytes{0x00, 0x0A, 0xFF};
    EXPECT_EQ(base::HexText(bytes), "000aff");
}

}  // namespace
