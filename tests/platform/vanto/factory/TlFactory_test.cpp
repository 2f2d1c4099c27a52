/* SPDX-License-Identifier: Apache-2.0 */
#include "vanto/TlFactory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <thread>
#include <vector>

#include "../TestSupport.h"
#include "Base/GCException.h"
#include "os/Library.h"
#include "scripted/ScriptedControl.h"
#include "vanto/LogListener.h"

namespace {

using namespace Vanto;
using testing::HasSubstr;

// Path of a library in the folder of transport layers.
std::string PathOf(const std::string& name) {
    return Native(TEST_TL_FOLDER "/" + name + TEST_LIBRARY_SUFFIX);
}

const os::Library& LoadScripted(const char* name) {
    static std::map<std::string, os::Library> libraries;
    os::Library& library = libraries[name];
    if (!library.IsLoaded())
        library = os::Library(PathOf(name));
    return library;
}

scripted::Control& ControlOf(const char* name) {
    return *LoadScripted(name).Get<scripted::GetControlFunction>("GetControl")();
}

CDeviceInfo WithSerial(const char* serial) {
    CDeviceInfo info;
    info.SetSerialNumber(serial);
    return info;
}

template <class Operation>
std::string DescriptionOfFailure(Operation operation) {
    try {
        operation();
    } catch (const GenICam::GenericException& error) {
        return error.GetDescription();
    }
    return "no exception";
}

class CTlFactoryTest : public testing::Test {
protected:
    void SetUp() override {
        os::SetEnvironment("VANTO_ROOT", Native(TEST_ROOT));
        m_factory.GetRejectedTls();  // loads
        m_a.Reset();
        m_b.Reset();
    }
    // Whatever a test does, nothing of it stays.
    void TearDown() override {
        m_factory.ReleaseUnusedTls();
        EXPECT_EQ(m_a.created, m_a.destroyed);
        EXPECT_EQ(m_b.created, m_b.destroyed);
        EXPECT_EQ(m_a.devices + m_b.devices, 0);
        os::UnsetEnvironment("VANTO_ROOT");
    }

    CTlFactory& m_factory = CTlFactory::GetInstance();
    scripted::Control& m_a = ControlOf("scripted_a");
    scripted::Control& m_b = ControlOf("scripted_b");
};

TEST_F(CTlFactoryTest, ListsTheUsableTransportLayersInTheOrderOfTheirFiles) {
    TlInfoList list;
    list.push_back(CTlInfo());
    ASSERT_EQ(m_factory.EnumerateTls(list), 3);
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(list[0].GetDeviceClass(), "ScriptedA");
    EXPECT_EQ(list[1].GetDeviceClass(), "ScriptedB");
    EXPECT_EQ(list[2].GetDeviceClass(), "ScriptedC");
    EXPECT_EQ(list[0].GetFileName(), PathOf("scripted_a"));
}

TEST_F(CTlFactoryTest, ListsRefusedLibrariesWithPathAndReason) {
    const std::vector<std::pair<const char*, const char*>> expected{
        {"refused_no_create", "has no function 'Create'"},
        {"refused_no_destroy", "has no function 'Destroy'"},
        {"refused_no_library", "refused_no_library"},
        {"refused_no_list", "has no function 'GetTLInfoList'"},
        {"refused_offers_nothing", "GetTLInfoList offers no transport layer with a device class"},
        {"refused_throws_exception", "GetTLInfoList failed: list exception"},
        {"refused_throws_number", "GetTLInfoList failed: an exception of an unknown type"},
        {"refused_throws_text", "GetTLInfoList failed: list text"},
        {"refused_without_class", "GetTLInfoList offers no transport layer with a device class"}};
    const std::vector<RejectedTl> rejected = m_factory.GetRejectedTls();
    ASSERT_EQ(rejected.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(rejected[i].path, PathOf(expected[i].first));
        EXPECT_THAT(rejected[i].reason.str(), HasSubstr(expected[i].second));
    }
}

TEST_F(CTlFactoryTest, CreatesNoneOfAnUnknownClass) {
    EXPECT_EQ(m_factory.CreateTl(gcstring("scripteda")), nullptr);
    EXPECT_EQ(m_factory.CreateTl(gcstring("Refused")), nullptr);
}

TEST_F(CTlFactoryTest, CountsWhatItHandsOut) {
    ITransportLayer* const first = m_factory.CreateTl(gcstring("ScriptedA"));
    ITransportLayer* const second = m_factory.CreateTl(gcstring("ScriptedA"));
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first, second);
    EXPECT_EQ(m_a.created, 1);
    m_factory.ReleaseTl(first);
    EXPECT_EQ(m_a.destroyed, 0);
    m_factory.ReleaseTl(second);
    EXPECT_EQ(m_a.destroyed, 1);
}

