/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Making devices: where the description comes from, what is injected, what fails and what is left behind
 */

#include "DeviceFixture.h"
#include "vanto/TlFactory.h"

namespace clser_test {

using GenICam::gcstring;
using GenICam::gcstring_vector;
using GenICam::InvalidArgumentException;
using GenICam::RuntimeException;
using namespace Vanto::tracelog;

class DeviceCreation : public DeviceTest {
protected:
    static gcstring Source(Vanto::IVantoDevice* device) { return device->GetDeviceInfo().GetXMLSource(); }

    gcstring SourceOfCreated() {
        Vanto::IVantoDevice* device = CreateDevice();
        const gcstring source = Source(device);
        m_tl->DestroyDevice(device);
        return source;
    }
};

TEST_F(DeviceCreation, BuildsTheNodeMapFromTheCamerasDescription) {
    Vanto::IVantoDevice* device = CreateDevice();
    EXPECT_EQ(Source(device), "Device");
    scripted::Driver().SetRegister(kWidthAddress, std::string("\0\0\x08\0", 4));
    EXPECT_EQ(Integer(device, "Width")->GetValue(), 2048);
    EXPECT_EQ(
        Logged(kDebug, "Successfully opend CLPort with PortID 'Scripted#Port0' and DeviceID '" + DeviceId() + "'."),
        1u);
    EXPECT_EQ(m_log.CountFormat("Downloaded XML from device '%s' length %d", kDebug), 1u);
    EXPECT_EQ(m_log.CountFormat("Downloaded XML starts with '%s'...", kTrace), 1u);
    m_tl->DestroyDevice(device);
}

TEST_F(DeviceCreation, LogsTheFirstFiveHundredCharacters) {
    const std::string xml = Description(BaudRateNodes(AllRates()));
    m_tl->DestroyDevice(CreateDevice());
    EXPECT_EQ(Logged(kTrace, "Downloaded XML starts with '" + xml.substr(0, 500) + "'..."), 1u);
}

TEST_F(DeviceCreation, TakesTheSourceFromTheMarkedComment) {
    SetXml(Description("", "<!-- |abc| -->\n"));
    EXPECT_EQ(SourceOfCreated(), "Device:abc");
}

TEST_F(DeviceCreation, KeepsTheBlanksBetweenTheMarkers) {
    SetXml(Description("", "<!-- | a b | -->\n"));
    EXPECT_EQ(SourceOfCreated(), "Device: a b ");
}

TEST_F(DeviceCreation, IgnoresAMarkerThatIsNotClosed) {
    SetXml(Description("", "<!-- |abc -->\n"));
    EXPECT_EQ(SourceOfCreated(), "Device");
}

TEST_F(DeviceCreation, IgnoresAMarkerThatIsClosedBeforeItIsOpened) {
    SetXml(Description("", "<!-- x| --><!-- |abc -->\n"));
    EXPECT_EQ(SourceOfCreated(), "Device");
}

TEST_F(DeviceCreation, TakesNoBarForBothMarkers) {
    SetXml(Description("", "<!-- | -->\n"));
    EXPECT_EQ(SourceOfCreated(), "Device");
}

TEST_F(DeviceCreation, TakesNothingBetweenTheMarkersForNoSource) {
    SetXml(Description("", "<!-- || -->\n"));
    EXPECT_EQ(SourceOfCreated(), "Device");
}

TEST_F(DeviceCreation, TakesTheFirstOfSeveralMarkedComments) {
    SetXml(Description("", "<!-- |first| --><!-- |second| -->\n"));
    EXPECT_EQ(SourceOfCreated(), "Device:first");
}

TEST_F(DeviceCreation, IgnoresAMarkerThatIsNotOpened) {
    SetXml(Description("", "<!-- abc| -->\n"));
    EXPECT_EQ(SourceOfCreated(), "Device");
}

TEST_F(DeviceCreation, UsesTheOverridingFile) {
    scripted::TemporaryFolder folder;
    folder.Write("camera.xml", Description("<Integer Name=\"FromFile\"><Value>5</Value></Integer>"));
    auto info = Info();
    info.SetDeviceXMLFileOverride(folder / "camera.xml");
    Vanto::IVantoDevice* device = m_tl->CreateDevice(info);
    EXPECT_EQ(Source(device), folder / "camera.xml");
    EXPECT_EQ(Integer(device, "FromFile")->GetValue(), 5);
    EXPECT_EQ(m_log.CountFormat("Using XML from path '%s' for device '%s'", kDebug), 1u);
    m_tl->DestroyDevice(device);
}

TEST_F(DeviceCreation, FailsWithoutAnyDescription) {
    LetCameraHoldNoDescription();
    const std::string expected =
        "Device creation failed. Don't know what XML configuration file to use for the device " +
        Info().GetFullName().str();
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { CreateDevice(); }), expected);
    EXPECT_EQ(Logged(kError, expected), 1u);
    EXPECT_EQ(scripted::Driver().CountConnections(), 0u);  // the device is gone, and its port is closed
}

