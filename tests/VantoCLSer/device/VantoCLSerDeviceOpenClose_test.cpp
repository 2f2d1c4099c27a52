/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Opening and closing devices, and the baud rate in between
 */

#include "DeviceFixture.h"

namespace clser_test {

using GenICam::LogicalErrorException;
using GenICam::RuntimeException;
using namespace Vanto::tracelog;

class DeviceOpenClose : public DeviceTest {
protected:
    ~DeviceOpenClose() override {
        if (m_device != nullptr)
            m_tl->DestroyDevice(m_device);
    }

    void Create(const std::string& initialBaudRate = "") {
        auto info = Info();
        if (!initialBaudRate.empty())
            info.SetInitialBaudRate(initialBaudRate);
        m_device = m_tl->CreateDevice(info);
    }

    void CreateAndOpen(const std::string& initialBaudRate = "") {
        Create(initialBaudRate);
        m_device->Open();
    }

    GenApi::EAccessMode EntryMode(const char* symbolic) {
        const GenApi::CEnumerationPtr node = m_device->GetNodeMap()->GetNode("ClSerialPortBaudRate");
        return node->GetEntryByName(symbolic)->GetAccessMode();
    }

    Vanto::IVantoDevice* m_device = nullptr;
};

TEST_F(DeviceOpenClose, SetsTheFastestRateAndPutsTheOldOneBack) {
    CreateAndOpen();
    EXPECT_TRUE(m_device->IsOpen());
    EXPECT_EQ(RateRegister(), 23);
    EXPECT_EQ(
        Logged(kDebug, "Automatically set baud rate node for device 'Marlow H2048 (1234)' to '23' old value was 15."),
        1u);
    EXPECT_EQ(Logged(kInfo, "Device 'Marlow H2048 (1234)' opened"), 1u);
    m_device->Close();
    EXPECT_FALSE(m_device->IsOpen());
    EXPECT_EQ(RateRegister(), 15);
    EXPECT_EQ(Logged(kDebug, "Restored old baud rate for device 'Marlow H2048 (1234)'."), 1u);
}

TEST_F(DeviceOpenClose, DisablesRatesThatThePortCantDo) {
    scripted::Serial().supportedRates = 0x14;
    CreateAndOpen();
    EXPECT_EQ(RateRegister(), 20);
    EXPECT_EQ(EntryMode("Baud38400"), GenApi::RO);
    EXPECT_EQ(EntryMode("Baud115200"), GenApi::RO);
    for (const char* name : {"Baud9600", "Baud19200", "Baud57600", "Baud230400", "Baud460800", "Baud921600"}) {
        EXPECT_EQ(EntryMode(name), GenApi::NA) << name;
        EXPECT_EQ(Logged(kDebug, std::string("Disabled EnumValue '") + name +
                                     "' for device 'Marlow H2048 (1234)' since the CLPort doesn't support it."),
                  1u);
    }
}

struct Mask {
    std::uint32_t rates;
    std::int64_t fastest;
};

class DeviceOpenCloseOnPort : public DeviceOpenClose, public testing::WithParamInterface<Mask> {};

TEST_P(DeviceOpenCloseOnPort, SetsTheFastestOfItsRates) {
    scripted::Serial().supportedRates = GetParam().rates;
    CreateAndOpen();
    EXPECT_EQ(RateRegister(), GetParam().fastest);
    std::uint32_t flag = 1;
    for (const RateEntry& entry : AllRates()) {
        EXPECT_EQ(EntryMode(entry.name.c_str()), (GetParam().rates & flag) != 0 ? GenApi::RO : GenApi::NA)
            << entry.name;
        flag <<= 1;
    }
}

INSTANTIATE_TEST_SUITE_P(Masks, DeviceOpenCloseOnPort,
                         testing::Values(Mask{0x01, 15}, Mask{0x02, 17}, Mask{0x04, 18}, Mask{0x08, 19}, Mask{0x10, 20},
                                         Mask{0x14, 20}, Mask{0x20, 21}, Mask{0x40, 22}, Mask{0x7F, 22}, Mask{0x80, 23},
                                         Mask{0xFF, 23}, Mask{0xFFFFFF01, 15}),
                         [](const auto& test) { return "Of" + std::to_string(test.param.rates); });

TEST_F(DeviceOpenClose, TriesTheRate0WhenThereIsNone) {
    scripted::Serial().supportedRates = 0;
    CreateAndOpen();
    EXPECT_EQ(RateRegister(), 15);
    EXPECT_EQ(m_log.CountFormat("Could not set initial baud rate to %I64i for device '%hs' Error='%hs'.", kWarning),
              1u);
    m_device->Close();
    EXPECT_EQ(RateRegister(), 15);
}

TEST_F(DeviceOpenClose, RefusesAnInitialRateThatThereIsNot) {
    CreateAndOpen("Baud12345");
    EXPECT_EQ(RateRegister(), 15);
    EXPECT_EQ(m_log.CountFormat("Could not set initial baud rate to '%hs' for device '%hs' Error='%hs'.", kWarning),
              1u);
}

TEST_F(DeviceOpenClose, TakesAnEmptyInitialRateForNone) {
    auto info = Info();
    info.SetInitialBaudRate("");
    m_device = m_tl->CreateDevice(info);
    m_device->Open();
    EXPECT_EQ(RateRegister(), 23);
}

TEST_F(DeviceOpenClose, DisablesEveryRateWhenThePortDoesNotTell) {
    scripted::Serial().onGetSupportedBaudRates = [](std::uint32_t*) { return -10006; };
    CreateAndOpen();
    EXPECT_EQ(EntryMode("Baud9600"), GenApi::NA);
    EXPECT_EQ(RateRegister(), 15);
    EXPECT_EQ(m_log.CountFormat("Could not set initial baud rate to %I64i for device '%hs' Error='%hs'.", kWarning),
              1u);
    EXPECT_TRUE(m_device->IsOpen());
}

TEST_F(DeviceOpenClose, TreatsEntriesOutsideTheTable) {
    SetXml(Description(BaudRateNodes(
        {{"Baud9600", 15}, {"Sixteen", 16}, {"Baud115200", 20}, {"Top", 255}, {"Beyond", 256}, {"Far", 300}})));
    CreateAndOpen();
    EXPECT_EQ(EntryMode("Sixteen"), GenApi::NA);
    EXPECT_EQ(EntryMode("Top"), GenApi::NA);
    EXPECT_EQ(EntryMode("Beyond"), GenApi::RO);
    EXPECT_EQ(EntryMode("Far"), GenApi::RO);
    EXPECT_EQ(Logged(kError, "Invalid EnumValue 'Beyond' of 256."), 1u);
    EXPECT_EQ(Logged(kError, "Invalid EnumValue 'Far' of 300."), 1u);
    EXPECT_EQ(RateRegister(), 20);
}

TEST_F(DeviceOpenClose, SetsTheInitialRateOfTheRecord) {
    CreateAndOpen("Baud57600");
    EXPECT_EQ(RateRegister(), 19);
    EXPECT_EQ(Logged(kDebug, "Set baud rate node for device 'Marlow H2048 (1234)' to 'Baud57600' old value was 15."),
              1u);
}

TEST_F(DeviceOpenClose, TriesADisabledInitialRate) {
    scripted::Serial().supportedRates = 0x01;
    CreateAndOpen("Baud57600");
    EXPECT_EQ(RateRegister(), 15);
    EXPECT_TRUE(m_device->IsOpen());
    EXPECT_EQ(m_log.CountFormat("Could not set initial baud rate to '%hs' for device '%hs' Error='%hs'.", kWarning),
              1u);
}

TEST_F(DeviceOpenClose, SkipsTheNegotiationWithoutTheNode) {
    SetXml(Description(""));
    CreateAndOpen();
    EXPECT_EQ(
        Logged(kWarning,
               "Node 'ClSerialPortBaudRate' not in nodemap of device 'Marlow H2048 (1234)'!!! Will skip baud rate "
               "maximizing. Please check your XML."),
        1u);
    m_device->Close();
    EXPECT_EQ(m_log.CountFormat("Restored old baud rate for device '%hs'."), 0u);
    EXPECT_EQ(m_log.CountFormat("Could not restore old baud rate for device '%hs'. Baud rate will be left as it is."),
              0u);
}

TEST_F(DeviceOpenClose, SkipsTheNegotiationForANodeOfAnotherKind) {
    SetXml(Description(IntReg("ClSerialPortBaudRate", kRateAddress)));
    CreateAndOpen();
    EXPECT_EQ(m_log.CountFormat("Node '%hs' not in nodemap of device '%hs'!!! Will skip baud rate maximizing. Please "
                                "check your XML.",
                                kWarning),
              1u);
}

TEST_F(DeviceOpenClose, OpensAlthoughTheOldRateCantBeRead) {
    Create();
    scripted::Driver().onRead = [](auto...) { return -30001; };
    m_device->Open();
    scripted::Driver().onRead = nullptr;
    EXPECT_EQ(m_log.CountFormat("Error modifying baud rate node for device '%hs' Error='%hs'.", kWarning), 1u);
    EXPECT_TRUE(m_device->IsOpen());
}

TEST_F(DeviceOpenClose, RefusesASecondOpen) {
    CreateAndOpen();
    const std::string expected = "Device 'Marlow H2048 (1234)' is already open and cannot be opened again.";
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([this] { m_device->Open(); }), expected);
    EXPECT_EQ(Logged(kError, expected), 1u);
    EXPECT_TRUE(m_device->IsOpen());
}