TEST_F(CTlFactoryTest, MakesANewOneAfterTheLastWasDestroyed) {
    m_factory.ReleaseTl(m_factory.CreateTl(gcstring("ScriptedA")));
    m_factory.ReleaseTl(m_factory.CreateTl(gcstring("ScriptedA")));
    EXPECT_EQ(m_a.created, 2);
    EXPECT_EQ(m_a.destroyed, 2);
}

TEST_F(CTlFactoryTest, CountsOneObjectOfTwoRecordsOnce) {
    ITransportLayer* const b = m_factory.CreateTl(gcstring("ScriptedB"));
    ITransportLayer* const c = m_factory.CreateTl(gcstring("ScriptedC"));
    EXPECT_EQ(b, c);
    m_factory.ReleaseTl(b);
    EXPECT_EQ(m_b.destroyed, 0);
    m_factory.ReleaseTl(c);
    EXPECT_EQ(m_b.destroyed, 1);
}

TEST_F(CTlFactoryTest, ReturnsNullWhenTheLibraryMakesNone) {
    m_a.createMode = scripted::CreateMode::kNull;
    const tracelog::LogRecorder log("vanto.base.Factory:warning");
    EXPECT_EQ(m_factory.CreateTl(gcstring("ScriptedA")), nullptr);
    EXPECT_EQ(
        log.CountText("The library '" + PathOf("scripted_a") + "' makes no transport layer 'Scripted/ScriptedA'."), 1u);
    EXPECT_EQ(DescriptionOfFailure([&] {
                  CDeviceInfo info;
                  info.SetDeviceClass("ScriptedA");
                  m_factory.CreateDevice(info);
              }),
              "The transport layer 'Scripted/ScriptedA' can't be created.");
}

TEST_F(CTlFactoryTest, LetsExceptionsOfCreatePass) {
    m_a.createMode = scripted::CreateMode::kThrow;
    EXPECT_THROW(m_factory.CreateTl(gcstring("ScriptedA")), std::runtime_error);
    m_a.createMode = scripted::CreateMode::kNormal;
    m_factory.ReleaseTl(m_factory.CreateTl(gcstring("ScriptedA")));
    EXPECT_EQ(m_a.created, 1);
}

TEST_F(CTlFactoryTest, ADeviceKeepsItsTransportLayer) {
    ITransportLayer* const tl = m_factory.CreateTl(gcstring("ScriptedA"));
    IVantoDevice* const device = tl->CreateDevice(gcstring("ScriptedA#0"));
    m_factory.ReleaseTl(tl);
    EXPECT_EQ(m_a.destroyed, 0);
    tl->DestroyDevice(device);
    EXPECT_EQ(m_a.destroyed, 1);
}

TEST_F(CTlFactoryTest, ADeviceGoneBeforeTheReleaseLeavesTheCountRight) {
    ITransportLayer* const tl = m_factory.CreateTl(gcstring("ScriptedA"));
    m_factory.CreateTl(gcstring("ScriptedA"));
    tl->DestroyDevice(tl->CreateDevice(gcstring("ScriptedA#0")));
    m_factory.ReleaseTl(tl);
    EXPECT_EQ(m_a.destroyed, 0);
    m_factory.ReleaseTl(tl);
    EXPECT_EQ(m_a.destroyed, 1);
}

TEST_F(CTlFactoryTest, IgnoresTheReleaseOfNull) {
    m_factory.ReleaseTl(nullptr);
}

