/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of cameras of which a part can't be read, and of looks that are ended early
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <nlohmann/json.hpp>

#include "../../support/WaitUntil.h"
#include "../Pattern.h"
#include "CamerasFixture.h"
#include "PlayedCameras.h"

namespace {

using testing::HasSubstr;
using tools_test::BlockedRun;
using tools_test::ContainsPattern;
using tools_test::PlayedCameras;
using tools_test::RunResult;
using tools_test::RunVantoCl;

/// A camera whose description has one register where the camera has none.
class BrokenFeature : public testing::Test {
protected:
    RunResult Run(const std::vector<std::string>& arguments) const { return m_cameras.Run(arguments); }

private:
    std::string Description() const {
        std::string text = PlayedCameras().Run({"xml", "0"}).out;
        const std::size_t reg = text.find("<Address>", text.find("<IntReg Name=\"WidthReg\""));
        text.replace(reg, text.find("</Address>", reg) - reg, "<Address>0x7fff0000");
        const std::string file = (m_folder.Path() / "camera.xml").string();
        std::ofstream(file, std::ios::binary) << text;
        return file;
    }

    tools::TemporaryFolder m_folder;
    PlayedCameras m_cameras{{"cam0,serial=S0,description=" + Description()}};
};

TEST_F(BrokenFeature, LeavesTheOthersToBeSaved) {
    const RunResult run = Run({"save", "S0", "-"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("warning: not saved: Width: "));
    EXPECT_THAT(run.out, HasSubstr("\nExposureTime="));
}

TEST_F(BrokenFeature, LeavesTheOthersToBeListed) {
    const RunResult run = Run({"features", "S0"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr(" of the values could not be read"));
    EXPECT_THAT(run.out, HasSubstr("\nExposureTime "));
}

// Probe and connection take fewer packets than that, the description more.
TEST(DescriptionThatCantBeHad, IsSaidWithTheReason) {
    const PlayedCameras played({"cam0,serial=S0,silent-after=80"});
    const RunResult run = played.Run({"get", "COM_Port#cam0", "Width"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("the description of Marlow H2048 (S0) can't be had: "));
    EXPECT_THAT(run.err, testing::Not(HasSubstr("Don't know what XML")));
}

int PacketsOf(const PlayedCameras& played, const std::vector<std::string>& command) {
    played.Command("reset-stats cam0");
    EXPECT_EQ(played.Run(command).exitCode, 0);
    return std::stoi(played.Command("stats cam0").substr(std::string("ok packets-in=").size()));
}

TEST(CameraThatIsGone, IsToldOnceInsteadOfWithEachFeature) {
    const PlayedCameras played({"cam0,serial=S0"});
    played.Run({"list"});
    const int one = PacketsOf(played, {"get", "S0", "Width"});
    const int all = PacketsOf(played, {"features", "S0"});
    ASSERT_EQ(played.Command("silent-after cam0 " + std::to_string((one + all) / 2)), "ok");
    const RunResult run = played.Run({"features", "S0"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err,
                testing::StartsWith("error: The camera on COM_Port#cam0 does not answer any more. Is its cable"));
    EXPECT_EQ(run.err.find("does not answer", run.err.find("does not answer") + 1), std::string::npos) << run.err;
}

TEST(Usage, NamesTheCommandsOwnHelp) {
    EXPECT_THAT(RunVantoCl({"get"}).err, HasSubstr("'vanto-cl get --help' explains it."));
    EXPECT_THAT(RunVantoCl({"config"}).err, HasSubstr("'vanto-cl config --help' explains it."));
}

/// Thirty-two ports: one in use, one silent, one of another maker.
class ManyCameras : public testing::Test {
protected:
    static std::vector<std::string> All() {
        std::vector<std::string> cameras;
        for (int camera = 0; camera < 30; ++camera)
            cameras.push_back("cam" + std::to_string(camera) + ",serial=S" + std::to_string(camera));
        cameras.emplace_back("foreign,manufacturer=Acme,serial=F");
        cameras.emplace_back("silent,silent=on");
        return cameras;
    }

    const PlayedCameras played{All()};
};

TEST_F(ManyCameras, AreListedWithAllThatKeepsSomeFromBeingFound) {
    BlockedRun user({"watch", "COM_Port#cam7", "Width", "--interval", "0.02"}, played.Variables());
    ASSERT_TRUE(test_support::WaitUntil([&] { return user.IsBlocked(); }));
    const RunResult run = played.Run({"list"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.out, HasSubstr("29 cameras found in "));
    EXPECT_THAT(run.out, HasSubstr(", 1 in use\n"));
    EXPECT_THAT(run.out, ContainsPattern("COM_Port#cam7 .*in use by vanto-cl .[0-9]+."));
    EXPECT_THAT(run.err, HasSubstr("port 'COM_Port#foreign': a camera of another maker answers: The camera 'Acme#"));
    EXPECT_THAT(run.err, HasSubstr("\n  Use its maker's CLProtocol driver and software"));
    EXPECT_THAT(run.err, HasSubstr("port 'COM_Port#silent': no camera answers: No camera answers."));
    EXPECT_THAT(run.err, HasSubstr("\n  Is the camera on and its cable plugged in?\n"));
}

TEST_F(ManyCameras, AreExaminedWithTheSameAdvice) {
    const RunResult run = played.Run({"doctor", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    std::map<std::string, nlohmann::json> found;
    const nlohmann::json report = nlohmann::json::parse(run.out);
    for (const nlohmann::json& one : report.at("Sections").at("Cameras"))
        found[one.at("Subject")] = one;
    EXPECT_EQ(found.size(), 32U);
    EXPECT_EQ(found["COM_Port#cam29"].at("Health"), "ok");
    EXPECT_THAT(std::string(found["COM_Port#foreign"].at("State")), HasSubstr("a camera of another maker answers"));
    EXPECT_THAT(std::string(found["COM_Port#foreign"].at("Advice")), HasSubstr("Use its maker's CLProtocol driver"));
    EXPECT_EQ(found["COM_Port#silent"].at("Advice"), "Is the camera on and its cable plugged in?");
}

/// A look that Ctrl-C ends while the first of many silent ports is being asked, each for as long as all rates take.
class EndedList : public testing::Test {
protected:
    static constexpr const char* kLastPort = "silent9";

    static std::vector<std::string> All() {
        std::vector<std::string> cameras{"cam0,serial=S0"};
        for (int port = 0; port < 10; ++port)
            cameras.push_back("silent" + std::to_string(port) + ",silent=on");
        return cameras;
    }
    bool WasAsked(const std::string& port) const {
        return played.Command("stats " + port).find("bytes-in=0 ") == std::string::npos;
    }
    RunResult Ended(const std::vector<std::string>& arguments) const {
        BlockedRun run(arguments, played.Variables());
        EXPECT_TRUE(test_support::WaitUntil([this] { return WasAsked("silent0"); }));
        run.Interrupt();
        return run.Wait();
    }

    const PlayedCameras played{All()};
};

TEST_F(EndedList, ShowsWhatWasFoundUntilThen) {
    const RunResult run = Ended({"list"});
    EXPECT_EQ(run.exitCode, 130) << run.signal;
    EXPECT_THAT(run.out, ContainsPattern("\n0  Marlow H2048 .S0.  COM_Port#cam0 .*ready\n1 camera found in "));
    EXPECT_THAT(run.err, HasSubstr("port 'COM_Port#silent9': it was not asked\n"));
}

TEST_F(EndedList, AsksNoPortAnyMore) {
    Ended({"list"});
    EXPECT_FALSE(WasAsked(kLastPort));
}

TEST_F(EndedList, IsWholeInJson) {
    const RunResult run = Ended({"list", "--json"});
    EXPECT_EQ(run.exitCode, 130) << run.signal;
    EXPECT_EQ(nlohmann::json::parse(run.out).at(0).at("SerialNumber"), "S0");
}

TEST_F(EndedList, IsRemembered) {
    Ended({"list"});
    EXPECT_EQ(played.Run({"get", "0", "DeviceSerialNumber"}).out, "S0\n");
    EXPECT_FALSE(WasAsked(kLastPort));
}

}  // namespace
