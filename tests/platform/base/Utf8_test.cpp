/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of characters in UTF-8
 */
#include "base/Utf8.h"

#include <gtest/gtest.h>

namespace base {
namespace {

TEST(Utf8, MeasuresACharacter) {
    EXPECT_EQ(Utf8Length("ab"), 1u);
    EXPECT_EQ(Utf8Length("\xC3\xA4x"), 2u);
    EXPECT_EQ(Utf8Length("\xE2\x82\xACx"), 3u);
    EXPECT_EQ(Utf8Length("\xF0\x9F\x93\xB7x"), 4u);
}

TEST(Utf8, MeasuresNothingElse) {
    for (const char* text : {"", "\x80", "\xC3", "\xC3(", "\xC0\x80", "\xE0\x9F\xBF", "\xED\xA0\x80",
                             "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xE2\x82"})
        EXPECT_EQ(Utf8Length(text), 0u) << text;
}

TEST(Utf8, MeasuresBothEndsOfWhatEachFirstByteMayHave) {
    for (const std::string text : {"\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
                                   "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_EQ(Utf8Length(text), text.size()) << text;
    EXPECT_EQ(Utf8Length("\xC1\xBF"), 0u);
    EXPECT_EQ(Utf8Length("\x7F"), 1u);
}

TEST(Utf8, MeasuresNothingWhereAnyByteIsWrongOrMissing) {
    for (const std::string text : {"\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x93\xB7"}) {
        for (std::size_t at = 1; at < text.size(); ++at) {
            EXPECT_EQ(Utf8Length(text.substr(0, at)), 0u) << text;
            for (const char wrong : {'x', '\xC0', '\xFF'}) {
                std::string broken = text;
                broken[at] = wrong;
                EXPECT_EQ(Utf8Length(broken), 0u) << at;
            }
        }
    }
}

TEST(Utf8, ReadsWhatItWrites) {
    for (const char32_t character : {U'a', U'\x7F', U'\x80', U'\x7FF', U'\x800', U'\xFFFD', U'\x10000', U'\x10FFFF'}) {
        std::string text;
        AppendUtf8(text, character);
        EXPECT_EQ(Utf8Length(text), text.size());
        EXPECT_EQ(DecodeUtf8(text), character);
    }
}

}  // namespace
}  // namespace base