TEST_F(DeviceOpenClose, RefusesToCloseAClosedDevice) {
    CreateAndOpen();
    m_device->Close();
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([this] { m_device->Close(); }),
              "Device 'Marlow H2048 (1234)' is not open and cannot be closed.");
    EXPECT_EQ(Logged(kWarning, "Device 'Marlow H2048 (1234)' is not open and therefore won't be closed again."), 1u);
}

TEST_F(DeviceOpenClose, OpensAgainAfterClosing) {
    CreateAndOpen();
    m_device->Close();
    EXPECT_EQ(scripted::Driver().CountConnections(), 0u);
    m_device->Open();
    EXPECT_EQ(scripted::Driver().CountConnections(), 1u);
}

TEST_F(DeviceOpenClose, FailsWhenThePortCantBeConnected) {
    CreateAndOpen();
    m_device->Close();
    scripted::Serial().SetCamera(0, "");
    EXPECT_EQ(DescriptionOf<RuntimeException>([this] { m_device->Open(); }),
              "Could not open CLPort 'Scripted#Port0' for device 'Marlow H2048 (1234)'.");
    EXPECT_EQ(Logged(kError, "Could not open CLPort for device 'Marlow H2048 (1234)'."), 1u);
    EXPECT_FALSE(m_device->IsOpen());
}

