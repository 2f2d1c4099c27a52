/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of a picture in a terminal, as the terminal says that it can
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "../../output/PseudoTerminal.h"
#include "images/Preview.h"
#include "output/Output.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using tools_test::PseudoTerminal;

constexpr const char* kQuestion = "\033[c";
constexpr const char* kSixelBegin = "\033P";

/// An image of 16 x 12 pixels of a color with all it takes, shown on a terminal that answers so.
std::string Shown(const std::string& answer) {
    PseudoTerminal terminal(80);
    terminal.Type(answer);
    tools::Output output(terminal.Stream(), terminal.Stream());
    const std::string pnm = "P6\n16 12\n255\n" + std::string(16 * 12 * 3, '\x7F');
    tools::PrintPreview(output, {pnm.begin(), pnm.end()}, 16, 12);
    return terminal.Text();
}

/// Colours are wanted, whatever this test was started from.
class PreviewOnTerminal : public testing::Test {
protected:
    PreviewOnTerminal() {
        ::setenv("TERM", "xterm-256color", 1);
        ::unsetenv("NO_COLOR");
    }
};

TEST_F(PreviewOnTerminal, IsASixelImageWhereItIsShown) {
    const std::string text = Shown("\033[?62;4;22c");
    EXPECT_THAT(text, HasSubstr(std::string(kQuestion) + kSixelBegin));
    EXPECT_THAT(text, HasSubstr("\"1;1;16;12"));
    EXPECT_THAT(text, HasSubstr("\033\\\n"));
    EXPECT_THAT(text, Not(HasSubstr("▀")));
}

TEST_F(PreviewOnTerminal, IsHalfBlocksElsewhere) {
    const std::string text = Shown("\033[?64;22;14c");
    EXPECT_THAT(text, HasSubstr("\033[38;2;127;127;127m\033[48;2;127;127;127m▀"));
    EXPECT_THAT(text, Not(HasSubstr(kSixelBegin)));
}

TEST_F(PreviewOnTerminal, IsHalfBlocksWhereNobodyAnswers) {
    EXPECT_THAT(Shown(""), HasSubstr("▀"));
}

TEST_F(PreviewOnTerminal, AsksNobodyWhereColoursAreNotWanted) {
    ::setenv("NO_COLOR", "1", 1);
    const std::string text = Shown("");
    EXPECT_THAT(text, Not(HasSubstr(kQuestion)));
    EXPECT_EQ(text.substr(0, 17), "================\n");
}

}  // namespace
