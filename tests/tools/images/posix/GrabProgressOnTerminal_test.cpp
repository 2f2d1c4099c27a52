/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what a grab shows on a terminal while it goes on
 */
#include "images/GrabProgress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "../../output/PseudoTerminal.h"
#include "../GrabShow.h"
#include "output/Output.h"

namespace {

using namespace tools;
using tools_test::CountsOf;
using tools_test::ShowFor;

TEST(GrabProgressOnTerminal, IsABarAndGoesAway) {
    tools_test::PseudoTerminal terminal(80);
    Output output(terminal.Stream(), terminal.Stream());
    {
        GrabProgress progress(output, 4);
        ShowFor(progress, CountsOf(1), 0.2);
        EXPECT_THAT(terminal.Text(), testing::ContainsRegex("\r.###\\.\\.\\.\\.\\.\\.\\.\\.\\.. 1 of 4 frames, "
                                                            "[0-9.]+ frames/s, [0-9.]+ MB/s"));
    }
    EXPECT_EQ(terminal.Text(), "\r\033[K");
}

TEST(GrabProgressOnTerminal, NeverLeavesItsBar) {
    tools_test::PseudoTerminal terminal(80);
    Output output(terminal.Stream(), terminal.Stream());
    GrabProgress progress(output, 1);
    ShowFor(progress, CountsOf(3), 0.2);
    EXPECT_THAT(terminal.Text(), testing::HasSubstr("[############] 3 of 1 frames"));
}

TEST(GrabProgressOnTerminal, StaysOnOneLine) {
    tools_test::PseudoTerminal terminal(60);
    Output output(terminal.Stream(), terminal.Stream());
    GrabProgress progress(output, 1'000'000'000);
    ShowFor(progress, CountsOf(1), 0.2);
    EXPECT_THAT(terminal.Text(), testing::StartsWith("\r1 of 1000000000 frames, "));
}

TEST(GrabProgressOnTerminal, IsCutOnANarrowOne) {
    tools_test::PseudoTerminal terminal(20);
    Output output(terminal.Stream(), terminal.Stream());
    GrabProgress progress(output, 1'000'000'000);
    ShowFor(progress, CountsOf(1), 0.2);
    EXPECT_EQ(terminal.Text(), "\r1 of 1000000000 fr…\033[K");
}

}  // namespace
