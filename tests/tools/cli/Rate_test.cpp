/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the baud rate that commands leave a camera at, and of the command rate
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "../../support/WaitUntil.h"
#include "PlayedCameras.h"
#include "system/Files.h"
#include "vanto/VantoFolders.h"

namespace {

using test_support::WaitUntil;
using testing::HasSubstr;
using tools_test::BlockedRun;
using tools_test::PlayedCameras;
using tools_test::RunResult;

constexpr int kInterrupted = 130;
// Half a minute at the highest rate.
constexpr const char* kLongDescription = "cam0,serial=S0,paced=on,description-size=3000000";

TEST(Rate, IsShown) {
    const PlayedCameras played({"cam0,serial=S0,baud=57600"});
    const RunResult run = played.Run({"rate", "S0"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "57600\n");
    EXPECT_EQ(played.Command("baud cam0"), "ok 57600");
}

TEST(Rate, StaysWhereItIsBrought) {
    const PlayedCameras played({"cam0,serial=S0,baud=921600"});
    const RunResult run = played.Run({"rate", "S0", "9600"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "Marlow H2048 (S0) stands at 9600 baud now; it was 921600.\n");
    played.Run({"get", "S0", "Width"});
    EXPECT_EQ(played.Command("baud cam0"), "ok 9600");
}

TEST(Rate, IsOneOfCameraLink) {
    const PlayedCameras played;
    const RunResult run = played.Run({"rate", "S0", "1200"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_THAT(run.err, HasSubstr("They are 9600, 19200,"));
}

TEST(Rate, IsOneThatTheCameraOffers) {
    const PlayedCameras played({"cam0,serial=S0,rates=0x11"});
    const RunResult run = played.Run({"rate", "S0", "921600"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("It offers 9600, 115200."));
}

TEST(StrandedCamera, IsToldToWhoeverOpensIt) {
    const PlayedCameras played({"cam0,serial=S0,baud=921600"});
    EXPECT_THAT(played.Run({"get", "S0", "Width"}).err,
                HasSubstr("Marlow H2048 (S0) stands at 921600 baud: a program left it there. "
                          "'vanto-cl rate COM_Port#cam0 9600' brings it back."));
    EXPECT_EQ(played.Command("baud cam0"), "ok 921600");
}

TEST(StrandedCamera, IsNoneAtTheFirstRate) {
    const PlayedCameras played;
    EXPECT_EQ(played.Run({"get", "S0", "Width"}).err, "");
}

/// A camera whose port asks for a rate that it does not have.
class RefusedRate : public testing::Test {
protected:
    RefusedRate() {
        const std::filesystem::path file = m_played.Folder() / "PortConfiguration_x64.xml";
        std::string text = Vanto::textFileToString(file.string()).str();
        text.replace(text.rfind("</Port>"), 0, "<BaudRate>Baud921600</BaudRate>");
        tools::WriteFile(file, text);
    }

    const PlayedCameras m_played{{"cam0,serial=S0,rates=0x1f"}};
};

TEST_F(RefusedRate, IsToldByCommands) {
    const RunResult run = m_played.Run({"get", "S0", "Width"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.err, HasSubstr("Marlow H2048 (S0) does not take its baud rate: "));
    EXPECT_THAT(run.err, HasSubstr("'vanto-cl doctor'"));
}

TEST_F(RefusedRate, IsReplacedByTheHighestThatTheDoctorFindsToWork) {
    const RunResult run = m_played.Run({"doctor"});
    EXPECT_THAT(run.out, HasSubstr("Write <BaudRate>Baud115200</BaudRate> for COM_Port#cam0 into the port"));
    EXPECT_EQ(m_played.Command("baud cam0"), "ok 9600");
}

class EndedFetch : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(EndedFetch, LeavesTheCameraAtItsRate) {
    const PlayedCameras played({kLongDescription});
    BlockedRun run(GetParam(), played.Variables());
    ASSERT_TRUE(WaitUntil([&] { return played.Command("baud cam0") == "ok 921600"; }));
    run.Interrupt();
    EXPECT_EQ(run.Wait().exitCode, kInterrupted);
    EXPECT_EQ(played.Command("baud cam0"), "ok 9600");
}

INSTANTIATE_TEST_SUITE_P(OfACommand, EndedFetch,
                         testing::Values(std::vector<std::string>{"xml", "S0"},
                                         std::vector<std::string>{"get", "S0", "Width"},
                                         std::vector<std::string>{"rate", "S0", "19200"}));

}  // namespace
