/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what a grab shows while it goes on
 */
#include "images/GrabProgress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>

#include "../Pattern.h"
#include "GrabShow.h"
#include "output/Output.h"

namespace {

using namespace tools;
using tools_test::ContainsPattern;
using tools_test::CountsOf;
using tools_test::ShowFor;

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
    EXPECT_THAT(text, ContainsPattern("^2 of 4 frames, [0-9.]+ frames/s, [0-9.]+ MB/s, 50%, [0-9.]+ m?s left\n$"));
}

TEST(GrabProgress, CountsInMillions) {
    EXPECT_EQ(RateText(CountsOf(3), 2), "1.5 frames/s, 1.5 MB/s");
    EXPECT_EQ(RateText(CountsOf(0), 0), "0.0 frames/s, 0.0 MB/s");
}

}  // namespace
