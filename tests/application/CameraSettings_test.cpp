/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of settings as a file: saved, loaded, refused
 */

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/application/ApplicationTest.h"

namespace {

using application::ApplicationTest;
using application::HasSubstr;
using application::Thrown;

class SettingsFiles : public ApplicationTest {
protected:
    void Write(const std::string& text) const { std::ofstream(path) << text; }
    std::string Read() const {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }

    const Vanto::Camera camera;
    const std::string path = (std::filesystem::path(m_folder.Path()) / "settings.txt").string();
};

TEST_F(SettingsFiles, PutACameraBackAsItWas) {
    camera["Width"] = 1024;
    camera["ExposureTime"] = 1234.5;
    EXPECT_TRUE(camera.Save(path).empty());
    camera["Width"] = 512;
    camera["ExposureTime"] = 777.0;
    camera.Load(path);
    EXPECT_EQ(camera.Get<int>("Width"), 1024);
    EXPECT_NEAR(camera.Get<double>("ExposureTime"), 1234.5, 0.1);
}

TEST_F(SettingsFiles, AreTextsWithoutAFile) {
    camera["Width"] = 1024;
    std::vector<Vanto::SettingFault> faults;
    const std::string text = camera.SettingsText(faults);
    EXPECT_TRUE(faults.empty());
    camera["Width"] = 512;
    camera.LoadText(text, "a preset");
    EXPECT_EQ(camera.Get<int>("Width"), 1024);
    EXPECT_THAT(Thrown<Vanto::CameraError>([&] { camera.LoadText("nonsense", "a preset"); }).what(),
                HasSubstr("a preset:1: "));
}

TEST_F(SettingsFiles, HoldTheValuesOfEachSelector) {
    const std::string before = camera["TriggerSelector"].Text();
    camera["TriggerSelector"] = "AcquisitionStart";
    camera["TriggerMode"] = "On";
    camera.Save(path);
    EXPECT_THAT(Read(), HasSubstr("[TriggerSelector=AcquisitionStart]\nTriggerMode=On\n"));
    EXPECT_THAT(Read(), HasSubstr("[TriggerSelector=FrameStart]\nTriggerMode=Off\n"));
    EXPECT_EQ(camera["TriggerSelector"].Text(), "AcquisitionStart") << "selectors stand as before";
    camera["TriggerMode"] = "Off";
    camera["TriggerSelector"] = before;
    camera.Load(path);
    EXPECT_EQ(camera["TriggerSelector"].Text(), before);
    camera["TriggerSelector"] = "AcquisitionStart";
    EXPECT_EQ(camera["TriggerMode"].Text(), "On");
}

TEST_F(SettingsFiles, AreTakenInWhateverOrderTheyStand) {
    Write("OffsetX=1024\nWidth=1024\n");
    camera.Load(path);
    EXPECT_EQ(camera.Get<int>("OffsetX"), 1024);
    EXPECT_EQ(camera.Get<int>("Width"), 1024);
}

TEST_F(SettingsFiles, NameWhatWasRefused) {
    Write("# a comment\nWidth=1024\n\nNoSuchFeature=1\nExposureTime=1e12\n");
    const auto error = Thrown<Vanto::SettingsRefused>([&] { camera.Load(path); });
    ASSERT_EQ(error.Faults().size(), 2u);
    EXPECT_EQ(error.Faults()[0].feature, "NoSuchFeature");
    EXPECT_EQ(error.Faults()[0].line, 4u);
    EXPECT_EQ(error.Faults()[1].line, 5u);
    EXPECT_THAT(error.what(), HasSubstr("did not take 2 of the 3 settings"));
    EXPECT_EQ(camera.Get<int>("Width"), 1024);
}

TEST_F(SettingsFiles, TouchNothingWhenALineIsWrong) {
    Write("Width=1024\nnothing\n");
    EXPECT_THAT(Thrown<Vanto::CameraError>([&] { camera.Load(path); }).what(), HasSubstr(":2: 'nothing' is no NAME"));
    EXPECT_EQ(camera.Get<int>("Width"), 2048);
}

TEST_F(SettingsFiles, ThatAreNotThereAreNamed) {
    EXPECT_THAT(Thrown<Vanto::CameraError>([&] { camera.Load(path); }).what(), HasSubstr("settings.txt"));
    EXPECT_THROW(camera.Save(path + "/no/folder"), Vanto::CameraError);
}

TEST_F(SettingsFiles, EndWithTheCamera) {
    Write("Width=1024\nHeight=1024\n");
    simulator.Unplug("cam0");
    EXPECT_THROW(camera.Load(path), Vanto::CameraGone);
}

TEST_F(SettingsFiles, KeepEveryCharacterOfAText) {
    Write("DeviceUserID=\\x20a\\\\b\\x09\\x20\n");
    camera.Load(path);
    EXPECT_EQ(camera["DeviceUserID"].Text(), " a\\b\t ");
    Write("DeviceUserID=a\\n\n");
    EXPECT_THAT(Thrown<Vanto::CameraError>([&] { camera.Load(path); }).what(), HasSubstr("after a backslash"));
}

}  // namespace
