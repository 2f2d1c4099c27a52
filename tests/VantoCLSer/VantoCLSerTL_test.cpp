/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of reading the configuration, enumerating and probing
 */

#include "VantoCLSer/VantoCLSerTL.h"

#include <algorithm>
#include <thread>

#include "TlFixture.h"
#include "VantoCLSer/VantoCLSerTlDeviceInfoImpl.h"
#include "tests/VantoCLSer/Fixture.h"

namespace Vanto {
namespace {

using namespace clser_test;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kOther[] = "Marlow#Heron#H4096#5678";
constexpr char kNoUsable[] =
    "No valid usable PortIDs due to no enabled ports in PortConfiguration.xml. Enumeration will return 0 devices.";

TEST_F(TlTest, MakesRecordsOfItsClassOnly) {
    StringList_t names;
    EXPECT_EQ(m_tl.CreateDeviceInfo().GetPropertyNames(names), 1);
    EXPECT_EQ(m_tl.CreateDeviceInfo().GetDeviceClass(), "MarlowCameraLink");
}

TEST_F(TlTest, LeavesTheRestToTheFrame) {
    EXPECT_EQ(m_tl.ReservedOperation(CDeviceInfo(), this), nullptr);
    EXPECT_NE(m_tl.GetNodeMap()->GetNode("ChunkNodeMapSupportEnable"), nullptr);
    EXPECT_EQ(m_tl.GetXmlFileProvider(), static_cast<IXmlFileProvider*>(&m_tl));
}

class Enumeration : public TlTest {
protected:
    Enumeration() { scripted::Serial().SetPorts(3, {kCamera, "", kOther}); }

