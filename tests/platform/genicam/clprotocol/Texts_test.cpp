/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of lists in texts and of texts from foreign libraries
 */

#include "Texts.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using CLProtocol::AskForText;

TEST(Texts, Joins) {
    EXPECT_EQ(CLProtocol::Join({"", "a", ""}, '#'), "#a#");
    EXPECT_EQ(CLProtocol::Join({}, '#'), "");
}

TEST(Texts, ComparesWholeTokens) {
    EXPECT_TRUE(CLProtocol::BeginsWithTokens("a#b", "a", '#'));
    EXPECT_TRUE(CLProtocol::BeginsWithTokens("a#b", "a#b", '#'));
    EXPECT_FALSE(CLProtocol::BeginsWithTokens("ab#b", "a", '#'));
    EXPECT_FALSE(CLProtocol::BeginsWithTokens("a", "a#b", '#'));
}

TEST(Texts, ReplacesControlCharacters) {
    EXPECT_EQ(CLProtocol::WithoutControlCharacters("a\tb\x1b[1m\x7f"), "a b [1m ");
    EXPECT_EQ(CLProtocol::WithoutControlCharacters("a\tb\n", "\t"), "a\tb ");
    EXPECT_EQ(CLProtocol::WithoutControlCharacters("\xc3\xa9\xff"), "\xc3\xa9\xff");
}

TEST(Texts, AsksAgainWithTheNeededSize) {
    int calls = 0;
    const auto text = AskForText(
        [&](char* buffer, std::uint32_t* size) {
            ++calls;
            const bool fits = *size >= 6;
            *size = 6;
            if (fits)
                std::memcpy(buffer, "12345", 6);
            return fits ? 0 : -10001;
        },
        {4, 100});
    EXPECT_EQ(text.text, "12345");
    EXPECT_EQ(calls, 2);
}

TEST(Texts, EndsATextWithoutNulAtItsBuffer) {
    const auto text = AskForText(
        [](char* buffer, std::uint32_t* size) {
            std::memset(buffer, 'x', *size);
            *size = 0xffffffff;
            return 0;
        },
        {8, 100});
    EXPECT_EQ(text.result, 0);
    EXPECT_EQ(text.text, "xxxxxxxx");
}

TEST(Texts, GivesUpOnSizesThatGrowOrMakeNoSense) {
    int calls = 0;
    const auto growing = [&](char*, std::uint32_t* size) {
        ++calls;
        ++*size;
        return -10001;
    };
    EXPECT_EQ(AskForText(growing, {8, 1000}).result, -10001);
    EXPECT_LE(calls, 4);
    const auto same = [](char*, std::uint32_t*) { return -10001; };
    EXPECT_EQ(AskForText(same, {8, 1000}).result, -10001);
    const auto huge = [](char*, std::uint32_t* size) {
        *size = 0xfffffff0;
        return -10001;
    };
    EXPECT_EQ(AskForText(huge, {8, 1000}).result, -10001);
}

TEST(Texts, PassesOnErrorsWithoutText) {
    const auto text = AskForText(
        [](char* buffer, std::uint32_t*) {
            *buffer = 'x';
            return -10006;
        },
        {8, 100});
    EXPECT_EQ(text.result, -10006);
    EXPECT_EQ(text.text, "");
}

}  // namespace
