/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the frame that transport layers share
 */

#include "vanto/internal/TransportLayerPrivateImpl.h"

#include <ostream>
#include <stdexcept>

#include "TransportLayerPrivateImplFixture.h"
#include "tests/VantoCLSer/Fixture.h"
#include "tests/include/vanto/internal/TestTl.h"

namespace Vanto {
namespace {

using namespace clser_test;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kFiltered[] =
    "Filter applied to device list, count of devices before filter step = %d, after filter step = %d.";
constexpr char kNotAccessible[] = "Device not accessible. Transport layer is restricted by the environment";

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

}  // namespace
}  // namespace Vanto
