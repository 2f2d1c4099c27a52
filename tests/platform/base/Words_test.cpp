/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the likeness of words
 */
#include "base/Words.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using base::ClosestWord;
using base::EditDistance;

TEST(EditDistance, CountsASwapOnce) {
    EXPECT_EQ(EditDistance("Enabeld", "Enabled"), 1U);
    EXPECT_EQ(EditDistance("iWdth", "Width"), 1U);
}

TEST(EditDistance, IgnoresCase) {
    EXPECT_EQ(EditDistance("baudrate", "BaudRate"), 0U);
}

TEST(EditDistance, OfAnEmptyWordIsTheOthersLength) {
    EXPECT_EQ(EditDistance("", "abc"), 3U);
}

TEST(ClosestWord, FindsATypingMistake) {
    const std::vector<std::string> words{"list", "ports", "config"};
    EXPECT_EQ(ClosestWord("prots", words), "ports");
}

TEST(ClosestWord, FindsNothingThatIsFar) {
    const std::vector<std::string> words{"list", "ports", "config"};
    EXPECT_EQ(ClosestWord("xyz", words), "");
}

TEST(ClosestWord, IsFoundForWordsOfUpTo64Letters) {
    const std::vector<std::string> words{std::string(63, 'l')};
    EXPECT_EQ(ClosestWord(std::string(64, 'l'), words), words[0]);
    EXPECT_EQ(ClosestWord(std::string(65, 'l'), words), "");
}

TEST(ClosestWord, OfAVeryLongWordIsNothing) {
    const std::vector<std::string> words{"list"};
    EXPECT_EQ(ClosestWord(std::string(1'000'000, 'l'), words), "");
}

}  // namespace