TEST_F(DeviceOpenClose, KeepsTheDeviceIDOfAPortThatWasClosedForInactivity) {
    CreateAndOpen();
    m_tl->GetOrCreatePort(kPortId).Close(true);
    scripted::Driver().onProbe = [](auto...) { return -30001; };  // so that restoring the rate can't reopen it
    m_device->Close();
    scripted::Driver().onProbe = nullptr;
    EXPECT_EQ(m_log.CountFormat("Could not restore old baud rate for device '%hs'. Baud rate will be left as it is.",
                                kWarning),
              1u);
    EXPECT_EQ(DescriptionOf<RuntimeException>([this] { m_device->Open(); }),
              "Could not open CLPort 'Scripted#Port0' for device 'Marlow H2048 (1234)'.");
}

TEST_F(DeviceOpenClose, ClosesOnDestruction) {
    CreateAndOpen();
    m_tl->DestroyDevice(m_device);
    m_device = nullptr;
    EXPECT_EQ(RateRegister(), 15);
    EXPECT_EQ(scripted::Driver().CountConnections(), 0u);
}

// A device needs its port to the end: the camera must get its old rate back.
TEST_F(DeviceOpenClose, ClosesBeforeItsPortWhenTheTransportLayerGoes) {
    CreateAndOpen();
    m_device = nullptr;
    m_tl.reset();
    EXPECT_EQ(RateRegister(), 15);
    EXPECT_EQ(Logged(kDebug, "Restored old baud rate for device 'Marlow H2048 (1234)'."), 1u);
    EXPECT_EQ(scripted::Driver().CountConnections(), 0u);
}

TEST_F(DeviceOpenClose, MissingPropertiesAreNamed) {
    Vanto::CVantoCLSerPort port(kPortId);
    Vanto::CVantoCLSerDevice* device = Vanto::CVantoCLSerDevice::Create(Vanto::CVantoCLSerDeviceInfo(), port);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { device->Open(Vanto::AccessModeSet()); }),
              "Cannot get device PortID from device info.");
    EXPECT_EQ(Logged(kError, "Cannot get PortID from device info."), 1u);
    device->DestroySelf();

    Vanto::CVantoCLSerDeviceInfo info;
    info.SetPortID(kPortId);
    device = Vanto::CVantoCLSerDevice::Create(info, port);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { device->Open(Vanto::AccessModeSet()); }),
              "Cannot get device DeviceID from device info.");
    EXPECT_EQ(Logged(kError, "Cannot get DeviceID from device info."), 1u);
    device->DestroySelf();
}

}  // namespace clser_test