TEST_F(CTlFactoryTest, GivesATransportLayerOfOthersItsReferenceBack) {
    CreateFunction* const create = LoadScripted("scripted_a").Get<CreateFunction>("Create");
    DestroyFunction* const destroy = LoadScripted("scripted_a").Get<DestroyFunction>("Destroy");
    ITransportLayer* const tl = create(CTlInfo());
    IVantoDevice* const device = tl->CreateDevice(gcstring("ScriptedA#0"));
    tl->DestroyDevice(device);
    EXPECT_EQ(dynamic_cast<ITransportLayerPrivate*>(tl)->Release(), 0u);
    EXPECT_EQ(m_a.destroyed, 0);
    destroy(tl);
}

TEST_F(CTlFactoryTest, EnumeratesTheDevicesOfAllTransportLayers) {
    m_a.devicesOffered = 2;
    DeviceInfoList list;
    EXPECT_EQ(m_factory.EnumerateDevices(list), 3);
    EXPECT_EQ(list[0].GetFullName(), "ScriptedA#0");
    EXPECT_EQ(list[2].GetFullName(), "ScriptedB#0");
}

TEST_F(CTlFactoryTest, AsksOneObjectOfTwoRecordsOnce) {
    DeviceInfoList list;
    m_factory.EnumerateDevices(list);
    EXPECT_EQ(m_b.enumerations, 1);
}

TEST_F(CTlFactoryTest, KeepsWhatItEnumeratedWithUntilTold) {
    DeviceInfoList list;
    m_factory.EnumerateDevices(list);
    m_factory.EnumerateDevices(list);
    EXPECT_EQ(m_a.created, 1);
    EXPECT_EQ(m_a.destroyed, 0);
    m_factory.ReleaseUnusedTls();
    EXPECT_EQ(m_a.destroyed, 1);
    m_factory.ReleaseUnusedTls();
    EXPECT_EQ(m_a.destroyed, 1);
}

TEST_F(CTlFactoryTest, GivesBackWhatItKeptOnceAndNothingOfTheApplications) {
    ITransportLayer* const tl = m_factory.CreateTl(gcstring("ScriptedA"));
    DeviceInfoList list;
    m_factory.EnumerateDevices(list);
    m_factory.ReleaseUnusedTls();
    m_factory.ReleaseUnusedTls();
    EXPECT_EQ(m_a.destroyed, 0);
    m_factory.ReleaseTl(tl);
    EXPECT_EQ(m_a.destroyed, 1);
}

TEST_F(CTlFactoryTest, AddsToTheListOnlyWhenAsked) {
    m_b.devicesOffered = 0;
    DeviceInfoList list;
    list.push_back(CDeviceInfo());
    EXPECT_EQ(m_factory.EnumerateDevices(list, true), 1);
    EXPECT_EQ(list.size(), 2u);
    EXPECT_EQ(m_factory.EnumerateDevices(list), 1);
    EXPECT_EQ(list.size(), 1u);
}

TEST_F(CTlFactoryTest, AsksOnlyTransportLayersThatTheFilterAllows) {
    DeviceInfoList filter;
    CDeviceInfo entry;
    entry.SetDeviceClass("ScriptedA");
    filter.push_back(entry);
    DeviceInfoList list;
    EXPECT_EQ(m_factory.EnumerateDevices(list, filter), 1);
    EXPECT_EQ(m_a.enumerations, 1);
    EXPECT_EQ(m_b.enumerations, 0);
}

TEST_F(CTlFactoryTest, FilterEntryWithoutClassAsksAll) {
    m_a.devicesOffered = 3;
    DeviceInfoList filter;
    filter.push_back(WithSerial("2"));
    DeviceInfoList list;
    EXPECT_EQ(m_factory.EnumerateDevices(list, filter), 1);
    EXPECT_EQ(m_b.enumerations, 1);
}