    DeviceInfoList Enumerate() {
        DeviceInfoList list;
        const int count = m_tl.EnumerateDevices(list);
        EXPECT_EQ(count, static_cast<int>(list.size()));
        return list;
    }
    static std::vector<gcstring> FriendlyNames(const DeviceInfoList& list) {
        std::vector<gcstring> names;
        for (const CDeviceInfo& info : list)
            names.push_back(info.GetFriendlyName());
        return names;
    }
    static std::string Settings(const std::string& manufacturer, const std::string& family, const std::string& model,
                                const std::string& text, const std::string& rate = "115200") {
        return "<Manufacturer>" + manufacturer + "</Manufacturer><Family>" + family + "</Family><Model>" + model +
               "</Model><DeviceSpecificString>" + text + "</DeviceSpecificString><BaudRate>" + rate + "</BaudRate>";
    }
    void EnableAll(const std::string& settings = "") {
        WriteConfiguration(PortElement("Scripted#Port0", settings) + PortElement("Scripted#Port1", settings) +
                           PortElement("Scripted#Port2", settings));
    }
};

TEST_F(Enumeration, FindsCamerasOnEnabledPorts) {
    EnableAll();
    EXPECT_THAT(FriendlyNames(Enumerate()), ElementsAre("Marlow H2048 (1234)", "Marlow H4096 (5678)"));
}

TEST_F(Enumeration, MakesCompleteRecords) {
    EnableAll();
    const DeviceInfoList list = Enumerate();
    ASSERT_EQ(list.size(), 2u);
    const CVantoCLSerDeviceInfo info(list[0]);
    EXPECT_EQ(info.GetPortID(), "Scripted#Port0");
    EXPECT_EQ(info.GetDeviceID(), scripted::FullDeviceId(kCamera).c_str());
    EXPECT_TRUE(info.IsSubset(CVantoCLSerTlDeviceInfoImpl("Scripted#Port0", scripted::FullDeviceId(kCamera))));
    EXPECT_FALSE(info.IsUserProvided());
}

TEST_F(Enumeration, LogsEachStep) {
    WriteConfiguration(PortElement("Scripted#Port1") + PortElement("Scripted#Port0"));
    scripted::Driver().templates = "Another\tMarlow";
    Enumerate();
    std::vector<Logged> logged = LoggedIn(kTl);
    const std::string available = "Found available PortID '%s'";
    const std::ptrdiff_t count = std::ranges::count(logged, available, &Logged::format);
    // The machine's own ports come and go with other programs.
    std::erase_if(logged, [&](const Logged& entry) {
        return entry.format == available && !entry.arguments.at(0).starts_with("Scripted#");
    });
    const std::string another = scripted::FullDeviceId("Another");
    const std::string marlow = scripted::FullDeviceId("Marlow");
    const std::string camera = scripted::FullDeviceId(kCamera);
    const std::vector<Logged> expected = {
        {kDebug, kLoading, {ConfigurationPath()}},
        {kDebug, "Successfully parsed %u entries from CLbindings file.", {"2"}},
        {kDebug, "GetPortIDs() found %u ports.", {std::to_string(count)}},
        {kDebug, available, {"Scripted#Port0"}},
        {kDebug, available, {"Scripted#Port1"}},
        {kDebug, available, {"Scripted#Port2"}},
        {kDebug, "Valid usable PortID '%s'", {"Scripted#Port0"}},
        {kDebug, "Valid usable PortID '%s'", {"Scripted#Port1"}},
        {kDebug, "Found DeviceIDTemplate '%s'", {another}},
        {kDebug, "Found DeviceIDTemplate '%s'", {marlow}},
        {kDebug, "Usable DeviceIDTemplate: '%s'", {marlow}},
        {kDebug, "Port '%s' adding '%s' to slot %u!", {"Scripted#Port0", camera, "0"}},
        {kWarning, "Seems there is no device connected to port '%s'. Skipping further probes.", {"Scripted#Port1"}},
        {kDebug, "Probed '%s' found '%s'", {"Scripted#Port0", camera}},
        {kDebug, "Probed '%s' found '%s'", {"Scripted#Port1", ""}},
    };
    EXPECT_EQ(logged, expected);
}

TEST_F(Enumeration, NumbersSlotsByPort) {
    EnableAll();
    Enumerate();
    EXPECT_EQ(m_log.CountText("Port 'Scripted#Port2' adding '" + scripted::FullDeviceId(kOther) + "' to slot 2!"), 1u);
}

TEST_F(Enumeration, KeepsTheOrderOfTheModule) {
    WriteConfiguration(PortElement("Scripted#Port2") + PortElement("Scripted#Port0"));
    EXPECT_THAT(FriendlyNames(Enumerate()), ElementsAre("Marlow H2048 (1234)", "Marlow H4096 (5678)"));
}

TEST_F(Enumeration, FindsNothingWithoutAConfiguration) {
    EXPECT_THAT(Enumerate(), IsEmpty());
    EXPECT_EQ(LoggedIn(kTl).back(), (Logged{kDebug, kNoUsable, {}}));
    EXPECT_EQ(scripted::Serial().Port(0).opened, 0);
}

TEST_F(Enumeration, ProbesNoDisabledPort) {
    WriteConfiguration(PortElement("Scripted#Port0", "", "false") + PortElement("Scripted#Port2", "", ""));
    EXPECT_THAT(Enumerate(), IsEmpty());
    EXPECT_EQ(scripted::Serial().Port(0).opened + scripted::Serial().Port(2).opened, 0);
    EXPECT_EQ(CountLogged(kTl, {kDebug, kNoUsable, {}}), 1u);
}

TEST_F(Enumeration, ProbesAPortThatIsEnabledByOneOfItsEntries) {
    WriteConfiguration(PortElement("Scripted#Port0", "", "false") + PortElement("Scripted#Port0"));
    EXPECT_EQ(Enumerate().size(), 1u);
}

TEST_F(Enumeration, ProbesAPortWithSeveralEntriesOnce) {
    WriteConfiguration(PortElement("Scripted#Port0") + PortElement("Scripted#Port0"));
    EXPECT_EQ(Enumerate().size(), 1u);
    EXPECT_EQ(scripted::Serial().Port(0).opened, 1);
}

TEST_F(Enumeration, ComparesPortsCaseSensitively) {
    WriteConfiguration(PortElement("scripted#port0") + PortElement("Scripted#Port"));
    EXPECT_THAT(Enumerate(), IsEmpty());
}

TEST_F(Enumeration, IgnoresEntriesOfOtherPorts) {
    WriteConfiguration(PortElement("Nobody#Knows") + PortElement("Scripted#Port0"));
    EXPECT_EQ(Enumerate().size(), 1u);
}

TEST_F(Enumeration, ProbesNoPortWithoutATemplateOfTheMaker) {
    EnableAll();
    scripted::Driver().templates = "Another\tmarlow\tMarlow2";
    EXPECT_THAT(Enumerate(), IsEmpty());
    EXPECT_EQ(LoggedIn(kTl).back(), (Logged{kDebug, "No usable usable DeviceIDTemplates found!", {}}));
    EXPECT_EQ(scripted::Serial().Port(0).opened, 0);
}

TEST_F(Enumeration, TakesTemplatesThatNameMoreThanTheMaker) {
    EnableAll();
    scripted::Driver().templates = "Marlow#Heron#H4096";
    EXPECT_THAT(FriendlyNames(Enumerate()), ElementsAre("Marlow H4096 (5678)"));
}

TEST_F(Enumeration, TriesNoTemplateOfOtherMakers) {
    EnableAll();
    scripted::Driver().templates = "Another\tMarlow";
    scripted::Serial().SetCamera(0, "Another#Family#Model#1");
    EXPECT_THAT(FriendlyNames(Enumerate()), ElementsAre("Marlow H4096 (5678)"));
}

TEST_F(Enumeration, ProbesEachTime) {
    EnableAll();
    EXPECT_EQ(Enumerate().size(), 2u);
    scripted::Serial().SetCamera(0, "");
    scripted::Serial().SetCamera(1, kCamera);
    EXPECT_THAT(FriendlyNames(Enumerate()), ElementsAre("Marlow H2048 (1234)", "Marlow H4096 (5678)"));
    EXPECT_EQ(scripted::Serial().Port(0).opened, 2);
}

TEST_F(Enumeration, AppendsToTheList) {
    EnableAll();
    DeviceInfoList list;
    list.push_back(CDeviceInfo());
    EXPECT_EQ(m_tl.EnumerateDevices(list, true), 2);
    EXPECT_EQ(list.size(), 3u);
}

TEST_F(Enumeration, SetsWhatTheEntrySays) {
    EnableAll(Settings("Marlow", "Heron", "H2048", "text", "57600"));
    const CVantoCLSerDeviceInfo info(Enumerate()[0]);
    EXPECT_EQ(info.GetDeviceSpecificString(), "text");
    EXPECT_EQ(info.GetInitialBaudRate(), "57600");
}

TEST_F(Enumeration, SetsEmptyTexts) {
    EnableAll(Settings("Marlow", "", "", "", ""));
    const CVantoCLSerDeviceInfo info(Enumerate()[0]);
    EXPECT_TRUE(info.IsDeviceSpecificStringAvailable());
    EXPECT_EQ(info.GetDeviceSpecificString(), "");
    EXPECT_TRUE(info.IsInitialBaudRateAvailable());
    EXPECT_EQ(info.GetInitialBaudRate(), "");
}

TEST_F(Enumeration, SetsNothingForACameraOfAnotherMaker) {
    EnableAll(Settings("Another", "Heron", "H2048", "text"));
    const CVantoCLSerDeviceInfo info(Enumerate()[0]);
    EXPECT_FALSE(info.IsDeviceSpecificStringAvailable());
    EXPECT_FALSE(info.IsInitialBaudRateAvailable());
}

TEST_F(Enumeration, SetsNothingThatOnlyTheApplicationSets) {
    EnableAll(Settings("Marlow", "Heron", "H2048", "text"));
    const CVantoCLSerDeviceInfo info(Enumerate()[0]);
    EXPECT_FALSE(info.IsDeviceXMLFileOverrideAvailable());
    EXPECT_FALSE(info.IsPortSpecificStringAvailable());
}

TEST_F(Enumeration, MakesRecordsThatCountAsUnchanged) {
    EnableAll(Settings("Marlow", "Heron", "H2048", "text"));
    const DeviceInfoList list = Enumerate();
    ASSERT_EQ(list.size(), 2u);
    EXPECT_FALSE(list[0].GetInfoImpl().IsModified());
}

TEST_F(Enumeration, TakesTheMoreExactEntryWhateverTheOrder) {
    const std::string exact = PortElement("Scripted#Port0", Settings("Marlow", "Heron", "H2048", "exact"));
    const std::string maker = PortElement("Scripted#Port0", Settings("Marlow", "", "", "maker"));
    for (const std::string& ports : {exact + maker, maker + exact}) {
        WriteConfiguration(ports);
        Touch();
        EXPECT_EQ(CVantoCLSerDeviceInfo(Enumerate()[0]).GetDeviceSpecificString(), "exact");
    }
}

// As the driver of another maker might name its cameras.
TEST_F(Enumeration, MakesARecordOfAnIdentifierThatCannotBeRead) {
    WriteConfiguration(PortElement("Scripted#Port0", "<BaudRate>Baud57600</BaudRate>"));
    scripted::Driver().asksLine = false;
    scripted::Driver().deviceId = "Marlow#Heron#H2048#1.0#1234#and#more#than#any#identifier#has";
    DeviceInfoList list;
    ASSERT_EQ(m_tl.EnumerateDevices(list), 1);
    gcstring value;
    EXPECT_TRUE(list[0].GetPropertyValue("DeviceID", value));
    EXPECT_THAT(value.str(), testing::HasSubstr("#1234#and#more#than#any#identifier#has"));
    EXPECT_FALSE(list[0].GetPropertyAvailable("InitialBaudRate"));
    EXPECT_EQ(CountFormat("Could not parse DeviceID '%s', skipping!"), 1u);
}

TEST_F(Enumeration, LogsADamagedConfigurationTwice) {
    m_folder.Write("PortConfiguration_x64.xml", "<r>");
    EXPECT_THAT(Enumerate(), IsEmpty());
    const std::vector<Logged> logged = LoggedIn(kTl);
    ASSERT_EQ(logged.size(), 3u);
    EXPECT_EQ(logged[1].format, "Could not read CLBindings (%s)");
    const std::string description = logged[1].arguments.at(0);
    EXPECT_THAT(description, testing::StartsWith("Failed to parse XML file '"));
    EXPECT_EQ(logged[2], (Logged{kError,
                                 "Exception in %s while enumerating devices. '%s'",
                                 {"Vanto::CVantoCLSerTl::InternalEnumerateDevices", description}}));
}

TEST_F(Enumeration, LogsAMissingPath) {
    const scripted::ScopedVariable folder("VANTO_CL_BINDINGS", std::string(250, 'x'));
    EXPECT_THAT(Enumerate(), IsEmpty());
    EXPECT_EQ(LoggedIn(kTl).back(), (Logged{kError,
                                            "Exception in %s while enumerating devices. '%s'",
                                            {"Vanto::CVantoCLSerTl::InternalEnumerateDevices",
                                             "Couldn't get full path to the PortConfiguration.xml file."}}));
}

TEST_F(Enumeration, KeepsThePortsOfADamagedConfigurationForLater) {
    EnableAll();
    EXPECT_EQ(Enumerate().size(), 2u);
    m_folder.Write("PortConfiguration_x64.xml", "<r>");
    Touch();
    EXPECT_EQ(Enumerate().size(), 0u);
    EnableAll();
    Touch();
    EXPECT_EQ(Enumerate().size(), 2u);
}

TEST_F(Enumeration, KeepsAConnectionThatIsOpen) {
    EnableAll();
    CVantoCLSerPort& port = m_tl.GetOrCreatePort("Scripted#Port0");
    EXPECT_EQ(&m_tl.GetOrCreatePort("Scripted#Port0"), &port);
    ASSERT_TRUE(port.Connect(scripted::FullDeviceId(kCamera)));
    EXPECT_EQ(Enumerate().size(), 2u);
    EXPECT_TRUE(port.IsConnected());
}

TEST_F(Enumeration, RunsInManyThreadsAtOnce) {
    EnableAll();
    std::vector<std::thread> threads;
    for (int count = 0; count < 4; ++count)
        threads.emplace_back([this] {
            for (int round = 0; round < 10; ++round) {
                DeviceInfoList list;
                EXPECT_EQ(m_tl.EnumerateDevices(list), 2);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
}

}  // namespace
}  // namespace Vanto
