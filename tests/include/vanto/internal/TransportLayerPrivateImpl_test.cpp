/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the frame that transport layers share
 */

#include "vanto/internal/TransportLayerPrivateImpl.h"

#include <ostream>
#include <set>
#include <thread>

#include "tests/VantoCLSer/Fixture.h"
#include "tests/include/vanto/internal/TestTl.h"

namespace Vanto {
namespace {

using namespace clser_test;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kFrameSource[] = "include/vanto/internal/TransportLayerPrivateImpl";
constexpr char kFiltered[] =
    "Filter applied to device list, count of devices before filter step = %d, after filter step = %d.";
constexpr char kNotAccessible[] = "Device not accessible. Transport layer is restricted by the environment";

CDeviceInfo Info(const char* serialNumber, const char* deviceClass = nullptr) {
    CDeviceInfo info;
    if (serialNumber != nullptr)
        info.SetSerialNumber(serialNumber);
    if (deviceClass != nullptr)
        info.SetDeviceClass(deviceClass);
    return info;
}

// As a transport layer makes it.
CDeviceInfo Found(const char* serialNumber) {
    CDeviceInfo info = Info(serialNumber, "MarlowCameraLink");
    info.SetFullName(gcstring("full ") + serialNumber).SetVendorName("Marlow");
    info.GetInfoImpl().ClearUserProvidedFlag();
    info.GetInfoImpl().ClearAccessFlags();
    return info;
}

DeviceInfoList List(const std::vector<CDeviceInfo>& infos) {
    DeviceInfoList list;
    for (const CDeviceInfo& info : infos)
        list.push_back(info);
    return list;
}

class Frame : public PluginTest {
protected:
    Frame() { m_tl.devices = List({Found("1"), Found("2"), Found("3")}); }
    ~Frame() override { PrivateTestDevice::onCreateNodeMap = nullptr; }

    std::vector<std::string> Enumerate(const std::vector<CDeviceInfo>& filter) {
        DeviceInfoList list;
        const int count = m_tl.EnumerateDevices(list, List(filter));
        EXPECT_EQ(count, static_cast<int>(list.size()));
        return SerialNumbers(list);
    }
    static std::vector<std::string> SerialNumbers(const DeviceInfoList& list) {
        std::vector<std::string> numbers;
        for (const CDeviceInfo& info : list)
            numbers.push_back(info.GetSerialNumber().str());
        return numbers;
    }
    // The text is logged at error and thrown.
    void ExpectLoggedAndThrown(const Thrown& thrown, const std::string& text) const {
        EXPECT_EQ(thrown, (Thrown{"RuntimeException", text, kFrameSource}));
        EXPECT_EQ(m_log.CountText(text, kError), 1u);
    }

