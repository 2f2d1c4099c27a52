/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the file of known cameras
 */
#include "cameras/KnownCamerasFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <thread>

#include "output/Output.h"
#include "system/Environment.h"
#include "system/Folders.h"

namespace {

using namespace tools;
using testing::HasSubstr;

class KnownCamerasFile : public testing::Test {
protected:
    KnownCamerasFile() { SetEnvironment("VANTO_CL_STATE", (m_folder.Path() / "state").string()); }
    ~KnownCamerasFile() override {
        UnsetEnvironment("VANTO_CL_STATE");
        std::fclose(m_err);
    }

    std::filesystem::path File() const { return m_folder.Path() / "state" / "cameras.json"; }
    void Write(const std::string& text) const {
        std::filesystem::create_directories(File().parent_path());
        std::ofstream(File(), std::ios::binary) << text;
    }
    void Remember(const std::string& port) {
        ChangeKnownCameras(m_output, [&](KnownCameras& known) {
            known.Remember({{port, "/drivers#Driver#Marlow#Heron#H2048#" + port}}, {}, "now");
        });
    }
    std::string Warnings() const {
        std::rewind(m_err);
        std::string text(1000, '\0');
        text.resize(std::fread(text.data(), 1, text.size(), m_err));
        return text;
    }

    TemporaryFolder m_folder;
    std::FILE* const m_err = std::tmpfile();
    Output m_output{m_err, m_err};
};

TEST_F(KnownCamerasFile, IsReadAsItWasWritten) {
    ChangeKnownCameras(m_output, [](KnownCameras& known) {
        known.Remember({{"COM_Port#a", "/drivers#Driver#Marlow#Heron#H2048#S1"}}, {}, "now");
        known.SetRestBaudRate(known.All().front().address, 57600);
    });
    const KnownCameras known = LoadKnownCameras(m_output);
    ASSERT_EQ(known.All().size(), 1U);
    EXPECT_EQ(known.All()[0].address.portId, "COM_Port#a");
    EXPECT_EQ(known.All()[0].address.deviceId, "/drivers#Driver#Marlow#Heron#H2048#S1");
    EXPECT_EQ(known.All()[0].seen, "now");
    EXPECT_EQ(known.All()[0].restBaudRate, 57600U);
    EXPECT_EQ(Warnings(), "");
}

TEST_F(KnownCamerasFile, SaysToPeopleWhatItIs) {
    Remember("a");
    std::ifstream stream(File());
    EXPECT_THAT(std::string(std::istreambuf_iterator<char>(stream), {}),
                HasSubstr("Delete this file to number them anew."));
}

TEST_F(KnownCamerasFile, LosesNoChangeOfTwoAtATime) {
    constexpr int kEach = 20;
    const auto rememberMany = [&](const std::string& name) {
        Output output(m_err, m_err);
        for (int camera = 0; camera < kEach; ++camera)
            ChangeKnownCameras(output, [&](KnownCameras& known) {
                const std::string port = name + std::to_string(camera);
                known.Remember({{port, "/drivers#Driver#Marlow#Heron#H2048#" + port}}, {}, port);
            });
    };
    std::thread other(rememberMany, "a");
    rememberMany("b");
    other.join();
    EXPECT_EQ(LoadKnownCameras(m_output).All().size(), 2U * kEach);
}

class DamagedKnownCameras : public KnownCamerasFile, public testing::WithParamInterface<const char*> {};

TEST_P(DamagedKnownCameras, AreIgnoredWithAWarningAndReplaced) {
    Write(GetParam());
    EXPECT_TRUE(LoadKnownCameras(m_output).All().empty());
    EXPECT_THAT(Warnings(), HasSubstr("cameras.json' is ignored: it is damaged"));
    Remember("a");
    EXPECT_EQ(LoadKnownCameras(m_output).All().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(All, DamagedKnownCameras,
                         testing::Values("", "{", "[]", "{\"Cameras\": 1}", "{\"Cameras\": [1]}",
                                         "{\"Cameras\": [{\"Number\": 0}]}",
                                         "{\"Cameras\": [{\"Number\": -1, \"PortID\": \"a\", \"DeviceID\": \"b\"}]}",
                                         "{\"Cameras\": [{\"Number\": 1e9, \"PortID\": \"a\", \"DeviceID\": \"b\"}]}",
                                         "{\"Cameras\": [{\"Number\": 0, \"PortID\": 1, \"DeviceID\": \"b\"}]}",
                                         "{\"Cameras\": [{\"Number\": 0, \"PortID\": \"a\", \"DeviceID\": \"b\"},"
                                         "{\"Number\": 0, \"PortID\": \"c\", \"DeviceID\": \"d\"}]}"));

TEST_F(KnownCamerasFile, MayBeAFolder) {
    std::filesystem::create_directories(File());
    EXPECT_TRUE(LoadKnownCameras(m_output).All().empty());
    EXPECT_THAT(Warnings(), HasSubstr("it is no file of ours"));
}

TEST_F(KnownCamerasFile, MayHaveNoPlaceToLie) {
    std::ofstream(m_folder.Path() / "state") << "a file in the way";
    Remember("a");
    EXPECT_THAT(Warnings(), HasSubstr("numbers of cameras are not kept"));
}

}  // namespace
