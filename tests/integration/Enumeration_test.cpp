/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of finding cameras over real serial lines
 */

#include "CLProtocol/CLPort.h"
#include "tests/integration/Machine.h"

namespace integration {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class EnumeratesCameras : public Machine {};

TEST_F(EnumeratesCameras, OfSeveralModels) {
    Add("cam0", Camera("21"));
    Add("cam1", Camera("22", "H4096"));
    Add("cam2", Camera("23", "H8192L"));
    std::vector<std::string> names;
    for (const CDeviceInfo& info : Enumerate())
        names.push_back(info.GetFriendlyName().str());
    EXPECT_THAT(names, UnorderedElementsAre("Marlow H2048 (21)", "Marlow H4096 (22)", "Marlow H8192L (23)"));
}

TEST_F(EnumeratesCameras, EachAtTheRateThatItWasLastAt) {
    auto first = Camera("21");
    first.baud = 115200;
    auto second = Camera("22");
    second.baud = 921600;
    Add("cam0", first);
    Add("cam1", second);
    EXPECT_THAT(SerialNumbers(), UnorderedElementsAre("21", "22"));
    for (int round = 0; round < 3; ++round) {
        simulator.ResetStatistics("cam0");
        simulator.ResetStatistics("cam1");
        EXPECT_THAT(SerialNumbers(), UnorderedElementsAre("21", "22"));
        EXPECT_EQ(simulator.StatisticsOf("cam0").noiseBytes, 0u);
        EXPECT_EQ(simulator.StatisticsOf("cam1").noiseBytes, 0u);
    }
}

TEST_F(EnumeratesCameras, WithCompleteRecords) {
    Add("cam0", Camera("21"),
        "<Manufacturer>Marlow</Manufacturer><Family>Heron</Family><Model>H2048</Model>"
        "<DeviceSpecificString>text</DeviceSpecificString><BaudRate>Baud115200</BaudRate>");
    const DeviceInfoList list = Enumerate();
    ASSERT_EQ(list.size(), 1u);
    const CDeviceInfo& info = list[0];
    EXPECT_EQ(info.GetVendorName(), "Marlow");
    EXPECT_EQ(info.GetModelName(), "H2048");
    EXPECT_EQ(info.GetSerialNumber(), "21");
    EXPECT_EQ(info.GetDeviceClass(), "MarlowCameraLink");
    EXPECT_EQ(info.GetDeviceFactory(), "Camera Link/MarlowCameraLink 3.2.2.3032");
    EXPECT_THAT(info.GetFullName().str(), testing::StartsWith("COM_Port#cam0|"));
    EXPECT_THAT(info.GetFullName().str(), testing::EndsWith("#Marlow#Heron#H2048#21"));
    gcstring value;
    EXPECT_TRUE(info.GetPropertyValue("PortID", value));
    EXPECT_EQ(value, "COM_Port#cam0");
    EXPECT_TRUE(info.GetPropertyValue("DeviceSpecificString", value));
    EXPECT_EQ(value, "text");
    EXPECT_TRUE(info.GetPropertyValue("InitialBaudRate", value));
    EXPECT_EQ(value, "Baud115200");
}

TEST_F(EnumeratesCameras, WithSerialNumbersThatAreNoNames) {
    auto camera = Camera("21#0042/A (b) %23");
    camera.firmware = "2.1 beta/3";
    Add("cam0", camera);
    const DeviceInfoList list = Enumerate();
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].GetSerialNumber(), camera.serial);
    gcstring value;
    EXPECT_TRUE(list[0].GetPropertyValue("DeviceID", value));
    EXPECT_THAT(value.str(), testing::EndsWith("#Marlow#Heron#H2048#2.1 beta/3#21%230042/A (b) %2523"));
    Vanto::IVantoDevice* const device = CTlFactory::GetInstance().CreateDevice(list[0]);
    device->Open();
    EXPECT_THAT(SerialNumbers(), ElementsAre(camera.serial)) << "asked of the open device";
    device->Close();
    EXPECT_THAT(SerialNumbers(), ElementsAre(camera.serial));
    CTlFactory::GetInstance().DestroyDevice(device);
}

TEST_F(EnumeratesCameras, OfEnabledPortsOnly) {
    Add("cam0", Camera("21"));
    simulator.Add("cam1", Camera("22"));
    EXPECT_THAT(SerialNumbers(), ElementsAre("21"));
    EXPECT_EQ(simulator.StatisticsOf("cam1").bytesIn, 0u);
}

TEST_F(EnumeratesCameras, AtAnyBaudRate) {
    auto fast = Camera("21");
    fast.baud = 115200;
    auto fastest = Camera("22");
    fastest.baud = 921600;
    Add("cam0", fast);
    Add("cam1", fastest);
    EXPECT_THAT(SerialNumbers(), UnorderedElementsAre("21", "22"));
}

TEST_F(EnumeratesCameras, WhoseTextsAreUnusual) {
    Add("cam0", Camera("S/N 7-%s.<&>"));
    EXPECT_THAT(SerialNumbers(), ElementsAre("S/N 7-%s.<&>"));
    EXPECT_EQ(Enumerate()[0].GetFriendlyName(), "Marlow H2048 (S/N 7-%s.<&>)");
}

