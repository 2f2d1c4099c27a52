/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the frame of transport layers: devices of records and names
 */

#include "vanto/internal/TransportLayerPrivateImpl.h"

#include <set>

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

}  // namespace
}  // namespace Vanto
