/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of which camera a command uses: numbers, cameras that somebody uses, and which ports are asked
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "../../support/WaitUntil.h"
#include "PlayedCameras.h"
#include "system/Files.h"

namespace {

using nlohmann::json;
using test_support::WaitUntil;
using testing::HasSubstr;
using testing::Not;
using tools_test::BlockedRun;
using tools_test::PlayedCameras;
using tools_test::RunResult;

/// The packets that a camera has had.
std::string PacketsOf(const PlayedCameras& played, const std::string& camera) {
    const std::string statistics = played.Command("stats " + camera);
    const std::size_t start = statistics.find("packets-in=");
    return statistics.substr(start, statistics.find(' ', start) - start);
}

class Number : public testing::Test {
protected:
    RunResult Run(const std::vector<std::string>& arguments) const { return played.Run(arguments); }

    const PlayedCameras played{{"cam0,serial=S0", "cam1,serial=S1"}};
};

TEST_F(Number, IsThatOfTheListEvenIfTheCameraBeforeIsGone) {
    Run({"list"});
    played.Command("unplug cam0");
    EXPECT_EQ(Run({"get", "1", "DeviceSerialNumber"}).out, "S1\n");
}

TEST_F(Number, OfACameraThatIsGoneIsNoOther) {
    Run({"list"});
    played.Command("unplug cam0");
    const RunResult run = Run({"set", "0", "Width=512"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.err, HasSubstr("camera 0, Marlow H2048 (S0) on COM_Port#cam0, does not answer"));
    EXPECT_EQ(Run({"get", "1", "Width"}).out, "2048\n");
}

TEST_F(Number, OfACameraThatWasExchangedSaysWhatIsThere) {
    Run({"list"});
    played.Command("exchange cam0 serial=S9,model=H4096");
    const RunResult run = Run({"set", "0", "Width=512"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.err, HasSubstr("camera 0, Marlow H2048 (S0) on COM_Port#cam0"));
    EXPECT_THAT(run.err, HasSubstr("Marlow H4096 (S9) is there now"));
    EXPECT_EQ(Run({"get", "S9", "Width"}).out, "4096\n");
}

TEST_F(Number, GoesAlongWithTheCamera) {
    Run({"list"});
    played.Command("exchange cam0 serial=S1");
    played.Command("exchange cam1 serial=S0");
    EXPECT_EQ(Run({"get", "0", "DeviceSerialNumber"}).out, "S0\n");
    EXPECT_EQ(Run({"get", "1", "DeviceSerialNumber"}).out, "S1\n");
}

TEST_F(Number, OfANewCameraIsANewOne) {
    Run({"list"});
    played.Command("exchange cam0 serial=S9");
    const json list = json::parse(Run({"list", "--json"}).out);
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[0].at("Index"), 1);
    EXPECT_EQ(list[1].at("SerialNumber"), "S9");
    EXPECT_EQ(list[1].at("Index"), 2);
}

TEST_F(Number, ThatNoListHasShownIsNoCamera) {
    Run({"list"});
    const RunResult run = Run({"get", "2", "Width"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.err, HasSubstr("no list has shown a camera with the number 2"));
}

TEST_F(Number, NeedsNoListBefore) {
    EXPECT_EQ(Run({"get", "1", "DeviceSerialNumber"}).out, "S1\n");
}

TEST_F(Number, BeginsAnewWhenTheListForgets) {
    Run({"list"});
    played.Command("exchange cam0 serial=S9");
    EXPECT_THAT(Run({"list", "--forget"}).out, HasSubstr("0  Marlow H2048 (S9)"));
}

TEST_F(Number, ComesFromAFileThatMayBeDamaged) {
    Run({"list"});
    std::ofstream(played.Folder() / "state" / "cameras.json") << "{";
    const RunResult run = Run({"get", "1", "DeviceSerialNumber"});
    EXPECT_EQ(run.out, "S1\n");
    EXPECT_THAT(run.err, HasSubstr("is ignored: it is damaged"));
}

/// Two cameras, of which another vanto-cl uses the first.
class InUse : public testing::Test {
protected:
    InUse() {
        played.Run({"list"});
        user.emplace(std::vector<std::string>{"watch", "0", "Width", "--interval", "0.02"}, played.Variables());
        EXPECT_TRUE(WaitUntil([&] { return user->IsBlocked(); }));
    }
    RunResult Run(const std::vector<std::string>& arguments) const { return played.Run(arguments); }

    const PlayedCameras played{{"cam0,serial=S0", "cam1,serial=S1"}};
    std::optional<BlockedRun> user;
};

TEST_F(InUse, IsListedWithItsUser) {
    const RunResult run = Run({"list"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.out, HasSubstr("0  Marlow H2048 (S0)  COM_Port#cam0             in use by vanto-cl ("));
    EXPECT_THAT(run.out, HasSubstr("1 camera found in"));
    EXPECT_THAT(run.out, HasSubstr(", 1 in use\n"));
}

TEST_F(InUse, IsListedInJson) {
    const json list = json::parse(Run({"list", "--json"}).out);
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[0].at("State"), "in use");
    EXPECT_EQ(list[0].at("SerialNumber"), "S0");
    EXPECT_EQ(list[0].at("UsedBy").at("Program"), "vanto-cl");
    EXPECT_GT(list[0].at("UsedBy").at("PID"), 1);
    EXPECT_EQ(list[1].at("State"), "ready");
    EXPECT_EQ(list[1].at("UsedBy"), nullptr);
}

class InUseByAName : public InUse, public testing::WithParamInterface<const char*> {};

TEST_P(InUseByAName, IsSaidByCommands) {
    const RunResult run = Run({"set", GetParam(), "Width=512"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("in use by vanto-cl ("));
    EXPECT_EQ(Run({"get", "S1", "Width"}).out, "2048\n");
}

INSTANTIATE_TEST_SUITE_P(All, InUseByAName, testing::Values("0", "S0", "Marlow H2048 (S0)", "COM_Port#cam0"));

TEST_F(InUse, LeavesNumbersUncertainToWhoNeverSawAList) {
    std::filesystem::remove_all(played.Folder() / "state");
    const RunResult run = Run({"set", "0", "Width=512"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.err, HasSubstr("which camera has the number 0 can't be told"));
}

class KnownCamera : public testing::TestWithParam<const char*> {};

TEST_P(KnownCamera, IsUsedWithoutAskingTheOthers) {
    const PlayedCameras played{{"cam0,serial=S0", "cam1,serial=S1"}};
    played.Run({"list"});
    const std::string before = PacketsOf(played, "cam1");
    EXPECT_EQ(played.Run({"get", GetParam(), "DeviceSerialNumber"}).out, "S0\n");
    EXPECT_EQ(PacketsOf(played, "cam1"), before);
}

INSTANTIATE_TEST_SUITE_P(All, KnownCamera, testing::Values("0", "S0", "Marlow H2048 (S0)", "COM_Port#cam0"));

TEST(UnknownCamera, IsFoundAtItsPortWithoutAskingTheOthers) {
    const PlayedCameras played{{"cam0,serial=S0", "cam1,serial=S1"}};
    EXPECT_EQ(played.Run({"get", "COM_Port#cam0", "DeviceSerialNumber"}).out, "S0\n");
    EXPECT_THAT(played.Command("stats cam1"), HasSubstr("packets-in=0 "));
}

TEST(KnownCamera, GetsWhatTheConfigurationSaysNow) {
    const PlayedCameras played{{"cam0,serial=S0"}};
    played.Run({"list"});
    const std::filesystem::path file = played.Folder() / "PortConfiguration_x64.xml";
    tools::WriteFile(file,
                     "<a><Port><ID>COM_Port#cam0</ID><Enabled>1</Enabled><Manufacturer>Marlow</Manufacturer>"
                     "<BaudRate>Baud38400</BaudRate></Port></a>");
    EXPECT_EQ(played.Run({"get", "S0", "ClSerialPortBaudRate"}).out, "Baud38400\n");
    tools::WriteFile(file, "<a><Port><ID>COM_Port#cam0</ID><Enabled>0</Enabled></Port></a>");
    const RunResult run = played.Run({"get", "COM_Port#cam0", "Width"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.err, HasSubstr("port 'COM_Port#cam0' is not enabled"));
}

TEST(KnownCamera, RestsWhereTheUserHasBroughtIt) {
    const PlayedCameras played{{"cam0,serial=S0"}};
    played.Run({"rate", "S0", "115200"});
    EXPECT_EQ(played.Run({"get", "S0", "Width"}).err, "");
    EXPECT_THAT(played.Run({"list"}).err, Not(HasSubstr("a program left it there")));
}

TEST(Completion, AsksNoPort) {
    const PlayedCameras played;
    EXPECT_EQ(played.Run({"complete", "line", "get", ""}).out, "");
    EXPECT_THAT(played.Command("stats cam0"), HasSubstr("packets-in=0 "));
    played.Run({"get", "S0", "Width"});
    const std::string before = PacketsOf(played, "cam0");
    EXPECT_EQ(played.Run({"complete", "line", "get", ""}).out,
              "S0\tMarlow H2048 (S0)\nCOM_Port#cam0\tMarlow H2048 (S0)\n");
    EXPECT_EQ(played.Run({"complete", "line", "set", "S0", "PixelFormat=Mono1"}).out,
              "PixelFormat=Mono10\nPixelFormat=Mono12\nPixelFormat=Mono16\n");
    EXPECT_EQ(PacketsOf(played, "cam0"), before);
}

}  // namespace