TEST_F(EnumeratesCameras, ButNotThoseOfOtherMakers) {
    auto other = Camera("21");
    other.manufacturer = "Another";
    Add("cam0", other);
    Add("cam1", Camera("22"));
    EXPECT_THAT(SerialNumbers(), ElementsAre("22"));
}

TEST_F(EnumeratesCameras, ThatComeAndGo) {
    Add("cam0", Camera("21"));
    Add("cam1", Camera("22"));
    EXPECT_THAT(SerialNumbers(), UnorderedElementsAre("21", "22"));
    simulator.Unplug("cam0");
    EXPECT_THAT(SerialNumbers(), ElementsAre("22"));
    simulator.Plug("cam0");
    EXPECT_THAT(SerialNumbers(), UnorderedElementsAre("21", "22"));
}

TEST_F(EnumeratesCameras, ThatAreExchanged) {
    Add("cam0", Camera("21"));
    EXPECT_THAT(SerialNumbers(), ElementsAre("21"));
    auto other = Camera("99", "H4096");
    other.baud = 57600;
    simulator.Exchange("cam0", other);
    const DeviceInfoList list = Enumerate();
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].GetFriendlyName(), "Marlow H4096 (99)");
}

TEST_F(EnumeratesCameras, ThatAreSwapped) {
    Add("cam0", Camera("21"));
    Add("cam1", Camera("22"));
    const DeviceInfoList before = Enumerate();
    simulator.Exchange("cam0", Camera("22"));
    simulator.Exchange("cam1", Camera("21"));
    const DeviceInfoList after = Enumerate();
    ASSERT_EQ(before.size(), 2u);
    ASSERT_EQ(after.size(), 2u);
    EXPECT_EQ(before[0].GetSerialNumber(), after[1].GetSerialNumber());
    EXPECT_EQ(before[1].GetSerialNumber(), after[0].GetSerialNumber());
}

TEST_F(EnumeratesCameras, BesideOneThatIsSilent) {
    auto silent = Camera("21");
    silent.faults.silent = true;
    Add("cam0", silent);
    Add("cam1", Camera("22"));
    EXPECT_THAT(SerialNumbers(), ElementsAre("22"));
    EXPECT_EQ(m_log.CountText("Seems there is no device connected to port 'COM_Port#cam0'. Skipping further probes.",
                              kWarning),
              1u);
}

TEST_F(EnumeratesCameras, OverALineThatLosesAPacket) {
    Add("cam0", Camera("21"));
    for (std::uint64_t packet = 1; packet <= 6; ++packet) {
        MarlowSim::FaultSettings faults;
        faults.failAt = packet;
        simulator.SetFaults("cam0", faults);
        EXPECT_THAT(SerialNumbers(), ElementsAre("21")) << packet;
    }
}

TEST_F(EnumeratesCameras, OverALineThatRepeatsEveryPacket) {
    auto camera = Camera("21");
    camera.faults.repeat = 1;
    Add("cam0", camera);
    EXPECT_THAT(SerialNumbers(), ElementsAre("21"));
}

TEST_F(EnumeratesCameras, BesideOneWhoseTtyVanishesDuringTheProbe) {
    Add("cam0", Camera("21"));
    Add("cam1", Camera("22"));
    for (std::uint64_t packets = 1; packets <= 8; ++packets) {
        MarlowSim::FaultSettings faults;
        faults.dropAfter = packets;
        simulator.SetFaults("cam0", faults);
        EXPECT_THAT(SerialNumbers(), Contains("22")) << packets;
        simulator.SetFaults("cam0", {});
        if (!simulator.IsPlugged("cam0"))
            simulator.Plug("cam0");
        EXPECT_THAT(SerialNumbers(), UnorderedElementsAre("21", "22")) << packets;
    }
}

TEST_F(EnumeratesCameras, BesideAPortThatIsInUse) {
    Add("cam0", Camera("21"));
    Add("cam1", Camera("22"));
    gcstring deviceId;
    for (const CDeviceInfo& info : Enumerate()) {
        if (info.GetSerialNumber() == "21")
            info.GetPropertyValue("DeviceID", deviceId);
    }
    CLProtocol::CCLPort other;
    other.Connect("COM_Port#cam0", deviceId);
    EXPECT_THAT(SerialNumbers(), ElementsAre("22"));
    EXPECT_EQ(m_log.CountText("Error accessing port 'COM_Port#cam0'. Retrying!", kWarning), 1u);
    other.Disconnect();
    EXPECT_THAT(SerialNumbers(), UnorderedElementsAre("21", "22"));
}

TEST_F(EnumeratesCameras, ThatMatchAFilter) {
    Add("cam0", Camera("21"));
    Add("cam1", Camera("22", "H4096"));
    DeviceInfoList filter;
    CDeviceInfo model;
    model.SetModelName("H4096");
    filter.push_back(model);
    DeviceInfoList list;
    EXPECT_EQ(CTlFactory::GetInstance().EnumerateDevices(list, filter), 1);
    EXPECT_EQ(list[0].GetSerialNumber(), "22");
}

}  // namespace
}  // namespace integration
