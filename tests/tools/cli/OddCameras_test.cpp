/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of cameras that can't be used as they are, each with its own sentence and next step
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <ostream>

#include "PlayedCameras.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using tools_test::Environment;
using tools_test::PlayedCameras;
using tools_test::RunResult;
using tools_test::RunVantoCl;

/// The doctor's observations of a section, by their subjects.
std::map<std::string, nlohmann::json> Observations(const RunResult& doctor, const char* section) {
    std::map<std::string, nlohmann::json> found;
    const nlohmann::json report = nlohmann::json::parse(doctor.out);
    for (const nlohmann::json& one : report.at("Sections").at(section))
        found[one.at("Subject")] = one;
    return found;
}

struct OddCamera {
    const char* name;
    const char* options;
    const char* sentence;
    const char* nextStep;
};

void PrintTo(const OddCamera& camera, std::ostream* out) {
    *out << camera.name;
}

/// What is found on a port and is no camera that can be used.
class OddPort : public testing::TestWithParam<OddCamera> {
protected:
    const PlayedCameras m_cameras{{"odd," + std::string(GetParam().options)}};
};

TEST_P(OddPort, IsSaidByTheList) {
    const RunResult run = m_cameras.Run({"list"});
    EXPECT_THAT(run.out, HasSubstr("No camera was found."));
    EXPECT_THAT(run.out, HasSubstr(std::string("Port 'COM_Port#odd': ") + GetParam().sentence));
    EXPECT_THAT(run.out, HasSubstr(GetParam().nextStep));
    EXPECT_THAT(run.out, Not(HasSubstr("Close the program")));
}

TEST_P(OddPort, IsSaidByTheDoctor) {
    auto found = Observations(m_cameras.Run({"doctor", "--json"}), "Cameras");
    EXPECT_EQ(found["COM_Port#odd"].at("Health"), "bad");
    EXPECT_THAT(std::string(found["COM_Port#odd"].at("State")), HasSubstr(GetParam().sentence));
    EXPECT_THAT(std::string(found["COM_Port#odd"].at("Advice")), HasSubstr(GetParam().nextStep));
}

TEST_P(OddPort, IsSaidByWhoeverWantsItsCamera) {
    const RunResult run = m_cameras.Run({"get", "COM_Port#odd", "Width"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.err, HasSubstr(GetParam().sentence));
    EXPECT_THAT(run.err, HasSubstr(GetParam().nextStep));
}

INSTANTIATE_TEST_SUITE_P(
    Cameras, OddPort,
    testing::Values(OddCamera{"OfAnotherMaker", "manufacturer=Acme,serial=F",
                              "a camera of another maker answers: The camera 'Acme#Heron#H2048#2.0#F' answers at 9600",
                              "Use its maker's CLProtocol driver and software"},
                    OddCamera{"OfANewerProtocol", "gencp=2.1",
                              "a camera answers that speaks another GenCP: A device answers, but its GenCP version is "
                              "2.1, not 1.x.",
                              "Install the CLProtocol driver that its maker has for it."},
                    OddCamera{"ThatTalksNonsense", "nonsense=on",
                              "something answers, but not as a camera does: No camera answers.",
                              "Is there something else behind the port?"},
                    OddCamera{"ThatIsSilent", "silent=on", "no camera answers: No camera answers.",
                              "Is the camera on and its cable plugged in?"}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST(NewerMinorVersion, IsNoHindrance) {
    const PlayedCameras cameras({"cam0,gencp=1.9"});
    EXPECT_EQ(cameras.Run({"get", "0", "Width"}).out, "2048\n");
}

/// What is wrong with the description that a camera holds.
class OddDescription : public testing::TestWithParam<OddCamera> {
protected:
    const PlayedCameras m_cameras{{"odd,serial=S0,description-fault=" + std::string(GetParam().options)}};
};

TEST_P(OddDescription, IsSaidByAllThatNeedIt) {
    const std::string begin = "error: the description of Marlow H2048 (S0) can't be had: ";
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"xml", "S0"}, {"get", "S0", "Width"}, {"features", "COM_Port#odd"}}) {
        const RunResult run = m_cameras.Run(command);
        EXPECT_EQ(run.exitCode, 1) << command.front();
        EXPECT_THAT(run.err, HasSubstr(begin + GetParam().sentence)) << command.front();
        EXPECT_THAT(run.err, HasSubstr(GetParam().nextStep)) << command.front();
    }
}

TEST_P(OddDescription, KeepsTheDoctorFromCallingItHealthy) {
    const RunResult run = m_cameras.Run({"doctor", "--json"});
    EXPECT_FALSE(nlohmann::json::parse(run.out).at("Healthy"));
    auto found = Observations(run, "OpeningTheCameras");
    EXPECT_EQ(found["COM_Port#odd"].at("Health"), "bad");
    EXPECT_THAT(std::string(found["COM_Port#odd"].at("State")), HasSubstr(GetParam().sentence));
    EXPECT_THAT(std::string(found["COM_Port#odd"].at("Advice")), HasSubstr(GetParam().nextStep));
}

INSTANTIATE_TEST_SUITE_P(
    Cameras, OddDescription,
    testing::Values(OddCamera{"ThatIsMissing", "missing", "the camera holds none. ", "VANTO_XML_BINDINGS"},
                    OddCamera{"OfSizeZero", "empty", "the camera says that it has size 0. ", "VANTO_XML_BINDINGS"},
                    OddCamera{"WithAnotherSha1", "sha1", "it arrives with another SHA-1 than the camera says. ",
                              "Switch the camera off and on and try again."},
                    OddCamera{"InADamagedZip", "zip", "its ZIP file is damaged. ",
                              "Switch the camera off and on and try again."}),
    [](const auto& instance) { return std::string(instance.param.name); });

/// No driver of the maker whose cameras are looked for.
class WithoutDriver : public testing::Test {
protected:
    Environment Variables() const {
        Environment variables = m_cameras.Variables();
        variables["GENICAM_CLPROTOCOL"] = m_cameras.Folder().string();
        return variables;
    }

    const PlayedCameras m_cameras{{"cam0"}};
};

TEST_F(WithoutDriver, NothingWasSentSaysTheDoctor) {
    auto found = Observations(RunVantoCl({"doctor", "--json"}, Variables()), "Cameras");
    EXPECT_EQ(found["COM_Port#cam0"].at("State"),
              "nothing was sent: there is no CLProtocol driver for cameras of Marlow");
    EXPECT_THAT(std::string(found["COM_Port#cam0"].at("Advice")), HasSubstr("GENICAM_CLPROTOCOL"));
    EXPECT_THAT(m_cameras.Command("stats cam0"), HasSubstr("bytes-in=0 "));
}

TEST_F(WithoutDriver, NothingWasSentSaysAnyCommand) {
    const RunResult run = RunVantoCl({"get", "COM_Port#cam0", "Width"}, Variables());
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.err, HasSubstr("port 'COM_Port#cam0': nothing was sent: there is no CLProtocol driver"));
    EXPECT_THAT(run.err, HasSubstr("\nInstall the driver, or name its folder in GENICAM_CLPROTOCOL."));
}

}  // namespace