TEST_F(CTlFactoryTest, AFailingTransportLayerHidesNoOther) {
    m_a.failEnumeration = true;
    const tracelog::LogRecorder log("vanto.base.Factory:error");
    DeviceInfoList list;
    EXPECT_EQ(m_factory.EnumerateDevices(list), 1);
    EXPECT_EQ(log.CountText("The transport layer 'Scripted/ScriptedA' can't enumerate its devices: "
                            "ScriptedA can't enumerate"),
              1u);
}

TEST_F(CTlFactoryTest, WhenAllFailTheFirstFailurePasses) {
    m_a.failEnumeration = true;
    m_b.failEnumeration = true;
    DeviceInfoList list;
    EXPECT_EQ(DescriptionOfFailure([&] { m_factory.EnumerateDevices(list); }), "ScriptedA can't enumerate");
}

TEST_F(CTlFactoryTest, CreatesTheDeviceOfAnEnumeratedRecord) {
    m_b.devicesOffered = 0;
    DeviceInfoList list;
    m_factory.EnumerateDevices(list);
    IVantoDevice* const device = m_factory.CreateDevice(list[0]);
    EXPECT_EQ(device->GetDeviceInfo().GetFullName(), "ScriptedA#0");
    EXPECT_EQ(m_a.enumerations, 1);
    m_factory.DestroyDevice(device);
}

TEST_F(CTlFactoryTest, ChoosesTheTransportLayerByItsFullNameFirst) {
    CDeviceInfo info;
    info.SetDeviceClass("ScriptedA");
    info.SetDeviceFactory("Scripted/ScriptedB");
    IVantoDevice* const device = m_factory.CreateDevice(info);
    EXPECT_EQ(m_b.devices, 1);
    m_factory.DestroyDevice(device);
}

TEST_F(CTlFactoryTest, FallsBackToTheClassWhenTheFullNameIsUnknown) {
    CDeviceInfo info;
    info.SetDeviceClass("ScriptedA");
    info.SetDeviceFactory("Scripted/ScriptedA 0.9");
    IVantoDevice* const device = m_factory.CreateDevice(info);
    EXPECT_EQ(m_a.devices, 1);
    m_factory.DestroyDevice(device);
}

TEST_F(CTlFactoryTest, SaysWhichClassesThereAreAndWhatWasRefused) {
    CDeviceInfo info;
    info.SetDeviceClass("Other");
    const std::string text = DescriptionOfFailure([&] { m_factory.CreateDevice(info); });
    EXPECT_THAT(text, HasSubstr("There is no transport layer for device class 'Other'."));
    EXPECT_THAT(text, HasSubstr("'ScriptedA', 'ScriptedB', 'ScriptedC'"));
    EXPECT_THAT(text, HasSubstr("refused_no_create" TEST_LIBRARY_SUFFIX "' was refused: "));
    EXPECT_THAT(text, HasSubstr("VANTO_ROOT"));
    CDeviceInfo byFactory;
    byFactory.SetDeviceFactory("Nobody");
    EXPECT_THAT(DescriptionOfFailure([&] { m_factory.CreateDevice(byFactory); }),
                HasSubstr("There is no transport layer 'Nobody'."));
}

TEST_F(CTlFactoryTest, ResolvesAPartialRecordWithoutClassAmongAllTransportLayers) {
    m_a.devicesOffered = 3;
    IVantoDevice* const device = m_factory.CreateDevice(WithSerial("2"));
    EXPECT_EQ(device->GetDeviceInfo().GetFullName(), "ScriptedA#2");
    m_factory.DestroyDevice(device);
}

TEST_F(CTlFactoryTest, RefusesAnAmbiguousPartialRecord) {
    m_a.devicesOffered = 2;
    m_b.devicesOffered = 0;
    CDeviceInfo info;
    info.SetModelName("Model");
    EXPECT_EQ(DescriptionOfFailure([&] { m_factory.CreateDevice(info); }),
              "Ambiguous device info properties. 2 devices contain the provided device info properties. Give more of "
              "them, the serial number for example.");
    IVantoDevice* const first = m_factory.CreateFirstDevice(info);
    EXPECT_EQ(first->GetDeviceInfo().GetFullName(), "ScriptedA#0");
    m_factory.DestroyDevice(first);
}