    TestTl m_tl;
};

TEST_F(Frame, EnumeratesAllWithoutAFilter) {
    DeviceInfoList list;
    EXPECT_EQ(m_tl.EnumerateDevices(list), 3);
    EXPECT_THAT(SerialNumbers(list), ElementsAre("1", "2", "3"));
    EXPECT_THAT(Enumerate({}), ElementsAre("1", "2", "3"));
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(Frame, ClearsTheListUnlessItIsToAppend) {
    DeviceInfoList list = List({Info("0")});
    EXPECT_EQ(m_tl.EnumerateDevices(list, true), 3);
    EXPECT_THAT(SerialNumbers(list), ElementsAre("0", "1", "2", "3"));
    EXPECT_EQ(m_tl.EnumerateDevices(list, List({Info("2")}), true), 1);
    EXPECT_EQ(list.size(), 5u);
    EXPECT_EQ(m_tl.EnumerateDevices(list, false), 3);
    EXPECT_EQ(list.size(), 3u);
}

TEST_F(Frame, FiltersByAnyEntryAndEachDeviceOnce) {
    EXPECT_THAT(Enumerate({Info("3"), Info("1"), Info("3"), Info("4")}), ElementsAre("1", "3"));
    EXPECT_THAT(LoggedIn(kFrame), ElementsAre(Logged{kDebug, kFiltered, {"3", "2"}}));
}

TEST_F(Frame, DropsDevicesThatMatchNoEntry) {
    EXPECT_THAT(Enumerate({Info("4")}), IsEmpty());
    EXPECT_EQ(CountLogged(kFrame, {kDebug, kFiltered, {"3", "0"}}), 1u);
}

TEST_F(Frame, MatchesAnEmptyEntryWithEveryDevice) {
    EXPECT_EQ(Enumerate({CDeviceInfo()}).size(), 3u);
}

TEST_F(Frame, MatchesAllPropertiesOfAnEntry) {
    CDeviceInfo entry = Info("1");
    entry.SetVendorName("Another");
    EXPECT_THAT(Enumerate({entry}), IsEmpty());
}

TEST_F(Frame, LogsNoFilterForNoDevices) {
    m_tl.devices.clear();
    EXPECT_THAT(Enumerate({Info("1")}), IsEmpty());
    EXPECT_EQ(m_tl.enumerations, 1);
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(Frame, EnumeratesNothingForFiltersOfOtherClasses) {
    EXPECT_THAT(Enumerate({Info(nullptr, "Another"), Info("1", "marlowcameralink")}), IsEmpty());
    EXPECT_EQ(m_tl.enumerations, 0);
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(Frame, ClearsTheListForFiltersOfOtherClasses) {
    DeviceInfoList list = List({Info("0")});
    m_tl.EnumerateDevices(list, List({Info(nullptr, "Another")}));
    EXPECT_TRUE(list.empty());
}

TEST_F(Frame, EnumeratesForOneFilterWithoutAClassOrOfItsOwn) {
    EXPECT_THAT(Enumerate({Info(nullptr, "Another"), Info("1")}), ElementsAre("1"));
    EXPECT_THAT(Enumerate({Info(nullptr, "Another"), Info("2", "MarlowCameraLink")}), ElementsAre("2"));
    EXPECT_EQ(m_tl.enumerations, 2);
}

TEST_F(Frame, PassesExceptionsOfItsHooks) {
    m_tl.onEnumerate = [] { throw std::runtime_error("of the hook"); };
    DeviceInfoList list;
    EXPECT_THROW(m_tl.EnumerateDevices(list), std::runtime_error);
    EXPECT_THROW(m_tl.CreateDevice("full 1"), std::runtime_error);
    EXPECT_THROW(m_tl.CreateDevice(Info("1")), std::runtime_error);
}

struct Restriction {
    const char* name;
    const char* value;
};

// How the test runner names a case.
void PrintTo(const Restriction& value, std::ostream* out) {
    *out << value.name;
}

class FrameRestricted : public PluginTest, public testing::WithParamInterface<Restriction> {
protected:
    scripted::ScopedVariable m_variable{"VANTO_USE_TL", GetParam().value};
};

class FrameAllowed : public FrameRestricted {};

TEST_P(FrameAllowed, Works) {
    TestTl tl;
    tl.devices = List({Found("1")});
    DeviceInfoList list;
    EXPECT_TRUE(tl.IsAllowed());
    EXPECT_EQ(tl.EnumerateDevices(list), 1);
}

INSTANTIATE_TEST_SUITE_P(Values, FrameAllowed,
                         testing::Values(Restriction{"Empty", ""}, Restriction{"Exact", "MarlowCameraLink"}),
                         [](const auto& test) { return test.param.name; });

TEST_P(FrameRestricted, RefusesEnumerationAndCreation) {
    TestTl tl;
    tl.devices = List({Found("1")});
    DeviceInfoList list = List({Info("0")});
    EXPECT_FALSE(tl.IsAllowed());
    EXPECT_EQ(tl.EnumerateDevices(list, true), 0);
    EXPECT_EQ(list.size(), 1u);
    EXPECT_EQ(tl.EnumerateDevices(list, List({Info("1")})), 0);
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(tl.CreateDevice("full 1"), nullptr);
    EXPECT_EQ(tl.enumerations, 0);
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_P(FrameRestricted, ThrowsForInfoRecords) {
    TestTl tl;
    EXPECT_EQ(ThrownBy([&] { tl.CreateDevice(Found("1")); }).description,
              "Device creation failed. Transport layer is restricted by the environment");
    EXPECT_EQ(ThrownBy([&] { tl.CreateFirstDevice(Found("1")); }).description,
              "Device creation failed. Transport layer is restricted by the environment");
    const Thrown thrown{"RuntimeException", kNotAccessible, kFrameSource};
    EXPECT_EQ(ThrownBy([&] { tl.CreateDevice(Info("1")); }), thrown);
    EXPECT_EQ(ThrownBy([&] { tl.CreateFirstDevice(Info("1")); }), thrown);
    EXPECT_EQ(ThrownBy([&] { tl.IsDeviceAccessible(Info("1")); }), thrown);
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_P(FrameRestricted, StillTellsOfTheAccessibilityOfACompleteRecord) {
    TestTl tl;
    EXPECT_TRUE(tl.IsDeviceAccessible(Found("1")));
}

const std::string& LongValue() {
    static const std::string value(256, 'M');
    return value;
}

INSTANTIATE_TEST_SUITE_P(Values, FrameRestricted,
                         testing::Values(Restriction{"Another", "Another"},
                                         Restriction{"LowerCase", "marlowcameralink"},
                                         Restriction{"Blank", " MarlowCameraLink"},
                                         Restriction{"TrailingBlank", "MarlowCameraLink "},
                                         Restriction{"List", "MarlowCameraLink;Another"}, Restriction{"Wildcard", "*"},
                                         Restriction{"TooLong", LongValue().c_str()}),
                         [](const auto& test) { return test.param.name; });

TEST_F(Frame, ReadsTheRestrictionOnce) {
    const scripted::ScopedVariable later("VANTO_USE_TL", "Another");
    EXPECT_EQ(Enumerate({}).size(), 3u);
    TestTl restricted;
    const scripted::ScopedVariable still("VANTO_USE_TL", "MarlowCameraLink");
    EXPECT_FALSE(restricted.IsAllowed());
}

TEST_F(Frame, CreatesByFullName) {
    IVantoDevice* const device = m_tl.CreateDevice("full 2");
    ASSERT_NE(device, nullptr);
    EXPECT_EQ(device->GetDeviceInfo().GetSerialNumber(), "2");
    m_tl.DestroyDevice(device);
}

TEST_F(Frame, ReturnsNullForAnUnknownFullName) {
    EXPECT_EQ(m_tl.CreateDevice("Full 2"), nullptr);
    EXPECT_EQ(m_tl.CreateDevice("full"), nullptr);
    EXPECT_EQ(m_tl.CreateDevice(""), nullptr);
    m_tl.devices.clear();
    EXPECT_EQ(m_tl.CreateDevice("full 2"), nullptr);
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(Frame, TakesTheFirstOfEqualFullNames) {
    CDeviceInfo twin = Found("twin");
    twin.SetFullName("full 1");
    m_tl.devices.push_back(twin);
    IVantoDevice* const device = m_tl.CreateDevice("full 1");
    EXPECT_EQ(device->GetDeviceInfo().GetSerialNumber(), "1");
    m_tl.DestroyDevice(device);
}

TEST_F(Frame, CreatesFromACompleteRecordUnchanged) {
    IVantoDevice* const device = m_tl.CreateDevice(Found("not enumerated"));
    EXPECT_EQ(m_tl.enumerations, 0);
    EXPECT_EQ(m_tl.created.GetSerialNumber(), "not enumerated");
    m_tl.DestroyDevice(device);
    m_tl.DestroyDevice(m_tl.CreateFirstDevice(Found("another")));
    EXPECT_EQ(m_tl.enumerations, 0);
}

TEST_F(Frame, ResolvesAPartialRecord) {
    IVantoDevice* const device = m_tl.CreateDevice(Info("2"));
    EXPECT_EQ(m_tl.created.GetFullName(), "full 2");
    EXPECT_EQ(m_tl.created.GetVendorName(), "Marlow");
    EXPECT_EQ(CountLogged(kFrame, {kDebug, kFiltered, {"3", "1"}}), 1u);
    m_tl.DestroyDevice(device);
}

TEST_F(Frame, InjectsWhatItIsGiven) {
    gcstring_vector injected;
    injected.push_back("<inject/>");
    m_tl.DestroyDevice(m_tl.CreateDevice(Info("2"), injected));
    EXPECT_THAT(ToVector(PrivateTestDevice::injectedXml), ElementsAre(gcstring("<inject/>")));
    m_tl.DestroyDevice(m_tl.CreateFirstDevice(CDeviceInfo(), injected));
    EXPECT_EQ(PrivateTestDevice::injectedXml.size(), 1u);
    m_tl.DestroyDevice(m_tl.CreateFirstDevice(CDeviceInfo()));
    EXPECT_EQ(PrivateTestDevice::injectedXml.size(), 0u);
}

TEST_F(Frame, RefusesAForeignClass) {
    ExpectLoggedAndThrown(ThrownBy([&] { m_tl.CreateDevice(Info("1", "Another %s")); }),
                          "The device class Another %s is not supported by this transport layer. This transport layer "
                          "supports MarlowCameraLink.");
    EXPECT_EQ(m_tl.enumerations, 0);
}

TEST_F(Frame, RefusesAPartialRecordWithoutAnyDevice) {
    m_tl.devices.clear();
    ExpectLoggedAndThrown(ThrownBy([&] { m_tl.CreateDevice(Info("1")); }),
                          "Cannot find device, no devices of MarlowCameraLink available.");
}

TEST_F(Frame, RefusesAPartialRecordThatMatchesNothing) {
    ExpectLoggedAndThrown(ThrownBy([&] { m_tl.CreateDevice(Info("4")); }),
                          "No device contains the provided device info properties. The number of possible devices is "
                          "3.");
    EXPECT_EQ(LoggedIn(kFrame).at(0), (Logged{kDebug, kFiltered, {"3", "0"}}));
}

TEST_F(Frame, RefusesAPartialRecordThatMatchesNothingForTheFirstDevice) {
    EXPECT_EQ(ThrownBy([&] { m_tl.CreateFirstDevice(Info("4")); }).description,
              "No device contains the provided device info properties. The number of possible devices is 3.");
}

TEST_F(Frame, RefusesAnAmbiguousRecord) {
    m_tl.devices.push_back(Info("5", "MarlowCameraLink"));
    CDeviceInfo partial;
    partial.SetVendorName("Marlow");
    ExpectLoggedAndThrown(ThrownBy([&] { m_tl.CreateDevice(partial); }),
                          "Ambiguous device info properties. 3 out of 4 devices contain the provided device info "
                          "properties.");
}

TEST_F(Frame, TakesTheFirstOfAnAmbiguousRecord) {
    m_tl.DestroyDevice(m_tl.CreateFirstDevice(CDeviceInfo()));
    EXPECT_EQ(m_tl.created.GetSerialNumber(), "1");
}

TEST_F(Frame, CarriesBornFreeOverAndNothingElse) {
    CDeviceInfo partial = Info("2");
    partial.SetPropertyValue("_BornFree", "why");
    partial.SetPropertyValue("_Other", "other");
    m_tl.DestroyDevice(m_tl.CreateDevice(partial));
    gcstring value;
    EXPECT_TRUE(m_tl.created.GetPropertyValue("_BornFree", value));
    EXPECT_EQ(value, "why");
    EXPECT_FALSE(m_tl.created.GetPropertyAvailable("_Other"));
}

// The mark is the transport layer's own doing, not something that the hook, or the application, has changed.
TEST_F(Frame, CarriesBornFreeOverInFrontOfACreationHook) {
    struct Hook : IDeviceCreationHook {
        void OnCreateDevice(CDeviceInfo& info, gcstring_vector&) override {
            hasMark = info.GetPropertyAvailable("_BornFree");
        }
        bool hasMark = false;
    } hook;
    m_tl.SetCreationHook(&hook);
    CDeviceInfo partial = Info("2");
    partial.SetPropertyValue("_BornFree", "why");
    m_tl.DestroyDevice(m_tl.CreateDevice(partial));
    EXPECT_TRUE(hook.hasMark);
    EXPECT_FALSE(m_tl.created.GetInfoImpl().IsModified());
}

TEST_F(Frame, NamesTheLineOfEachFailure) {
    CDeviceInfo ambiguous;
    ambiguous.SetVendorName("Marlow");
    std::set<unsigned> lines;
    const auto add = [&](const CDeviceInfo& info) {
        try {
            m_tl.CreateDevice(info);
        } catch (const GenICam::RuntimeException& error) {
            lines.insert(error.GetSourceLine());
        }
    };
    add(Info("1", "Another"));
    add(Info("4"));
    add(ambiguous);
    m_tl.devices.clear();
    add(Info("1"));
    EXPECT_EQ(lines.size(), 4u);
}

TEST_F(Frame, AddsNoBornFree) {
    m_tl.DestroyDevice(m_tl.CreateDevice(Info("2")));
    EXPECT_FALSE(m_tl.created.GetPropertyAvailable("_BornFree"));
}

TEST_F(Frame, UsesADiscoveryOfTheTransportLayersOwn) {
    m_tl.hasSpecificDiscovery = true;
    m_tl.specific = Found("2");
    m_tl.DestroyDevice(m_tl.CreateDevice(Info("2", "MarlowCameraLink")));
    EXPECT_EQ(m_tl.enumerations, 0);
    EXPECT_EQ(m_tl.created.GetSerialNumber(), "2");
}

TEST_F(Frame, ChecksWhatADiscoveryOfTheTransportLayersOwnFinds) {
    m_tl.hasSpecificDiscovery = true;
    m_tl.specific = Found("3");
    EXPECT_EQ(ThrownBy([&] { m_tl.CreateDevice(Info("2")); }),
              (Thrown{"RuntimeException", "The found device does not contain all the provided device info properties.",
                      kFrameSource}));
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(Frame, HasNoDiscoveryOfItsOwn) {
    EXPECT_FALSE(m_tl.CallHasDeviceSpecificDiscovery());
    try {
        m_tl.CallFindDeviceSpecific();
        FAIL();
    } catch (const char* text) {
        EXPECT_STREQ(text, "Internal error. No device specific device discovery available.");
    }
}

TEST_F(Frame, PassesAccessibilityOfACompleteRecordOn) {
    AccessibilityCode code = Accessibility_Unknown;
    EXPECT_TRUE(m_tl.IsDeviceAccessible(Found("9"), Exclusive, &code));
    EXPECT_EQ(code, Accessibility_Ok);
    EXPECT_EQ(m_tl.mode, AccessModeSet(Exclusive));
    EXPECT_EQ(m_tl.asked.GetSerialNumber(), "9");
    EXPECT_EQ(m_tl.enumerations, 0);
    m_tl.isAccessible = false;
    EXPECT_FALSE(m_tl.IsDeviceAccessible(Found("9")));
}

TEST_F(Frame, ResolvesAPartialRecordForAccessibility) {
    AccessibilityCode code = Accessibility_Unknown;
    EXPECT_TRUE(m_tl.IsDeviceAccessible(Info("2"), Stream | Control, &code));
    EXPECT_EQ(code, Accessibility_Ok);
    EXPECT_EQ(m_tl.asked.GetFullName(), "full 2");
    EXPECT_EQ(m_tl.mode, Stream | Control);
}

TEST_F(Frame, RefusesAccessibilityOfAForeignClass) {
    ExpectLoggedAndThrown(ThrownBy([&] { m_tl.IsDeviceAccessible(Info("1", "Another")); }),
                          "The device class Another is not supported by this transport layer. This transport layer "
                          "supports MarlowCameraLink.");
}

TEST_F(Frame, RefusesAmbiguousAccessibility) {
    EXPECT_EQ(ThrownBy([&] { m_tl.IsDeviceAccessible(CDeviceInfo()); }).description,
              "Ambiguous device info properties. 3 out of 3 devices contain the provided device info properties.");
}

TEST_F(Frame, ChecksTheClassBeforeTheRestriction) {
    const scripted::ScopedVariable variable("VANTO_USE_TL", "Another");
    TestTl restricted;
    EXPECT_THAT(ThrownBy([&] { restricted.IsDeviceAccessible(Info("1", "Another")); }).description,
                testing::StartsWith("The device class Another is not supported"));
    EXPECT_EQ(ThrownBy([&] { restricted.CreateDevice(Info("1", "Another")); }).description, kNotAccessible);
}

TEST_F(Frame, HasItsParametersAsNodeMap) {
    EXPECT_NE(m_tl.GetNodeMap(), nullptr);
    EXPECT_NE(m_tl.GetNodeMap()->GetNode("ChunkNodeMapSupportEnable"), nullptr);
}

TEST_F(Frame, PrefersANodeMapOfTheTransportLayer) {
    TestTl other;
    m_tl.nodeMap = other.GetNodeMap();
    EXPECT_EQ(m_tl.GetNodeMap(), other.GetNodeMap());
}

TEST_F(Frame, ForwardsTheReservedOperation) {
    int argument = 0;
    const CDeviceInfo info;
    m_tl.reserved = &argument;
    EXPECT_EQ(m_tl.ReservedOperation(info, &argument), &argument);
    EXPECT_EQ(m_tl.reservedArgument, &argument);
    EXPECT_EQ(m_tl.reservedInfo, &info);
}

TEST_F(Frame, ForwardsTheCreationOfARecord) {
    EXPECT_EQ(m_tl.CreateDeviceInfo().GetDeviceClass(), "MarlowCameraLink");
}

TEST_F(Frame, FindsItsProviderOfDescriptions) {
    EXPECT_EQ(m_tl.GetXmlFileProvider(), &m_tl);
}

class Hook : public IDeviceCreationHook {
    void OnCreateDevice(CDeviceInfo&, gcstring_vector&) override {}
};

TEST_F(Frame, ReturnsThePreviousHook) {
    Hook first;
    Hook second;
    EXPECT_EQ(m_tl.SetCreationHook(&first), nullptr);
    EXPECT_EQ(m_tl.SetCreationHook(&second), &first);
    EXPECT_EQ(m_tl.SetCreationHook(nullptr), &second);
}

TEST_F(Frame, CountsItsMakerAndItsDevices) {
    IVantoDevice* const device = m_tl.CreateDevice(Found("1"));
    m_tl.CreateDevice(Found("2"));
    EXPECT_EQ(m_tl.Release(), 2u);
    m_tl.DestroyDevice(device);
    EXPECT_EQ(m_tl.Release(), 0u);  // only what the second device holds was left
}

TEST_F(Frame, CountsNoDeviceThatCouldNotBeDescribed) {
    PrivateTestDevice::onCreateNodeMap = [] { throw std::runtime_error("of the device"); };
    EXPECT_THROW(m_tl.CreateDevice(Found("1")), std::runtime_error);
    EXPECT_EQ(TestDevice::alive, 0);
    EXPECT_EQ(m_tl.Release(), 0u);
}

TEST_F(Frame, DestroysADeviceOnce) {
    IVantoDevice* const device = m_tl.CreateDevice(Found("1"));
    m_tl.DestroyDevice(device);
    EXPECT_EQ(TestDevice::alive, 0);
    m_log.Clear();
    EXPECT_EQ(
        ThrownBy<GenICam::LogicalErrorException>([&] { m_tl.DestroyDevice(device); }),
        (Thrown{"LogicalErrorException", "Trying to destroy device which hasn't been created by me", kFrameSource}));
    EXPECT_THAT(m_log.GetMessages(), testing::IsEmpty());
    EXPECT_EQ(m_tl.Release(), 0u);
}

TEST_F(Frame, IsToldOfItsLastReleaseOnce) {
    m_tl.CreateDevice(Found("1"));
    EXPECT_EQ(m_tl.Release(), 1u);
    EXPECT_EQ(*m_tl.finalReleases, 0);
    EXPECT_EQ(m_tl.Release(), 0u);
    EXPECT_EQ(*m_tl.finalReleases, 1);
}

TEST_F(Frame, HasNoReferencesBelowNone) {
    EXPECT_EQ(m_tl.Release(), 0u);
    EXPECT_EQ(m_tl.Release(), 0u);
    EXPECT_EQ(*m_tl.finalReleases, 1);
    m_tl.CreateDevice(Found("1"));
    EXPECT_EQ(m_tl.Release(), 0u);  // what the device holds
}

TEST_F(Frame, CountsReleasesOfManyThreads) {
    constexpr int kReleases = 400;
    for (int count = 0; count < kReleases / 2; ++count)
        m_tl.CreateDevice(Found("1"));
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([this] {
            for (int count = 0; count < kReleases / 4; ++count)
                EXPECT_LE(m_tl.Release(), kReleases / 2U);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(*m_tl.finalReleases, 1);
    EXPECT_EQ(m_tl.Release(), 0u);
}

TEST_F(Frame, PassesExceptionsOfItsHooksOn) {
    m_tl.onCreate = [](const CDeviceInfo&) -> IVantoDevice* { throw std::runtime_error("create"); };
    EXPECT_THROW(m_tl.CreateDevice(Found("1")), std::runtime_error);
    m_tl.onAccessible = [] { throw std::runtime_error("accessible"); };
    EXPECT_THROW(m_tl.IsDeviceAccessible(Found("1")), std::runtime_error);
    EXPECT_EQ(m_tl.Release(), 0u);
}

TEST(FrameEnd, DestroysItsParameters) {
    std::weak_ptr<int> held;
    {
        TestTl tl;
        const auto keeps = std::make_shared<int>();
        held = keeps;
        GenApi::Register(tl.GetNodeMap()->GetNode("ChunkNodeMapSupportEnable"), [keeps](GenApi::INode*) {});
    }
    EXPECT_TRUE(held.expired());
}

TEST_F(Frame, DestroysNoDeviceOfOthers) {
    TestTl other;
    IVantoDevice* const device = other.CreateDevice(Found("1"));
    EXPECT_THROW(m_tl.DestroyDevice(device), GenICam::LogicalErrorException);
    EXPECT_THROW(m_tl.DestroyDevice(nullptr), GenICam::LogicalErrorException);
    EXPECT_EQ(TestDevice::alive, 1);
    other.DestroyDevice(device);
}

TEST_F(Frame, DestroysAllDevicesButKeepsTheirReferences) {
    m_tl.CreateDevice(Found("1"));
    m_tl.CreateDevice(Found("2"));
    m_tl.DestroyAll();
    EXPECT_EQ(TestDevice::alive, 0);
    EXPECT_EQ(m_tl.Release(), 2u);
}

TEST_F(Frame, DestroysItsDevicesWhenItGoes) {
    {
        TestTl tl;
        tl.CreateDevice(Found("1"));
        tl.CreateDevice(Found("2"));
        EXPECT_EQ(TestDevice::alive, 2);
    }
    EXPECT_EQ(TestDevice::alive, 0);
}

TEST_F(Frame, GoesWithoutAReferenceLeft) {
    TestTl tl;
    tl.CreateDevice(Found("1"));
    EXPECT_EQ(tl.Release(), 1u);
    EXPECT_EQ(tl.Release(), 0u);
}

TEST_F(Frame, DestroysADeviceWithoutItsRegistrysLock) {
    auto* const device = dynamic_cast<PrivateTestDevice*>(m_tl.CreateDevice(Found("1")));
    // What an application's callback may do in another thread while a device closes.
    device->onDestroy = [this] { std::thread([this] { m_tl.CreateDevice(Found("2")); }).join(); };
    m_tl.DestroyDevice(device);
    EXPECT_EQ(TestDevice::alive, 1);
}

TEST_F(Frame, RegistersAndDestroysInManyThreads) {
    std::vector<std::thread> threads;
    for (int count = 0; count < 4; ++count)
        threads.emplace_back([this] {
            for (int round = 0; round < 50; ++round)
                m_tl.DestroyDevice(m_tl.CreateDevice(Found("1")));
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(TestDevice::alive, 0);
    EXPECT_EQ(m_tl.Release(), 0u);
}

TEST_F(Frame, RefusesADeviceThatIsNone) {
    m_tl.onCreate = [](const CDeviceInfo&) { return nullptr; };
    EXPECT_EQ(
        ThrownBy([&] { m_tl.CreateDevice(Found("1")); }),
        (Thrown{"RuntimeException", "Internal error. Device creation failed. Created device is NULL.", kFrameSource}));
}

TEST_F(Frame, RefusesADeviceWithoutThePrivateInterface) {
    TestDevice device(Found("1"));
    m_tl.onCreate = [&](const CDeviceInfo&) { return &device; };
    EXPECT_EQ(ThrownBy([&] { m_tl.CreateDevice(Found("1")); }),
              (Thrown{"RuntimeException",
                      "Internal error. Device creation failed. Device doesn't implement IVantoDevicePrivate interface",
                      kFrameSource}));
    EXPECT_EQ(
        CountLogged(kFrame,
                    {kError, "Device creation failed. Device doesn't implement IVantoDevicePrivate interface", {}}),
        1u);
    EXPECT_EQ(TestDevice::alive, 1);
}

}  // namespace
}  // namespace Vanto
