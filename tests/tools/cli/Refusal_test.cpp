/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of commands whose camera refuses, though its description allows it
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "PlayedCameras.h"
#include "system/Files.h"

namespace {

using testing::HasSubstr;
using tools_test::PlayedCameras;
using tools_test::RunResult;

/// A camera whose description takes the register of the temperature for one that can be written.
class Refusal : public testing::Test {
protected:
    Refusal() : m_cameras({"cam0,serial=S0,description=" + Description()}) {}

    RunResult Run(const std::vector<std::string>& arguments) const { return m_cameras.Run(arguments); }
    std::string Rate() const { return m_cameras.Command("baud cam0"); }
    std::string File(const std::string& text) const {
        const std::string file = (m_cameras.Folder() / "settings.txt").string();
        std::ofstream(file) << text;
        return file;
    }

private:
    std::string Description() const {
        std::string text = PlayedCameras().Run({"xml", "0"}).out;
        const std::size_t reg = text.find("<IntReg Name=\"DeviceTemperatureReg\"");
        text.replace(text.find("RO<", reg), 2, "RW");
        const std::string file = (m_folder.Path() / "camera.xml").string();
        tools::WriteFile(file, text);
        return file;
    }

    tools::TemporaryFolder m_folder;
    PlayedCameras m_cameras;
};

TEST_F(Refusal, PutsBackWhatWasSetBefore) {
    const RunResult run = Run({"set", "S0", "Width=512", "Gain=7", "DeviceTemperature=5"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("write protected"));
    EXPECT_THAT(run.err, HasSubstr("\nNothing was changed."));
    EXPECT_EQ(Run({"get", "S0", "Width", "Gain"}).out, "Width=2048\nGain=0\n");
    EXPECT_EQ(Rate(), "ok 9600");
}

TEST_F(Refusal, IsOneOfSeveralSettingsThatAreLoaded) {
    const RunResult run = Run({"load", "S0", File("DeviceTemperature=5\nWidth=512\n")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("settings.txt:1: "));
    EXPECT_THAT(run.out, HasSubstr("1 of 2 settings are in the camera"));
    EXPECT_EQ(Run({"get", "S0", "Width"}).out, "512\n");
    EXPECT_EQ(Rate(), "ok 9600");
}

TEST_F(Refusal, OfARegisterIsNoLostCamera) {
    const RunResult run = Run({"write", "S0", "0x100044", "00000000"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("write protected"));
    EXPECT_THAT(run.err, testing::Not(HasSubstr("gone")));
    EXPECT_EQ(Rate(), "ok 9600");
}

TEST_F(Refusal, OfARegisterThatIsNoneIsToldByTheCamera) {
    const RunResult run = Run({"read", "S0", "0x7fff0000", "4"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("0x7FFF0000"));
    EXPECT_EQ(Rate(), "ok 9600");
}

}  // namespace
