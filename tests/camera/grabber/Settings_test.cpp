/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The simulated grabber's parameters
 */

#include "Settings.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using grabber::ParseSettings;
using grabber::Pattern;
using grabber::Settings;

std::string RefusalOf(const std::string& parameters) {
    try {
        ParseSettings(parameters);
        return "";
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
}

TEST(Settings, HaveDefaults) {
    const Settings settings = ParseSettings("SaperaSimulated");
    EXPECT_EQ(settings.frameRate, 100);
    EXPECT_EQ(settings.pitch, 1U);
    EXPECT_EQ(settings.pattern, Pattern::kDiagonal);
    EXPECT_EQ(settings.dropEvery, 0U);
    EXPECT_EQ(settings.frames, 0U);
    EXPECT_FALSE(settings.triggered);
    EXPECT_EQ(settings.firstTag, 0U);
    EXPECT_EQ(settings.pixelClock, 85000000U);
    EXPECT_TRUE(settings.poCL);
    EXPECT_FALSE(settings.failInit || settings.failStart || settings.failStop);
}

TEST(Settings, AreReadByName) {
    const Settings settings = ParseSettings(
        "SaperaSimulated;FrameRate=0.5;Pitch=64;Pattern=Noise;DropEvery=10;Frames=3;Trigger=On;FirstTag=4294967295;"
        "PixelClock=40000000;PoCL=Off;");
    EXPECT_EQ(settings.frameRate, 0.5);
    EXPECT_EQ(settings.pitch, 64U);
    EXPECT_EQ(settings.pattern, Pattern::kNoise);
    EXPECT_EQ(settings.dropEvery, 10U);
    EXPECT_EQ(settings.frames, 3U);
    EXPECT_TRUE(settings.triggered);
    EXPECT_EQ(settings.firstTag, 4294967295U);
    EXPECT_EQ(settings.pixelClock, 40000000U);
    EXPECT_FALSE(settings.poCL);
}

TEST(Settings, KeepTextsOfFailures) {
    const Settings settings =
        ParseSettings("SaperaSimulated;FailInit=Invalid firmware on grabber detected;FailStart=;FailStop=a=b");
    EXPECT_EQ(settings.failInit, "Invalid firmware on grabber detected");
    EXPECT_EQ(settings.failStart, "");
    EXPECT_EQ(settings.failStop, "a=b");
}

TEST(Settings, RefuseUnknownParameters) {
    EXPECT_EQ(RefusalOf("SaperaSimulated;Speed=3"), "Unknown parameter 'Speed=3' of the simulated grabber.");
    EXPECT_EQ(RefusalOf("SaperaSimulated;Pitch"), "Unknown parameter 'Pitch' of the simulated grabber.");
}

TEST(Settings, RefuseInvalidValues) {
    EXPECT_EQ(RefusalOf("S;Pitch=0"), "Invalid value '0' of the simulated grabber's parameter 'Pitch'.");
    for (const char* bad : {"Pitch=-1", "Pitch=", "Pitch=8x", "Pitch=99999999999", "FrameRate=-1", "FrameRate=nan",
                            "FrameRate=1e9", "FrameRate=1e-300", "Pattern=Blue", "Trigger=on", "PoCL=",
                            "FirstTag=4294967296", "DropEvery=x", "Frames=-3", "PixelClock=18446744073709551616"})
        EXPECT_NE(RefusalOf(std::string("S;") + bad), "") << bad;
}

TEST(Settings, ReadBothEndsOfEveryRange) {
    EXPECT_EQ(ParseSettings("S;FrameRate=0").frameRate, 0);
    EXPECT_EQ(ParseSettings("S;FrameRate=1e-6").frameRate, 1e-6);
    EXPECT_EQ(ParseSettings("S;FrameRate=1e6").frameRate, 1e6);
    EXPECT_NE(RefusalOf("S;FrameRate=1000000.1"), "");
    EXPECT_NE(RefusalOf("S;FrameRate=9e-7"), "");
    EXPECT_EQ(ParseSettings("S;Pitch=1").pitch, 1U);
    EXPECT_EQ(ParseSettings("S;Pitch=1048576").pitch, 1048576U);
    EXPECT_NE(RefusalOf("S;Pitch=1048577"), "");
    EXPECT_EQ(ParseSettings("S;Frames=18446744073709551615").frames, ~std::uint64_t{0});
    EXPECT_EQ(ParseSettings("S;DropEvery=0").dropEvery, 0U);
    EXPECT_EQ(ParseSettings("S;PixelClock=0;FirstTag=0").pixelClock, 0U);
}

TEST(Settings, ReadEachWordOfASwitchAndAPattern) {
    EXPECT_EQ(ParseSettings("S;Pattern=Diagonal").pattern, Pattern::kDiagonal);
    EXPECT_EQ(ParseSettings("S;Pattern=Columns").pattern, Pattern::kColumns);
    EXPECT_EQ(ParseSettings("S;Pattern=Black").pattern, Pattern::kBlack);
    EXPECT_TRUE(ParseSettings("S;PoCL=Off;PoCL=On").poCL);
    EXPECT_FALSE(ParseSettings("S;Trigger=On;Trigger=Off").triggered);
}

TEST(Settings, LeaveOutTheNameAndWhatIsEmpty) {
    EXPECT_EQ(ParseSettings("Pitch=64").pitch, 1U);
    EXPECT_EQ(ParseSettings(";;Pitch=64;;").pitch, 64U);
}

}  // namespace
