/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of list, ports, xml and doctor against simulated cameras and against none
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "../Pattern.h"
#include "CamerasFixture.h"
#include "PlayedCameras.h"
#include "SilentLine.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using tools_test::Cameras;
using tools_test::ContainsPattern;
using tools_test::Environment;
using tools_test::PlayedCameras;
using tools_test::Reasons;
using tools_test::RunResult;
using tools_test::RunVantoCl;

TEST_F(Cameras, ListPrintsJsonWithTheRecordsNames) {
    const PlayedCameras played({"cam0,serial=S0", "cam1,serial=S1", "cam2,serial=S2"});
    const RunResult run = played.Run({"list", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    const json cameras = json::parse(run.out);
    ASSERT_EQ(cameras.size(), 3U);
    EXPECT_EQ(cameras[2].at("PortID"), "COM_Port#cam2");
    EXPECT_EQ(cameras[2].at("SerialNumber"), "S2");
    EXPECT_EQ(cameras[2].at("DeviceClass"), "MarlowCameraLink");
    for (const char* name : {"DeviceID", "FullName", "FriendlyName", "VendorName", "ModelName", "InitialBaudRate"})
        EXPECT_TRUE(cameras[2].contains(name)) << name;
}

TEST_F(Cameras, XmlPrintsTheDescription) {
    const PlayedCameras played;
    const RunResult run = played.Run({"xml", "S0"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("<RegisterDescription"));
    EXPECT_THAT(run.out, HasSubstr("</RegisterDescription>"));
}

TEST_F(Cameras, XmlWritesTheSameToAFile) {
    const PlayedCameras played;
    const std::string file = (Folder() / "camera.xml").string();
    const RunResult run = played.Run({"xml", "0", "-o", file});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, ContainsPattern("camera.xml: [0-9]+ bytes in .*, SHA-1 [0-9a-f]{40}"));
    std::ifstream stream(file, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_EQ(content, played.Run({"xml", "0"}).out);
}

TEST_F(Cameras, XmlOfAnUnknownDeviceEndsWithThree) {
    const PlayedCameras played;
    const RunResult run = played.Run({"xml", "nobody"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.err, HasSubstr("there is no camera 'nobody'"));
    EXPECT_THAT(run.err, HasSubstr("S0"));
}

TEST_F(Cameras, XmlWithoutAnyCameraEndsWithThreeAndSaysWhy) {
    const RunResult run = RunVantoCl({"xml", "0"}, Own());
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.err, HasSubstr("no port configuration file"));
}

TEST_F(Cameras, XmlToAFolderThatIsNotThereEndsWithOne) {
    const PlayedCameras played;
    const std::string path = (Folder() / "missing" / "x.xml").string();
    const RunResult run = played.Run({"xml", "0", "-o", path});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("can't write '" + path + "': No such file or directory"));
}

json PortOf(const RunResult& run, const std::string& id) {
    for (const json& port : json::parse(run.out))
        if (port.at("PortID") == id)
            return port;
    ADD_FAILURE() << "no port " << id << " in " << run.out;
    return {{"Enabled", false}, {"Entries", {}}, {"Device", ""}};
}

TEST_F(Cameras, PortsShowTheirConfiguration) {
    const PlayedCameras played({"cam0", "cam1"}, "SaperaSimulated;");
    const RunResult run = played.Run({"ports", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    const json port = PortOf(run, "COM_Port#cam1");
    EXPECT_EQ(port.at("Enabled"), true);
    EXPECT_EQ(port.at("Entries").at(0).at("Manufacturer"), "Marlow");
}

TEST_F(Cameras, PortsShowTheirDevices) {
    const PlayedCameras played;
    EXPECT_NE(PortOf(played.Run({"ports", "--json"}), "COM_Port#cam0").at("Device"), "");
}

TEST_F(Cameras, DoctorEndsWithVerdictAndNextStep) {
    const RunResult run = RunVantoCl({"doctor"}, Own());
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("\nVerdict: no camera was found. There is no port configuration file"));
    EXPECT_THAT(run.out, HasSubstr("\nNext step: 'vanto-cl config init'"));
}

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
    environment["VANTO_ROOT"] = Folder().string();
    ExpectReason(environment, "The transport layer for Camera Link is missing: '", "Install VantoCLSer.so");
}

TEST_F(Reasons, NoDriver) {
    const tools_test::SilentLine line(Folder() / "tty0");
    Configure(kNoCamera);
    Environment environment = Own();
    environment["GENICAM_CLPROTOCOL"] = Folder().string();
    ExpectReason(environment, "There is no CLProtocol driver for cameras of Marlow.", "GENICAM_CLPROTOCOL");
}

TEST_F(Reasons, NoAnswer) {
    const tools_test::SilentLine line(Folder() / "tty0");
    Configure(kNoCamera);
    ExpectReason(Own(), "Port 'COM_Port#tty0': no camera answers: ", "Is the camera on and its cable plugged in?");
}

TEST_F(Cameras, DoctorTellsWhatTheGenTLProducerLists) {
    const PlayedCameras played;
    const json report = json::parse(played.Run({"doctor", "--json"}).out);
    const json& producer = report.at("Sections").at("GenTLProducer");
    ASSERT_EQ(producer.size(), 3U) << producer;
    EXPECT_EQ(producer[0].at("Subject"), "GENICAM_GENTL64_PATH");
    EXPECT_EQ(producer[0].at("State"), "does not name the producer's folder");
    EXPECT_EQ(producer[1].at("State"), "loads; interfaces: 1");
    EXPECT_EQ(producer[2].at("Subject"), "COM_Port#cam0");
    EXPECT_EQ(producer[2].at("State"), "lists Marlow-H2048-S0");
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