TEST_F(DeviceCreation, InjectsOneFragment) {
    Vanto::IVantoDevice* device = m_tl->CreateDevice(Info(), gcstring_vector{kInjected});
    EXPECT_EQ(Integer(device, "Injected")->GetValue(), 7);
    EXPECT_TRUE(Integer(device, "Width").IsValid());
    m_tl->DestroyDevice(device);
}

TEST_F(DeviceCreation, RefusesTwoFragments) {
    EXPECT_EQ(
        DescriptionOf<RuntimeException>([&] {
            m_tl->CreateDevice(Info(), gcstring_vector{kInjected, kInjected});
        }),
        "Cannot create node map. Too many strings(2) to inject. Currently the injection of only one XML string is "
        "supported.");
    EXPECT_EQ(scripted::Driver().CountConnections(), 0u);
    EXPECT_EQ(m_log.CountFormat("Error downloading XML from device '%s': %s", kDebug), 1u);
}

TEST_F(DeviceCreation, RefusesAnEmptyPortID) {
    auto info = Info();
    info.SetPortID("");
    const std::string expected = "Missing PortID property in device info of '" + info.GetFullName().str() + "'";
    EXPECT_EQ(DescriptionOf<InvalidArgumentException>([&] { m_tl->CreateDevice(info); }), expected);
    EXPECT_EQ(Logged(kError, expected), 1u);
}

TEST_F(DeviceCreation, RefusesARecordWithoutDeviceID) {
    Vanto::CVantoCLSerDeviceInfo info;
    info.SetPortID(kPortId);
    info.SetFullName("name");
    info.GetInfoImpl().ClearUserProvidedFlag();
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_tl->CreateDevice(info); }),
              "Missing DeviceID property in device info of 'name'");
}

TEST_F(DeviceCreation, FailsWhenTheCameraCantBeConnected) {
    scripted::Serial().SetCamera(0, "");
    const std::string expected =
        "Could not open CLPort with PortID 'Scripted#Port0' and DeviceID '" + DeviceId() + "'.";
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { CreateDevice(); }), expected);
    EXPECT_EQ(Logged(kError, expected), 1u);
}

TEST_F(DeviceCreation, FailsForASecondDeviceOnThePort) {
    Vanto::IVantoDevice* device = CreateDevice();
    EXPECT_THROW(CreateDevice(), RuntimeException);
    m_tl->DestroyDevice(device);
}

TEST_F(DeviceCreation, RunsTheCreationHook) {
    struct Hook : Vanto::IDeviceCreationHook {
        void OnCreateDevice(Vanto::CDeviceInfo&, gcstring_vector& injected) override { injected.push_back(kInjected); }
    } hook;
    EXPECT_EQ(m_tl->SetCreationHook(&hook), nullptr);
    Vanto::IVantoDevice* device = CreateDevice();
    EXPECT_EQ(Integer(device, "Injected")->GetValue(), 7);
    EXPECT_EQ(m_tl->SetCreationHook(nullptr), &hook);
    m_tl->DestroyDevice(device);
}

TEST_F(DeviceCreation, RefusesAHookThatChangesTheRecord) {
    struct Hook : Vanto::IDeviceCreationHook {
        void OnCreateDevice(Vanto::CDeviceInfo& info, gcstring_vector&) override { info.SetSerialNumber("other"); }
    } hook;
    m_tl->SetCreationHook(&hook);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { CreateDevice(); }),
              "Device creation failed. Bad device information supplied.");
}

TEST_F(DeviceCreation, AllowsAModifiedRecordWithoutAHook) {
    auto info = Info();
    info.SetUserDefinedName("mine");
    EXPECT_TRUE(info.GetInfoImpl().IsModified());
    m_tl->DestroyDevice(m_tl->CreateDevice(info));
}

TEST_F(DeviceCreation, IsRestrictedByTheEnvironment) {
    const scripted::ScopedVariable restriction("VANTO_USE_TL", "marlowcameralink");
    m_tl = std::make_unique<Vanto::CVantoCLSerTl>();
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { CreateDevice(); }),
              "Device creation failed. Transport layer is restricted by the environment");
}

