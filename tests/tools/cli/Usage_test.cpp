/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of vanto-cl's help, version and answers to wrong command lines
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>

#include "../Pattern.h"
#include "ProgramRun.h"

namespace {

using testing::HasSubstr;
using tools_test::RunResult;
using tools_test::RunVantoCl;

TEST(Usage, VersionIsPrinted) {
    const RunResult run = RunVantoCl({"--version"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.out, tools_test::ContainsPattern("^vanto-cl [0-9.]+\n$"));
}

TEST(Usage, HelpListsTheCommandsAndExitCodes) {
    const RunResult run = RunVantoCl({"--help"});
    EXPECT_EQ(run.exitCode, 0);
    for (const char* text : {"list", "ports", "xml", "config", "doctor", "describe", "--simulate[=N]", "Exit codes"})
        EXPECT_THAT(run.out, HasSubstr(text));
}

TEST(Usage, HelpListsTheWordsOfAnOptionOnce) {
    const std::string help = RunVantoCl({"grab", "--help"}).out;
    EXPECT_THAT(help, HasSubstr("--format png|pnm|pgm|tiff|raw|y4m|none\n"));
}

using Words = std::vector<std::string>;

class HelpOf : public testing::TestWithParam<Words> {};

TEST_P(HelpOf, EachCommandIsThere) {
    Words words = GetParam();
    words.emplace_back("--help");
    const RunResult run = RunVantoCl(words);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.out, HasSubstr("Usage: vanto-cl " + GetParam().front()));
    EXPECT_EQ(run.err, "");
}

INSTANTIATE_TEST_SUITE_P(All, HelpOf,
                         testing::Values(Words{"list"}, Words{"ports"}, Words{"xml"}, Words{"config"},
                                         Words{"config", "path"}, Words{"config", "show"}, Words{"config", "check"},
                                         Words{"config", "init"}, Words{"doctor"}, Words{"describe"}));

struct WrongLine {
    Words words;
    const char* message;
};

// How the test runner names a case.
void PrintTo(const WrongLine& value, std::ostream* out) {
    *out << testing::PrintToString(value.words);
}

class WrongUsage : public testing::TestWithParam<WrongLine> {};

TEST_P(WrongUsage, EndsWithTwoAndSaysWhy) {
    const RunResult run = RunVantoCl(GetParam().words);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(
    All, WrongUsage,
    testing::Values(WrongLine{{}, "error: a command is required"}, WrongLine{{"lsit"}, "did you mean 'list'?"},
                    WrongLine{{"list", "--jsno"}, "did you mean '--json'?"}, WrongLine{{"xml"}, "DEVICE is required"},
                    WrongLine{{"config"}, "required"}, WrongLine{{"config", "chekc"}, "did you mean 'check'?"},
                    WrongLine{{"--simulate=0", "list"}, "1 to 64 cameras"},
                    WrongLine{{"--simulate=65", "list"}, "1 to 64 cameras"},
                    WrongLine{{"--simulate=x", "list"}, "--simulate"}, WrongLine{{"list", "extra"}, "extra"}));

}  // namespace