TEST_F(CTlFactoryTest, SaysSoWhenNoDeviceMatches) {
    EXPECT_EQ(DescriptionOfFailure([&] { m_factory.CreateFirstDevice(WithSerial("none")); }),
              "No device of any transport layer contains the provided device info properties. Enumerate the devices to "
              "see which there are.");
    EXPECT_EQ(DescriptionOfFailure([&] { m_factory.CreateDevice(gcstring("ScriptedA#9")); }),
              "There is no device 'ScriptedA#9'. Enumerate the devices to see which there are.");
}

TEST_F(CTlFactoryTest, CreatesByFullName) {
    IVantoDevice* const device = m_factory.CreateDevice(gcstring("ScriptedB#0"));
    EXPECT_EQ(m_b.devices, 1);
    m_factory.DestroyDevice(device);
}

TEST_F(CTlFactoryTest, NoDeviceIsAnError) {
    m_a.makeNoDevice = true;
    CDeviceInfo info;
    info.SetDeviceClass("ScriptedA");
    EXPECT_EQ(DescriptionOfFailure([&] { m_factory.CreateDevice(info); }),
              "The transport layer 'Scripted/ScriptedA' has created no device.");
}

TEST_F(CTlFactoryTest, DestroysADeviceThatATransportLayerWasAskedForItself) {
    ITransportLayer* const tl = m_factory.CreateTl(gcstring("ScriptedB"));
    IVantoDevice* const device = tl->CreateDevice(gcstring("ScriptedB#0"));
    m_factory.DestroyDevice(device);
    EXPECT_EQ(m_b.devices, 0);
    m_factory.ReleaseTl(tl);
}

TEST_F(CTlFactoryTest, RefusesToDestroyADeviceTwice) {
    IVantoDevice* const device = m_factory.CreateDevice(gcstring("ScriptedA#0"));
    m_factory.DestroyDevice(device);
    EXPECT_THROW(m_factory.DestroyDevice(device), GenICam::LogicalErrorException);
    EXPECT_THROW(m_factory.DestroyDevice(nullptr), GenICam::LogicalErrorException);
}

TEST_F(CTlFactoryTest, AsksTheTransportLayerForAccessibility) {
    CDeviceInfo info;
    info.SetDeviceClass("ScriptedA");
    AccessibilityCode code = Accessibility_Unknown;
    EXPECT_TRUE(m_factory.IsDeviceAccessible(info, AccessModeSet(), &code));
    EXPECT_EQ(code, Accessibility_Ok);
    EXPECT_THROW(m_factory.IsDeviceAccessible(WithSerial("none")), GenICam::RuntimeException);
}

TEST_F(CTlFactoryTest, ManyThreadsMakeAndReleaseAtOnce) {
    const auto work = [&] {
        for (int i = 0; i < 200; ++i) {
            ITransportLayer* const tl = m_factory.CreateTl(gcstring("ScriptedA"));
            IVantoDevice* const device = tl->CreateDevice(gcstring("ScriptedA#0"));
            m_factory.ReleaseTl(tl);
            if (i % 2 == 0)
                m_factory.DestroyDevice(device);
            else
                tl->DestroyDevice(device);
            if (i % 16 == 0)
                m_factory.ReleaseUnusedTls();
        }
    };
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back(work);
    }
    EXPECT_EQ(m_a.overlaps, 0);
    EXPECT_EQ(m_a.devices, 0);
    EXPECT_EQ(m_a.created, m_a.destroyed);
}

TEST_F(CTlFactoryTest, ThreadsThatEnumerateAndCreateThroughTheFactory) {
    const auto work = [&] {
        for (int i = 0; i < 100; ++i) {
            DeviceInfoList list;
            m_factory.EnumerateDevices(list);
            m_factory.DestroyDevice(m_factory.CreateDevice(list[0]));
            if (i % 8 == 0)
                m_factory.ReleaseUnusedTls();
        }
    };
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back(work);
    }
    EXPECT_EQ(m_a.overlaps, 0);
    EXPECT_EQ(m_a.devices, 0);
}

}  // namespace
