/* SPDX-License-Identifier: Apache-2.0 */
#include "Base/GCFormat.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using GenICam::FormatText;
using GenICam::gcstring;

TEST(GCFormat, PrintsTextsAndNumbers) {
    EXPECT_EQ(FormatText("'%s' is %d of %u", "x", -3, 7u), "'x' is -3 of 7");
    EXPECT_EQ(FormatText("%hs|%5s|%-5s|%.2s", gcstring("a"), "b", std::string("c"), "defg"), "a|    b|c    |de");
    EXPECT_EQ(FormatText("%5d|%-5d|%05d|%+d", 42, 42, 42, 42), "   42|42   |00042|+42");
}

TEST(GCFormat, KnowsWindowsLengthPrefixes) {
    EXPECT_EQ(FormatText("%I64i", std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(FormatText("%I64u %I64x", ~std::uint64_t{0}, std::uint64_t{0xC05EC0C10C}),
              "18446744073709551615 c05ec0c10c");
    EXPECT_EQ(FormatText("%#x %#x", 255u, std::uint64_t{0x1234567890}), "0xff 0x1234567890");
}

TEST(GCFormat, CopiesIncompleteConversionsAndTakesNoArgument) {
    EXPECT_EQ(FormatText("Address=%I64 (%I64#x) %d", 5), "Address=%I64 (%I64#x) 5");
    EXPECT_EQ(FormatText("100 % of %"), "100 % of %");
    EXPECT_EQ(FormatText("%y%s", "t"), "%yt");
}

TEST(GCFormat, NeverReadsWhatWasNotPassed) {
    EXPECT_EQ(FormatText("%s %s %d", "one"), "one %s %d");
    EXPECT_EQ(FormatText("%s"), "%s");
    EXPECT_EQ(FormatText("nothing", 1, 2), "nothing");
}

TEST(GCFormat, LetsTheTypeDecideWhereLetterAndTypeDiffer) {
    EXPECT_EQ(FormatText("%s", 12), "12");
    EXPECT_EQ(FormatText("%d", "text"), "text");
    EXPECT_EQ(FormatText("%u", -1), "4294967295");
    EXPECT_EQ(FormatText("%p", std::uint64_t{16}), "0x10");
    EXPECT_EQ(FormatText("%s", static_cast<const char*>(nullptr)), "(null)");
}

TEST(GCFormat, BoundsWidths) {
    for (const char* format : {"%999999999d", "%99999d", "%9999d", "%4097d", "%4096d"})
        EXPECT_EQ(FormatText(format, 1).size(), 4096u) << format;
    EXPECT_EQ(FormatText("%4095d", 1).size(), 4095u);
}

TEST(GCFormat, TreatsArgumentsAsData) {
    EXPECT_EQ(FormatText("<%s>", "%s%n%d"), "<%s%n%d>");
}

TEST(GCFormat, WritesTwoPercentSignsAsOne) {
    EXPECT_EQ(FormatText("100%% of %d%%|%%d", 5), "100% of 5%|%d");
}

TEST(GCFormat, KnowsEveryLengthPrefix) {
    EXPECT_EQ(FormatText("%hhd %hd %ld %lld %zu %jd %td %I32d", 1, 2, 3L, 4LL, std::size_t{5}, 6, 7, 8),
              "1 2 3 4 5 6 7 8");
    EXPECT_EQ(FormatText("%ws %Lf", "wide", 1.5), "wide 1.500000");
}

TEST(GCFormat, PrintsFloatsWithTheirFlagsAndPrecision) {
    EXPECT_EQ(FormatText("%.2f|%8.3f|%-8.1f|%+.0f|%08.2f|% .1f", 1.256, 1.5, 2.25, 3.0, -4.5, 5.0),
              "1.26|   1.500|2.2     |+3|-0004.50| 5.0");
    EXPECT_EQ(FormatText("%e %G %#.0f %d", 12.5, 1e-10, 1.0, 0.5), "1.250000e+01 1E-10 1. 0.5");
}

TEST(GCFormat, PrintsIntegersWithTheirFlagsAndPrecision) {
    EXPECT_EQ(FormatText("%.3d|%6.2u|%-6x|%#X|%#o|% d", 5, 7u, 0xabu, 0xabu, 8u, 3), "005|    07|ab    |0XAB|010| 3");
    EXPECT_EQ(FormatText("%c%c%p", 65, 'B', 255), "AB0xff");
}

TEST(GCFormat, CutsTextsToTheirPrecision) {
    EXPECT_EQ(FormatText("%.0s|%.s|%.9s|%5.2s|%.2d", "abc", "abc", "abc", "abc", "abc"), "||abc|   ab|abc");
}

TEST(GCFormat, GivesAnArgumentByItselfAsAPlainText) {
    EXPECT_EQ(GenICam::FormatArgument(-5).ToString(), "-5");
    EXPECT_EQ(GenICam::FormatArgument("text").ToString(), "text");
    EXPECT_EQ(GenICam::FormatArgument(0.5).ToString(), "0.5");
}

TEST(GCFormat, TakesNoTextForAnEmptyOne) {
    EXPECT_EQ(GenICam::FormatTyped(nullptr, {}), "");
}

}  // namespace
