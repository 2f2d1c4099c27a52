/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the commands on a terminal of 80 columns
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <ostream>

#include "../PlayedCameras.h"
#include "output/Text.h"

namespace {

using testing::HasSubstr;
using tools_test::RunOnTerminal;
using tools_test::RunResult;

constexpr unsigned short kColumns = 80;

using Words = std::vector<std::string>;

/// Lines that are longer than a terminal, but for those that are one word: a path stays whole to be copied.
std::vector<std::string> LongLines(const std::string& text) {
    std::vector<std::string> found;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::string line = text.substr(begin, end - begin);
        if (tools::DisplayWidth(line) > kColumns && tools::Trimmed(line).find(' ') != std::string::npos)
            found.push_back(line);
        begin = end + 1;
    }
    return found;
}

class OnTerminalOf80Columns : public testing::TestWithParam<Words> {
protected:
    RunResult Run(const Words& words) const {
        tools_test::Environment environment = m_cameras.Variables();
        environment["TERM"] = "xterm";
        return RunOnTerminal(words, kColumns, environment);
    }

    const tools_test::PlayedCameras m_cameras{{"cam0,serial=S0", "a-camera-with-a-long-name,serial=S0123456789ABCDEF"}};
};

TEST_P(OnTerminalOf80Columns, NoLineIsLonger) {
    const RunResult run = Run(GetParam());
    EXPECT_EQ(run.signal, 0);
    EXPECT_THAT(run.out, testing::Not(testing::IsEmpty()));
    EXPECT_THAT(LongLines(run.out), testing::IsEmpty());
}

std::string NameOf(const testing::TestParamInfo<Words>& line) {
    std::string name;
    for (const char letter : testing::PrintToString(line.param))
        name += std::isalnum(static_cast<unsigned char>(letter)) ? letter : '_';
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, OnTerminalOf80Columns,
                         testing::Values(Words{"list"}, Words{"ports"}, Words{"features", "0"},
                                         Words{"features", "0", "--tree"},
                                         Words{"info", "0", "ExposureTime", "PixelFormat"}, Words{"doctor"},
                                         Words{"config", "show"}, Words{"config", "check"}, Words{"config", "path"},
                                         Words{"get", "0", "Widht"}, Words{"set", "0", "Width=9999"},
                                         Words{"get", "nobody", "Width"}),
                         &NameOf);

TEST_F(OnTerminalOf80Columns, NamesOfFeaturesStayWhole) {
    const RunResult run = Run({"features", "0"});
    EXPECT_THAT(run.out, HasSubstr("AcquisitionFrameRateEnable  "));
    EXPECT_THAT(run.out, HasSubstr("DeviceLinkHeartbeatTimeout  "));
    EXPECT_THAT(Run({"list"}).out, HasSubstr("COM_Port#a-camera-with-a-long-name"));
}

/// What a command shows while it goes on.
std::string ShownBy(const tools_test::PlayedCameras& cameras, const Words& words) {
    tools_test::Environment environment = cameras.Variables();
    environment["TERM"] = "xterm";
    const RunResult run = RunOnTerminal(words, kColumns, environment);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    return run.err;
}

TEST(ProgressOnTerminal, NamesEachPortWithPercentAndTimeLeft) {
    const tools_test::PlayedCameras cameras({"cam0,serial=S0", "silent1,silent=on", "silent2,silent=on"});
    const std::string shown = ShownBy(cameras, {"list"});
    EXPECT_THAT(shown,
                testing::ContainsRegex("Looking for cameras: COM_Port#silent1, port 2 of 3: 33%, [0-9.]+ m?s left"));
    EXPECT_THAT(shown,
                testing::ContainsRegex("Looking for cameras: COM_Port#silent2, port 3 of 3: 66%, [0-9.]+ m?s left"));
}

// Each packet takes its time, so that there is something to be seen.
TEST(ProgressOnTerminal, TellsPercentRateAndTimeLeftOfADescription) {
    const tools_test::PlayedCameras cameras({"cam0,serial=S0,zip=off,delay=5"});
    EXPECT_THAT(ShownBy(cameras, {"xml", "COM_Port#cam0", "-o", (cameras.Folder() / "camera.xml").string()}),
                testing::ContainsRegex("description: [1-9][0-9]?%, [0-9.]+ kB/s, [0-9.]+ m?s left"));
}

TEST(ProgressOnTerminal, TellsPercentAndTimeLeftOfSettings) {
    const tools_test::PlayedCameras cameras({"cam0,serial=S0"});
    const std::string file = (cameras.Folder() / "settings.txt").string();
    ASSERT_EQ(cameras.Run({"save", "COM_Port#cam0", file}).exitCode, 0);
    ASSERT_EQ(cameras.Command("delay cam0 10"), "ok");
    EXPECT_THAT(ShownBy(cameras, {"load", "S0", file}),
                testing::ContainsRegex("Setting Marlow H2048 .S0.: [1-9][0-9]?%, [0-9.]+ m?s left"));
}

}  // namespace
