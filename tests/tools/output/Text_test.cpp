/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of text fit for a terminal and of likeness of words
 */
#include "output/Text.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace tools;

TEST(Printable, KeepsOrdinaryText) {
    EXPECT_EQ(Printable("Heron H2048 (äöü 漢)"), "Heron H2048 (äöü 漢)");
}

TEST(Printable, ShowsControlCharacters) {
    EXPECT_EQ(Printable("a\x1b[31mb\n\x7f"), "a\\x1B[31mb\\x0A\\x7F");
}

TEST(Printable, ShowsBytesThatAreNoUtf8) {
    EXPECT_EQ(Printable("M\xFC\xC3"), "M\\xFC\\xC3");
}

// Halves of pairs of UTF-16, which are no characters by themselves; the neighbours below and above are.
TEST(Printable, ShowsSurrogates) {
    EXPECT_EQ(Printable("\xED\xA0\x80"), "\\xED\\xA0\\x80");
    EXPECT_EQ(Printable("\xED\xBF\xBF."), "\\xED\\xBF\\xBF.");
    EXPECT_EQ(Printable("\xED\x9F\xBF\xEE\x80\x80"), "\xED\x9F\xBF\xEE\x80\x80");
}

TEST(Printable, ShowsControlCharactersBeyondAscii) {
    EXPECT_EQ(Printable("\xC2\x9B"), "\\xC2\\x9B");
}

TEST(PrintableLines, KeepsLineEndsAndTabs) {
    EXPECT_EQ(PrintableLines("a\n\tb\r"), "a\n\tb\\x0D");
}

TEST(DisplayWidth, CountsCharacters) {
    EXPECT_EQ(DisplayWidth("äöü"), 3U);
}

TEST(DisplayWidth, CountsWideCharactersTwiceAndMarksNotAtAll) {
    EXPECT_EQ(DisplayWidth("相机A"), 5U);
    EXPECT_EQ(DisplayWidth("e\u0301"), 1U);
    EXPECT_EQ(DisplayWidth("\033[1mA\033[0m"), 1U);
}

TEST(Shortened, GivesWideCharactersTheirTwoColumns) {
    EXPECT_EQ(Shortened("相机相机", 5), "相机…");
    EXPECT_EQ(Shortened("相机相机", 6), "相机…");
}

TEST(Shortened, KeepsWhatFits) {
    EXPECT_EQ(Shortened("Heron", 5), "Heron");
}

TEST(Shortened, EndsInAnEllipsis) {
    EXPECT_EQ(Shortened("Heron", 4), "Her…");
}

TEST(Shortened, CutsBetweenCharacters) {
    EXPECT_EQ(Shortened("äöüß", 3), "äö…");
}

TEST(Wrapped, BreaksAtBlanksAndIndents) {
    EXPECT_EQ(Wrapped("one two three", 7, "  "), "one two\n  three");
}

TEST(Wrapped, LeavesRoomForWhatStandsBefore) {
    EXPECT_EQ(Wrapped("one two", 8, "", 4), "one\ntwo");
}

TEST(Wrapped, KeepsLineEnds) {
    EXPECT_EQ(Wrapped("one\ntwo three", 8, " "), "one\n two\n three");
}

TEST(Wrapped, KeepsOneLineWithoutWidth) {
    EXPECT_EQ(Wrapped("one two three", 0, "  "), "one two three");
}

TEST(Wrapped, KeepsAWordThatIsTooLong) {
    EXPECT_EQ(Wrapped("abcdefghij k", 5, ""), "abcdefghij\nk");
}

TEST(DidYouMean, AsksForTheClosestWord) {
    const std::vector<std::string> words{"Manufacturer", "Model"};
    EXPECT_EQ(DidYouMean("Manufactorer", words), "did you mean 'Manufacturer'?");
}

}  // namespace
