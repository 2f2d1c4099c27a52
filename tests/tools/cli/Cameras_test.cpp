/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of list, ports, xml and doctor against simulated cameras and against none
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <thread>

#include "ProgramRun.h"
#include "SilentLine.h"
#include "system/Folders.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using tools_test::BlockedRun;
using tools_test::Environment;
using tools_test::RunResult;
using tools_test::RunVantoCl;

/// Waits for something; false when it does not come.
bool Eventually(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

/// A folder for configuration, ports and temporary files of its own.
class Cameras : public testing::Test {
protected:
    std::filesystem::path Folder() const { return m_folder.Path(); }
    Environment Own() const {
        return {{"VANTO_CL_BINDINGS", Folder().string()},
                {"CLSERTTY_PATH", Folder().string()},
                {"TMPDIR", Folder().string()},
                {"GENICAM_CACHE", (Folder() / "cache").string()}};
    }
    void Configure(const std::string& text) const { std::ofstream(Folder() / "PortConfiguration_x64.xml") << text; }

private:
    tools::TemporaryFolder m_folder;
};

TEST_F(Cameras, ListShowsTheSimulatedOnes) {
    const RunResult run = RunVantoCl({"--simulate", "list"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("0  Marlow H2048 (SIM00001)  H2048  SIM00001       COM_Port#cam0  highest\n"));
    EXPECT_THAT(run.out, HasSubstr("2 cameras found in "));
}

TEST_F(Cameras, ListPrintsJsonWithTheRecordsNames) {
    const RunResult run = RunVantoCl({"--simulate=3", "list", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    const json cameras = json::parse(run.out);
    ASSERT_EQ(cameras.size(), 3U);
    EXPECT_EQ(cameras[2].at("PortID"), "COM_Port#cam2");
    EXPECT_EQ(cameras[2].at("SerialNumber"), "SIM00003");
    EXPECT_EQ(cameras[2].at("DeviceClass"), "MarlowCameraLink");
    for (const char* name : {"DeviceID", "FullName", "FriendlyName", "VendorName", "ModelName", "InitialBaudRate"})
        EXPECT_TRUE(cameras[2].contains(name)) << name;
}

TEST_F(Cameras, SimulationLeavesNothingBehind) {
    const RunResult run = RunVantoCl({"--simulate", "list"}, Own());
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_TRUE(std::filesystem::is_empty(Folder()));
    EXPECT_TRUE(tools_test::SimulatorsIn(Folder()).empty());
}

TEST_F(Cameras, CtrlCEndsTheSimulationToo) {
    BlockedRun run({"--simulate", "xml", "0"}, Own());
    ASSERT_TRUE(Eventually([&] { return run.IsBlocked(); }));
    EXPECT_FALSE(tools_test::SimulatorsIn(Folder()).empty());
    run.Interrupt();
    constexpr int kInterrupt = 2;
    EXPECT_EQ(run.Wait().signal, kInterrupt);
    EXPECT_TRUE(std::filesystem::is_empty(Folder()));
    EXPECT_TRUE(tools_test::SimulatorsIn(Folder()).empty());
}

TEST_F(Cameras, SimulatorEndsWhenVantoClIsKilled) {
    BlockedRun run({"--simulate", "xml", "0"}, Own());
    ASSERT_TRUE(Eventually([&] { return run.IsBlocked(); }));
    run.Kill();
    run.Wait();
    EXPECT_TRUE(Eventually([&] { return tools_test::SimulatorsIn(Folder()).empty(); }));
}

TEST_F(Cameras, XmlPrintsTheDescription) {
    const RunResult run = RunVantoCl({"--simulate", "xml", "SIM00002"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("<RegisterDescription"));
    EXPECT_THAT(run.out, HasSubstr("</RegisterDescription>"));
}

TEST_F(Cameras, XmlWritesTheSameToAFile) {
    const std::string file = Folder() / "camera.xml";
    const RunResult run = RunVantoCl({"--simulate", "xml", "0", "-o", file}, Own());
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, testing::ContainsRegex("camera.xml: [0-9]+ bytes in .*, SHA-1 [0-9a-f]{40}"));
    std::ifstream stream(file);
    const std::string content{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_EQ(content, RunVantoCl({"--simulate", "xml", "0"}).out);
}

TEST_F(Cameras, XmlOfAnUnknownDeviceEndsWithThree) {
    const RunResult run = RunVantoCl({"--simulate", "xml", "nobody"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.err, HasSubstr("there is no camera 'nobody'"));
    EXPECT_THAT(run.err, HasSubstr("SIM00002"));
}

TEST_F(Cameras, XmlWithoutAnyCameraEndsWithThreeAndSaysWhy) {
    const RunResult run = RunVantoCl({"xml", "0"}, Own());
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.err, HasSubstr("no port configuration file"));
}

TEST_F(Cameras, XmlToAFolderThatIsNotThereEndsWithOne) {
    const RunResult run = RunVantoCl({"--simulate", "xml", "0", "-o", "/nonexistent/x.xml"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("can't write '/nonexistent/x.xml': No such file or directory"));
}

TEST_F(Cameras, PortsShowTheirConfiguration) {
    const RunResult run = RunVantoCl({"--simulate", "ports", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    const json ports = json::parse(run.out);
    const auto port =
        std::find_if(ports.begin(), ports.end(), [](const json& one) { return one.at("PortID") == "COM_Port#cam1"; });
    ASSERT_NE(port, ports.end());
    EXPECT_EQ(port->at("Enabled"), true);
    EXPECT_EQ(port->at("Entries").at(0).at("Manufacturer"), "Marlow");
    EXPECT_NE(port->at("Device"), "");
}

TEST_F(Cameras, DoctorFindsASimulationHealthy) {
    const RunResult run = RunVantoCl({"--simulate", "doctor", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    const json report = json::parse(run.out);
    EXPECT_EQ(report.at("Healthy"), true) << run.out;
    for (const char* section :
         {"Environment variables", "Folders", "Transport layers", "Camera Link serial libraries", "CLProtocol drivers",
          "Serial ports", "Port configuration file", "Cameras", "Last warnings and errors"})
        EXPECT_TRUE(report.at("Sections").contains(section)) << section;
}

TEST_F(Cameras, DoctorEndsWithVerdictAndNextStep) {
    const RunResult run = RunVantoCl({"doctor"}, Own());
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("\nVerdict: no camera was found. There is no port configuration file"));
    EXPECT_THAT(run.out, HasSubstr("\nNext step: 'vanto-cl config init'"));
}

/// What a list without cameras says, in text and in JSON.
class Reasons : public Cameras {
protected:
    void ExpectReason(const Environment& environment, const char* cause, const char* remedy) const {
        const RunResult text = RunVantoCl({"list"}, environment);
        EXPECT_EQ(text.exitCode, 0);
        EXPECT_THAT(text.out, HasSubstr("No camera was found."));
        EXPECT_THAT(text.out, HasSubstr(cause));
        EXPECT_THAT(text.out, HasSubstr(remedy));
        const RunResult inJson = RunVantoCl({"list", "--json"}, environment);
        EXPECT_EQ(inJson.exitCode, 0);
        EXPECT_EQ(json::parse(inJson.out), json::array());
        EXPECT_THAT(inJson.err, HasSubstr(cause));
    }
    static constexpr const char* kNoCamera =
        "<a><Port><ID>COM_Port#tty0</ID><Enabled>yes</Enabled><Manufacturer>Marlow</Manufacturer></Port></a>";
};

TEST_F(Reasons, NoConfiguration) {
    ExpectReason(Own(), "There is no port configuration file '", "config init");
}

TEST_F(Reasons, NoEnabledPort) {
    Configure("<a><Port><ID>COM_Port#tty0</ID></Port></a>");
    ExpectReason(Own(), "No port is enabled in '", "<Enabled>true</Enabled>");
}

TEST_F(Reasons, NoSuchPort) {
    Configure("<a><Port><ID>Grabber#A</ID><Enabled>1</Enabled></Port></a>");
    const tools_test::SilentLine line(Folder() / "tty0");
    ExpectReason(Own(), "None of the enabled ports is there: ", "enables 'Grabber#A'");
}

TEST_F(Reasons, MalformedConfiguration) {
    Configure("<a><Port></a>");
    ExpectReason(Own(), "The port configuration file can't be used: Failed to parse XML file '", "config check");
}

TEST_F(Reasons, AFolderInPlaceOfTheConfiguration) {
    std::filesystem::create_directory(Folder() / "PortConfiguration_x64.xml");
    ExpectReason(Own(), "The port configuration file can't be used: ", "config check");
}

TEST_F(Reasons, RestrictedToAnotherTransportLayer) {
    Environment environment = Own();
    environment["VANTO_USE_TL"] = "marlowcameralink";
    ExpectReason(environment, "VANTO_USE_TL restricts this process to the transport layer 'marlowcameralink'",
                 "exactly MarlowCameraLink");
}

TEST_F(Reasons, TransportLayerMissing) {
    Environment environment = Own();
    environment["VANTO_ROOT"] = Folder();
    ExpectReason(environment, "The transport layer for Camera Link is missing: '", "Install VantoCLSer.so");
}

TEST_F(Reasons, NoDriver) {
    const tools_test::SilentLine line(Folder() / "tty0");
    Configure(kNoCamera);
    Environment environment = Own();
    environment["GENICAM_CLPROTOCOL"] = Folder();
    ExpectReason(environment, "There is no CLProtocol driver for cameras of Marlow.", "GENICAM_CLPROTOCOL");
}

TEST_F(Reasons, NoAnswer) {
    const tools_test::SilentLine line(Folder() / "tty0");
    Configure(kNoCamera);
    ExpectReason(Own(), "Port 'COM_Port#tty0': no camera answers: ", "Is the camera on and its cable plugged in?");
}

TEST_F(Reasons, PortInUseNamesWhoUsesIt) {
    tools_test::SilentLine line(Folder() / "tty0");
    line.Hold();
    Configure(kNoCamera);
    ExpectReason(Own(), "Port 'COM_Port#tty0': the port can't be used: ", "Close the program that uses the port.");
    EXPECT_THAT(RunVantoCl({"list"}, Own()).out, HasSubstr("in use by process "));
}

TEST_F(Reasons, DoctorNamesTheSilentPort) {
    const tools_test::SilentLine line(Folder() / "tty0");
    Configure(kNoCamera);
    const RunResult run = RunVantoCl({"doctor", "--json"}, Own());
    const json report = json::parse(run.out);
    EXPECT_EQ(report.at("Healthy"), false);
    EXPECT_EQ(report.at("Sections").at("Cameras").at(0).at("Subject"), "COM_Port#tty0");
}

}  // namespace
