/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of texts with '#' as tokens
 */

#include "base/TokenEscape.h"

#include <gtest/gtest.h>

namespace {

using base::EscapeToken;
using base::UnescapeToken;

TEST(TokenEscape, LeavesWhatNeedsNone) {
    for (const char* text : {"", "42", "50%", "100 % sure", "%2", "%24", "%41", "\xC3\xA4%"}) {
        EXPECT_EQ(EscapeToken(text), text);
        EXPECT_EQ(UnescapeToken(text), text);
    }
}

TEST(TokenEscape, TakesSeparatorsOut) {
    EXPECT_EQ(EscapeToken("A#1"), "A%231");
    EXPECT_EQ(EscapeToken("##"), "%23%23");
    EXPECT_EQ(UnescapeToken("A%231"), "A#1");
}

TEST(TokenEscape, EscapesWhatLooksLikeAnEscape) {
    EXPECT_EQ(EscapeToken("A%231"), "A%25231");
    EXPECT_EQ(EscapeToken("%25"), "%2525");
}

TEST(TokenEscape, GoesThereAndBack) {
    for (const char* text : {"#", "%#", "%2#", "%23", "%25", "%2523", "%252", "%%23", "%2%33", "#%25#", "25%23%"}) {
        EXPECT_EQ(UnescapeToken(EscapeToken(text)), text);
        EXPECT_EQ(EscapeToken(text).find('#'), std::string::npos) << text;
    }
}

}  // namespace
