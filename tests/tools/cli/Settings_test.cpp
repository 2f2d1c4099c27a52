/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of save and load against simulated cameras
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "PlayedCameras.h"

namespace {

using testing::HasSubstr;
using tools_test::RunResult;

class Settings : public testing::Test {
protected:
    RunResult Run(const std::vector<std::string>& arguments) const { return cameras.Run(arguments); }
    RunResult Load(const std::string& text) const {
        std::ofstream(File()) << text;
        return Run({"load", "0", File()});
    }
    std::string File() const { return (cameras.Folder() / "settings.txt").string(); }

    const tools_test::PlayedCameras cameras;
};

TEST_F(Settings, ComeBackAsTheyWere) {
    ASSERT_EQ(
        Run({"set", "0", "Width=512", "OffsetX=1024", "ExposureTime=1234.5", "PixelFormat=Mono12", "LineSelector=Line3",
             "LineInverter=on", "LineSelector=Line1", "TriggerSelector=AcquisitionStart", "TriggerSource=CC2"})
            .exitCode,
        0);
    const std::string before = Run({"save", "0", "-"}).out;
    const RunResult saved = Run({"save", "0", File()});
    EXPECT_EQ(saved.exitCode, 0) << saved.err;
    ASSERT_EQ(Run({"exec", "0", "UserSetLoad"}).exitCode, 0);
    ASSERT_NE(Run({"save", "0", "-"}).out, before);
    const RunResult loaded = Run({"load", "0", File()});
    EXPECT_EQ(loaded.exitCode, 0) << loaded.err;
    EXPECT_EQ(Run({"save", "0", "-"}).out, before);
}

TEST_F(Settings, AreSetInTheOrderTheCameraWants) {
    ASSERT_EQ(Run({"set", "0", "Width=512", "OffsetX=1536"}).exitCode, 0);
    const RunResult run = Load("Width=2048\nOffsetX=0\n");
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(Run({"get", "0", "Width", "OffsetX"}).out, "Width=2048\nOffsetX=0\n");
    EXPECT_EQ(Load("OffsetX=1024\nWidth=512\n").exitCode, 0);
    EXPECT_EQ(Run({"get", "0", "Width", "OffsetX"}).out, "Width=512\nOffsetX=1024\n");
}

TEST_F(Settings, LeaveSelectorsWhereTheyStood) {
    ASSERT_EQ(Run({"set", "0", "LineSelector=Line2", "TriggerSelector=AcquisitionStart"}).exitCode, 0);
    EXPECT_EQ(Run({"save", "0", File()}).exitCode, 0);
    EXPECT_EQ(Run({"load", "0", File()}).exitCode, 0);
    EXPECT_EQ(Run({"get", "0", "LineSelector", "TriggerSelector"}).out,
              "LineSelector=Line2\nTriggerSelector=AcquisitionStart\n");
}

TEST_F(Settings, ReportEveryRefusalAndSetTheRest) {
    const RunResult run = Load("Gamma=99\nGane=3\nHeight=1024\n[LineSelector=Line7]\nLineInverter=on\n");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("settings.txt:1: Gamma: value 99 must not be larger than 4. It takes 0.25 .. 4"));
    EXPECT_THAT(run.err, HasSubstr("has no feature 'Gane'"));
    EXPECT_THAT(run.err, HasSubstr("settings.txt:5: [LineSelector=Line7] LineSelector has no entry 'Line7'"));
    EXPECT_THAT(run.out, HasSubstr("1 of 4 settings are in the camera"));
    EXPECT_EQ(Run({"get", "0", "Height"}).out, "1024\n");
}

TEST_F(Settings, ReportWhatALaterLineTookBack) {
    const RunResult run = Load("Height=1024\nHeight=512\n");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("Height was set and is "));
}

TEST_F(Settings, OfAFaultyFileTouchNoCamera) {
    const RunResult run = Load("Height=1024\nnonsense\n");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("settings.txt:2: 'nonsense' is no NAME=VALUE"));
    EXPECT_EQ(Run({"get", "0", "Height"}).out, "2048\n");
    EXPECT_EQ(Run({"load", "0", File() + ".none"}).exitCode, 1);
    EXPECT_EQ(Run({"save", "0", File() + ".none/x"}).exitCode, 1);
    EXPECT_EQ(Run({"save", "nobody", File()}).exitCode, 3);
}

}  // namespace