TEST_F(DeviceCreation, TellsWhetherThePortIsOpenWithoutTouchingTheLine) {
    Vanto::AccessibilityCode code = Vanto::Accessibility_Unknown;
    EXPECT_TRUE(m_tl->IsDeviceAccessible(Info(), Vanto::AccessModeSet(), &code));
    EXPECT_EQ(code, 1u);
    Vanto::IVantoDevice* device = CreateDevice();
    const int calls = scripted::Serial().calls;
    EXPECT_FALSE(m_tl->IsDeviceAccessible(Info(), Vanto::AccessModeSet(), &code));
    EXPECT_EQ(code, 3u);
    EXPECT_EQ(scripted::Serial().calls, calls);
    m_tl->DestroyDevice(device);
}

TEST_F(DeviceCreation, ReportsAnErrorOfTheAccessibilityCheck) {
    Vanto::CVantoCLSerDeviceInfo info;
    info.GetInfoImpl().ClearUserProvidedFlag();
    Vanto::AccessibilityCode code = Vanto::Accessibility_Ok;
    EXPECT_FALSE(m_tl->IsDeviceAccessible(info, Vanto::AccessModeSet(), &code));
    EXPECT_EQ(code, 0u);
    EXPECT_EQ(m_log.CountFormat("Error checking accessibility err='%hs'...", kError), 1u);
}

TEST_F(DeviceCreation, CanProvideIsFalseForARecordWithoutPort) {
    EXPECT_FALSE(m_tl->CanProvideXMLFile(Vanto::CDeviceInfo()));
    EXPECT_EQ(Logged(kError, "Exception while calling CCLPort::GetXML error: 'Missing PortID property in device info'"),
              1u);
}

TEST_F(DeviceCreation, CanProvideIsFalseForARecordWithoutDeviceID) {
    Vanto::CVantoCLSerDeviceInfo info;
    info.SetPortID(kPortId);
    EXPECT_FALSE(m_tl->CanProvideXMLFile(info));
    EXPECT_EQ(
        Logged(kError, "Exception while calling CCLPort::GetXML error: 'Missing DeviceID property in device info'"),
        1u);
}

TEST_F(DeviceCreation, CanProvideIsFalseWhenTheDriverThrows) {
    scripted::Driver().onGetXmlIds = [](auto...) -> std::int32_t { throw std::runtime_error("driver's own"); };
    EXPECT_FALSE(m_tl->CanProvideXMLFile(Info()));
    EXPECT_EQ(m_log.CountFormat("Exception while calling CCLPort::GetXML error: '%s'", kError), 1u);
}

TEST_F(DeviceCreation, ProvideThrowsForARecordWithoutDeviceID) {
    Vanto::CVantoCLSerDeviceInfo info;
    info.SetPortID(kPortId);
    info.SetFriendlyName("friendly");
    gcstring source;
    gcstring xml;
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_tl->ProvideXMLFile(info, source, xml); }),
              "Could not get XML for device 'friendly' (Missing DeviceID property in device info)");
}

TEST_F(DeviceCreation, ProvideThrowsForAnEmptyDescription) {
    scripted::Driver().onGetXml = [](const char*, char*, std::uint32_t*) { return -10004; };
    gcstring source = "kept";
    gcstring xml;
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_tl->ProvideXMLFile(Info(), source, xml); }),
              "Could not get XML for device 'Marlow H2048 (1234)'");
    EXPECT_EQ(source, "kept");
    EXPECT_EQ(Logged(kWarning, "ProvideXMLFile will return an empty string!"), 1u);
    EXPECT_EQ(m_log.CountFormat("Exception while calling CCLPort::GetXML error: %s", kError), 1u);
}

TEST_F(DeviceCreation, PassesOnWhatTheDriverLogs) {
    m_tl->DestroyDevice(CreateDevice());  // loads the driver
    scripted::Driver().Log(CLProtocol::CLP_LOG_ERROR, "rate %d%s", 5, "%");
    scripted::Driver().Log(CLProtocol::CLP_LOG_NOTICE, "noted");
    EXPECT_EQ(Logged(kError, "rate 5%"), 1u);
    EXPECT_EQ(Logged(kInfo, "noted"), 1u);
}

TEST_F(DeviceCreation, DestroysDevicesWithTheTransportLayer) {
    CreateDevice();
    EXPECT_EQ(scripted::Driver().CountConnections(), 1u);
    m_tl.reset();
    EXPECT_EQ(scripted::Driver().CountConnections(), 0u);
}

TEST_F(DeviceCreation, RefusesToDestroyADeviceTwice) {
    Vanto::IVantoDevice* device = CreateDevice();
    m_tl->DestroyDevice(device);
    EXPECT_EQ(DescriptionOf<GenICam::LogicalErrorException>([&] { m_tl->DestroyDevice(device); }),
              "Trying to destroy device which hasn't been created by me");
}

}  // namespace clser_test
