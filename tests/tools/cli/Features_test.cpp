/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of features, get, set, exec, watch, read and write against simulated cameras
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "../../support/WaitUntil.h"
#include "PlayedCameras.h"

namespace {

using nlohmann::json;
using test_support::WaitUntil;
using testing::HasSubstr;
using tools_test::BlockedRun;
using tools_test::RunResult;

constexpr const char* kRate9600 = "9600";

/// One camera that stays on from run to run.
class Features : public testing::Test {
protected:
    RunResult Run(const std::vector<std::string>& arguments) const { return cameras.Run(arguments); }
    std::string Get(const std::string& name) const { return Run({"get", "0", name}).out; }
    void ExpectFailure(const std::vector<std::string>& arguments, int exitCode, const char* text) const {
        const RunResult run = Run(arguments);
        EXPECT_EQ(run.exitCode, exitCode) << run.err;
        EXPECT_THAT(run.err, HasSubstr(text));
    }

    const tools_test::PlayedCameras cameras;
};

TEST_F(Features, ListsValuesAndRanges) {
    const RunResult run = Run({"features", "0"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, testing::ContainsRegex("\nWidth +Integer +RW +2048 +16 \\.\\. 2048 step 8 px\n"));
    EXPECT_THAT(run.out, testing::ContainsRegex("\nAcquisitionStart +Command +WO"));
    EXPECT_THAT(run.out, testing::Not(HasSubstr("ImageFormatControl")));
}

TEST_F(Features, ListsTheTree) {
    const RunResult run = Run({"features", "S0", "--tree"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, testing::ContainsRegex("\nImageFormatControl\n"));
    EXPECT_THAT(run.out, testing::ContainsRegex("\n  Width +Integer"));
}

TEST_F(Features, ListsThoseThatFitAPattern) {
    const std::string named = Run({"features", "0", "trigger*"}).out;
    EXPECT_THAT(named, HasSubstr("\nTriggerDelay "));
    EXPECT_THAT(named, testing::Not(HasSubstr("ExposureMode")));
    EXPECT_THAT(Run({"features", "0", "microseconds sensor"}).out, HasSubstr("\nExposureTime "));
    const std::string tree = Run({"features", "0", "digitalio", "--tree"}).out;
    EXPECT_THAT(tree, HasSubstr("\nDigitalIOControl\n  LineSelector "));
    EXPECT_THAT(tree, testing::Not(HasSubstr("ImageFormatControl")));
    EXPECT_EQ(json::parse(Run({"features", "0", "LineMode", "--json"}).out).at(0).at("Features").size(), 1U);
    ExpectFailure({"features", "0", "nosuch"}, 1, "no feature fits 'nosuch'");
}

TEST_F(Features, TellsAllOfOne) {
    const std::string text = Run({"info", "0", "PixelFormat", "LineInverter"}).out;
    for (const char* line :
         {"PixelFormat (Pixel Format)\n", "\n  Value          Mono8\n", "\n  Kind           Enumeration\n",
          "\n  Category       ImageFormatControl\n", "\n  Registers      PixelFormatReg: 0x100078, 4 bytes\n",
          "\n    Mono12 (17825797): Twelve bits of brightness", "\n  Selected by    LineSelector=Line1\n"})
        EXPECT_THAT(text, HasSubstr(line));
    ExpectFailure({"info", "0", "Widht"}, 1, "did you mean 'Width'?");
}

TEST_F(Features, TellsAllOfOneInJson) {
    const json info = json::parse(Run({"info", "0", "Width", "PixelFormat", "LineSelector", "--json"}).out);
    EXPECT_EQ(info.at(0).at("Max"), 2048);
    EXPECT_EQ(info.at(0).at("Registers").at(0).at("Address"), "0x10005C");
    EXPECT_EQ(info.at(1).at("Entries").at(2).at("Name"), "Mono12");
    EXPECT_EQ(info.at(1).at("Entries").at(2).at("Available"), true);
    EXPECT_THAT(info.at(2).at("Selects"), testing::Contains("LineInverter"));
}

TEST_F(Features, TellsWhyOneCanNotBeSet) {
    ASSERT_EQ(Run({"set", "0", "ExposureAuto=Continuous"}).exitCode, 0);
    const std::string text = Run({"info", "0", "ExposureTime"}).out;
    EXPECT_THAT(text, HasSubstr("\n  At least       1\n")) << "no 1.0";
    EXPECT_THAT(text, HasSubstr("Access         RO\n"));
    EXPECT_THAT(text, HasSubstr("it is locked (pIsLocked ExposureIsAutomatic; ExposureAuto=Continuous)"));
}

TEST_F(Features, ListsWhatALevelSees) {
    EXPECT_THAT(Run({"features", "0", "--visibility", "beginner"}).out, testing::Not(HasSubstr("LUTIndex")));
    EXPECT_THAT(Run({"features", "0", "--visibility", "Guru"}).out, HasSubstr("LUTIndex"));
    ExpectFailure({"features", "0", "--visibility", "gru"}, 2, "did you mean 'guru'?");
}

// A half of a pair of UTF-16, which no terminal and no reader of JSON takes.
TEST(TextOfACamera, IsShownAsBytesWhereItIsNoUtf8) {
    const tools_test::PlayedCameras played({"cam0,serial=S0,user-name=a\xED\xA0\x80z"});
    EXPECT_EQ(played.Run({"get", "S0", "DeviceUserID"}).out, "a\\xED\\xA0\\x80z\n");
    EXPECT_THAT(played.Run({"features", "S0", "DeviceUserID"}).out, HasSubstr(" a\\xED\\xA0\\x80z"));
    const std::string inJson = json::parse(played.Run({"get", "S0", "DeviceUserID", "--json"}).out).at("DeviceUserID");
    EXPECT_EQ(inJson, "a\uFFFD\uFFFD\uFFFDz");
}

TEST_F(Features, PrintsJson) {
    const RunResult run = Run({"features", "0", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    json width;
    for (const json& category : json::parse(run.out))
        for (const json& feature : category.at("Features"))
            if (feature.at("Name") == "Width")
                width = feature;
    EXPECT_EQ(width.at("Value"), 2048);
    EXPECT_EQ(width.at("Min"), 16);
    EXPECT_EQ(width.at("Inc"), 8);
    EXPECT_EQ(width.at("Streamable"), true);
}

TEST_F(Features, GetsOneValueBareAndSeveralWithNames) {
    EXPECT_EQ(Run({"get", "0", "Width"}).out, "2048\n");
    EXPECT_EQ(Run({"get", "0", "Width", "PixelFormat"}).out, "Width=2048\nPixelFormat=Mono8\n");
    EXPECT_EQ(json::parse(Run({"get", "0", "Width", "ReverseX", "--json"}).out),
              json({{"Width", 2048}, {"ReverseX", false}}));
}

TEST_F(Features, GetNamesWhatItDoesNotKnow) {
    ExpectFailure({"get", "0", "Widht"}, 1, "did you mean 'Width'?");
    ExpectFailure({"get", "0", "DeviceReset"}, 1, "DeviceReset has no value");
    ExpectFailure({"get", "nobody", "Width"}, 3, "there is no camera 'nobody'");
    ExpectFailure({"get", "0"}, 2, "error");
}

TEST_F(Features, SetsSeveralAtOnce) {
    const RunResult run = Run({"set", "0", "Width=0x200", "OffsetX=1024", "ExposureTime=12.5 us", "ReverseX=on",
                               "PixelFormat=mono12", "DeviceUserID=left=1"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(Run({"get", "0", "Width", "OffsetX", "ExposureTime", "ReverseX", "PixelFormat", "DeviceUserID"}).out,
              "Width=512\nOffsetX=1024\nExposureTime=12.5\nReverseX=true\nPixelFormat=Mono12\nDeviceUserID=left=1\n");
}

TEST_F(Features, SetsNothingWhenOneCanNotBe) {
    ExpectFailure({"set", "0", "Height=1024", "Width=9999"}, 1, "Width: 9999 is too large");
    ExpectFailure({"set", "0", "Height=1024", "Widht=8"}, 1, "did you mean 'Width'?");
    ExpectFailure({"set", "0", "Height=1024", "PixelFormat=Mono9"}, 1, "did you mean 'Mono8'?");
    ExpectFailure({"set", "0", "Height=1024", "SensorWidth=8"}, 1, "can only be read");
    ExpectFailure({"set", "0", "Height=1024", "AcquisitionStart=1"}, 1, "'vanto-cl exec' executes");
    ExpectFailure({"set", "0", "Height=1024", "Width"}, 2, "'Width' is no NAME=VALUE");
    EXPECT_EQ(Get("Height"), "2048\n");
    EXPECT_THAT(cameras.Command("stats cam0"), HasSubstr("ok"));
}

TEST_F(Features, SetPutsBackWhatALaterRefusalLeaves) {
    ExpectFailure({"set", "0", "Width=512", "OffsetX=1800"}, 1, "Nothing was changed.");
    EXPECT_EQ(Get("Width"), "2048\n");
}

TEST_F(Features, TakesMultiplesOfTheUnit) {
    EXPECT_EQ(Run({"set", "0", "ExposureTime=2 ms", "Width=1024 px"}).exitCode, 0);
    EXPECT_EQ(Get("ExposureTime"), "2000\n");
    ExpectFailure({"set", "0", "ExposureTime=2 Hz"}, 1, "a number in us, which '2 Hz' is not");
    ExpectFailure({"set", "0", "Gamma=2 ms"}, 1, "Gamma is a number without a unit, which '2 ms' is not");
}

TEST_F(Features, ShowsFloatsAsShortAsTheyAreExact) {
    EXPECT_EQ(Run({"set", "0", "ExposureTime=41.9"}).exitCode, 0);
    EXPECT_EQ(Get("ExposureTime"), "41.9\n");
    EXPECT_EQ(json::parse(Run({"get", "0", "ExposureTime", "--json"}).out).at("ExposureTime"), 41.9);
}

TEST_F(Features, PrintRatesAndRegistersAsJson) {
    EXPECT_EQ(json::parse(Run({"rate", "0", "--json"}).out), json({{"BaudRate", 9600}}));
    EXPECT_EQ(json::parse(Run({"read", "0", "0x4", "6", "--json"}).out),
              json({{"Address", "0x4"}, {"Length", 6}, {"Bytes", "4d61726c6f77"}}));
}

TEST_F(Features, SetsBehindSelectors) {
    EXPECT_EQ(Run({"set", "0", "LineSelector=Line2", "LineInverter=on", "LineSelector=Line1"}).exitCode, 0);
    EXPECT_EQ(Get("LineInverter"), "false\n");
    EXPECT_EQ(Run({"set", "0", "LineSelector=Line2"}).exitCode, 0);
    EXPECT_EQ(Get("LineInverter"), "true\n");
}

TEST_F(Features, ExecutesCommands) {
    ASSERT_EQ(Run({"set", "0", "Width=512"}).exitCode, 0);
    const RunResult run = Run({"exec", "0", "UserSetLoad"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(Get("Width"), "2048\n");
    ExpectFailure({"exec", "0", "Width"}, 1, "Width is no command");
    ExpectFailure({"exec", "0", "UserSetLaod"}, 1, "did you mean 'UserSetLoad'?");
    ExpectFailure({"exec", "0", "UserSetLoad", "--timeout", "soon"}, 2, "--timeout");
}

TEST_F(Features, ReadsAndWritesRegisters) {
    EXPECT_EQ(Run({"read", "0", "0x4", "6"}).out, "4d61726c6f77\n");
    EXPECT_THAT(Run({"read", "0", "4", "6", "--dump"}).out, HasSubstr("4d 61 72 6c 6f 77"));
    const std::string before = Run({"read", "0", "0x1000C0", "4"}).out;
    EXPECT_EQ(before, "00000000\n");
    EXPECT_EQ(Run({"write", "0", "0x1000C0", "0x00000001"}).exitCode, 0);
    EXPECT_EQ(Get("LUTEnable"), "true\n");
}

TEST_F(Features, RefusesWrongRegisters) {
    ExpectFailure({"read", "0", "x", "4"}, 2, "'x' is no address");
    ExpectFailure({"read", "0", "-4", "4"}, 2, "");
    ExpectFailure({"read", "0", "0", "0"}, 2, "LENGTH");
    ExpectFailure({"write", "0", "0", "123"}, 2, "'123' are no bytes");
    ExpectFailure({"read", "0", "0x900000000", "4"}, 1, "invalid address");
    ExpectFailure({"write", "0", "0", "12"}, 1, "write protected");
    ExpectFailure({"read", "1", "0", "4"}, 3, "no list has shown a camera with the number 1");
}

TEST_F(Features, WatchPrintsTheFirstLookOnce) {
    const RunResult run = Run({"watch", "0", "Width", "Height", "--count", "3", "--interval", "0.01"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "Width=2048\nHeight=2048\n");
    EXPECT_EQ(Run({"watch", "0", "Width", "--count", "1", "--json"}).out, "{\"Name\":\"Width\",\"Value\":2048}\n");
    ExpectFailure({"watch", "0", "Widht"}, 1, "did you mean");
    ExpectFailure({"watch", "0", "Width", "--count", "0"}, 2, "--count");
}

TEST_F(Features, CtrlCEndsWatchingAndGivesTheBaudRateBack) {
    BlockedRun run({"watch", "0", "Width", "--interval", "0.01"}, cameras.Variables());
    ASSERT_TRUE(WaitUntil([&] { return run.IsBlocked(); }));
    EXPECT_THAT(cameras.Command("baud cam0"), testing::Not(HasSubstr(kRate9600))) << "not at a higher rate yet";
    run.Interrupt();
    EXPECT_EQ(run.Wait().exitCode, 0);
    EXPECT_THAT(cameras.Command("baud cam0"), HasSubstr(kRate9600));
}

TEST_F(Features, FindTheCameraThatAKilledRunLeftAtAnotherBaudRate) {
    BlockedRun run({"watch", "0", "Width", "--interval", "0.01"}, cameras.Variables());
    ASSERT_TRUE(WaitUntil([&] { return run.IsBlocked(); }));
    run.Kill();
    EXPECT_EQ(run.Wait().exitCode, -1);
    EXPECT_EQ(cameras.Command("baud cam0"), "ok 921600");
    EXPECT_THAT(Run({"list"}).out, HasSubstr("S0"));
    EXPECT_EQ(Get("Width"), "2048\n");
}

TEST_F(Features, GivesTheBaudRateBackAfterFailures) {
    ExpectFailure({"get", "0", "Widht"}, 1, "did you mean");
    EXPECT_THAT(cameras.Command("baud cam0"), HasSubstr(kRate9600));
}

TEST_F(Features, WatchEndsWhenTheCameraIsGone) {
    BlockedRun run({"watch", "0", "Width", "--interval", "0.01"}, cameras.Variables());
    ASSERT_TRUE(WaitUntil([&] { return run.IsBlocked(); }));
    cameras.Command("unplug cam0");
    EXPECT_EQ(run.Wait().exitCode, 1);
}

TEST(FeaturesOfTwins, AskWhichIsMeant) {
    const tools_test::PlayedCameras cameras({"cam0,serial=S0", "cam1,serial=S0"});
    const RunResult run = cameras.Run({"get", "S0", "Width"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_THAT(run.err, HasSubstr("'S0' names 2 cameras"));
    EXPECT_EQ(cameras.Run({"get", "COM_Port#cam1", "Width"}).exitCode, 0);
}

TEST_F(Features, CompletesWords) {
    Run({"get", "0", "Width"});
    const auto complete = [&](std::vector<std::string> words) {
        words.insert(words.begin(), {"complete", "line"});
        return Run(words).out;
    };
    EXPECT_THAT(complete({"get", "0", "Expos"}), HasSubstr("\nExposureTime\n"));
    EXPECT_EQ(complete({"exec", "0", "UserSetL"}), "UserSetLoad\n");
    EXPECT_EQ(complete({"set", "0", "ReverseX="}), "ReverseX=on\nReverseX=off\n");
    EXPECT_EQ(complete({"set", "0", "Widt"}), ":nospace\nWidthMax=\nWidth=\n");
    EXPECT_EQ(complete({"grab", "0", "-o", ""}), ":folders\n");
    EXPECT_THAT(complete({"conf"}), testing::StartsWith("config"));
    EXPECT_EQ(complete({"poems", ""}), "");
    EXPECT_EQ(Run({"complete", "poems"}).exitCode, 2);
}

}  // namespace
