/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the factory: enumerating and making devices
 */

#include "vanto/TlFactory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "TlFactoryFixture.h"
#include "vanto/LogListener.h"

namespace {

using namespace factory_test;
using testing::HasSubstr;

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
