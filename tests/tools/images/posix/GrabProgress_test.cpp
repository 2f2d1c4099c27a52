/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what a grab shows while it goes on
 */
#include "images/GrabProgress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <thread>

#include "../../output/PseudoTerminal.h"
#include "images/FrameCounts.h"
#include "output/Output.h"

namespace {

using namespace tools;

FrameCounts CountsOf(int frames) {
    FrameCounts counts;
    Vanto::GrabResult result;
    result.status = Vanto::Grabbed;
    result.payloadSize = 1'000'000;
    for (int frame = 0; frame < frames; ++frame)
        counts.Add(result);
    return counts;
}

/// Shows the counts again and again for so long that they are not too fresh to be shown.
void ShowFor(GrabProgress& progress, const FrameCounts& counts, double seconds) {
    while (progress.Seconds() < seconds)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    progress.Show(counts);
}

TEST(GrabProgress, IsABarOnATerminalAndGoesAway) {
    tools_test::PseudoTerminal terminal(80);
    Output output(terminal.Stream(), terminal.Stream());
    {
        GrabProgress progress(output, 4);
        ShowFor(progress, CountsOf(1), 0.2);
        EXPECT_THAT(
            terminal.Text(),
            testing::ContainsRegex("\r.######\\.\\.\\.\\.\\.\\.\\.\\.\\.\\.\\.\\.\\.\\.\\.\\.\\.\\.. 1 of 4 frames, "
                                   "[0-9.]+ frames/s, [0-9.]+ MB/s"));
    }
    EXPECT_EQ(terminal.Text(), "\r\033[K");
}

TEST(GrabProgress, NeverLeavesItsBar) {
    tools_test::PseudoTerminal terminal(80);
    Output output(terminal.Stream(), terminal.Stream());
    GrabProgress progress(output, 1);
    ShowFor(progress, CountsOf(3), 0.2);
    EXPECT_THAT(terminal.Text(), testing::HasSubstr("[########################] 3 of 1 frames"));
}

TEST(GrabProgress, IsLinesElsewhere) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), &std::fclose);
    Output output(file.get(), file.get());
    {
        GrabProgress progress(output, 4);
        progress.Show(CountsOf(1));  // too early for a line
        ShowFor(progress, CountsOf(2), 2.1);
    }
    std::rewind(file.get());
    std::string text(1000, '\0');
    text.resize(std::fread(text.data(), 1, text.size(), file.get()));
    EXPECT_THAT(text, testing::MatchesRegex("2 of 4 frames, [0-9.]+ frames/s, [0-9.]+ MB/s\n"));
}

TEST(GrabProgress, CountsInMillions) {
    EXPECT_EQ(RateText(CountsOf(3), 2), "1.5 frames/s, 1.5 MB/s");
    EXPECT_EQ(RateText(CountsOf(0), 0), "0.0 frames/s, 0.0 MB/s");
}

}  // namespace
