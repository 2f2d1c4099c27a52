/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the exported device info record
 */

#include "vanto/VantoCLSerDeviceInfo.h"

#include <gtest/gtest.h>
#include <ostream>

namespace Vanto {
namespace {

struct Accessors {
    const char* name;
    gcstring (CVantoCLSerDeviceInfo::*get)() const;
    CVantoCLSerDeviceInfo& (CVantoCLSerDeviceInfo::*set)(const gcstring&);
    bool (CVantoCLSerDeviceInfo::*isAvailable)() const;
};

// How the test runner names a case.
void PrintTo(const Accessors& value, std::ostream* out) {
    *out << value.name;
}

#define ACCESSORS(Name)                                                              \
    Accessors {                                                                      \
#Name, &CVantoCLSerDeviceInfo::Get##Name, &CVantoCLSerDeviceInfo::Set##Name, \
            &CVantoCLSerDeviceInfo::Is##Name##Available                              \
    }

class DeviceInfoProperty : public testing::TestWithParam<Accessors> {
protected:
    CVantoCLSerDeviceInfo m_info;
};

TEST_P(DeviceInfoProperty, IsAbsentAtFirst) {
    EXPECT_FALSE((m_info.*GetParam().isAvailable)());
    EXPECT_EQ((m_info.*GetParam().get)(), CInfoBase::PropertyNotAvailable);
}

TEST_P(DeviceInfoProperty, IsStoredUnderItsName) {
    EXPECT_EQ(&(m_info.*GetParam().set)("value"), &m_info);
    gcstring value;
    EXPECT_TRUE(m_info.GetPropertyValue(GetParam().name, value));
    EXPECT_EQ(value, "value");
    EXPECT_TRUE((m_info.*GetParam().isAvailable)());
}

TEST_P(DeviceInfoProperty, IsReadByItsName) {
    m_info.SetPropertyValue(GetParam().name, "other");
    EXPECT_EQ((m_info.*GetParam().get)(), "other");
}

TEST_P(DeviceInfoProperty, MayBeEmpty) {
    (m_info.*GetParam().set)("");
    EXPECT_TRUE((m_info.*GetParam().isAvailable)());
    EXPECT_EQ((m_info.*GetParam().get)(), "");
}

INSTANTIATE_TEST_SUITE_P(All, DeviceInfoProperty,
                         testing::Values(ACCESSORS(PortID), ACCESSORS(DeviceID), ACCESSORS(InitialBaudRate),
                                         ACCESSORS(DeviceXMLFileOverride), ACCESSORS(DeviceSpecificString),
                                         ACCESSORS(PortSpecificString)),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(DeviceInfo, HasOnlyItsDeviceClassAtFirst) {
    const CVantoCLSerDeviceInfo info;
    StringList_t names;
    EXPECT_EQ(info.GetPropertyNames(names), 1);
    EXPECT_EQ(info.GetDeviceClass(), "MarlowCameraLink");
    EXPECT_TRUE(info.IsUserProvided());
}

TEST(DeviceInfo, NamesAreCaseSensitive) {
    CVantoCLSerDeviceInfo info;
    info.SetPropertyValue("portid", "value");
    EXPECT_FALSE(info.IsPortIDAvailable());
}

TEST(DeviceInfo, KeepsTheClassOfTheRecordItIsMadeFrom) {
    CDeviceInfo other;
    other.SetDeviceClass("Another").SetPropertyValue("PortID", "p");
    const CVantoCLSerDeviceInfo info(other);
    EXPECT_EQ(info.GetDeviceClass(), "Another");
    EXPECT_EQ(info.GetPortID(), "p");
}

TEST(DeviceInfo, AddsNoClassToARecordWithoutOne) {
    const CVantoCLSerDeviceInfo info{CDeviceInfo()};
    EXPECT_FALSE(info.IsDeviceClassAvailable());
}

TEST(DeviceInfo, CopiesAllProperties) {
    CVantoCLSerDeviceInfo original;
    original.SetPortID("p").SetDeviceID("d").SetDeviceClass("Another");
    const CVantoCLSerDeviceInfo copy(original);
    EXPECT_TRUE(copy.IsSubset(original));
    EXPECT_TRUE(original.IsSubset(copy));
}

TEST(DeviceInfo, AssignsAllProperties) {
    CVantoCLSerDeviceInfo original;
    original.SetPortID("p");
    CVantoCLSerDeviceInfo target;
    target.SetDeviceID("d");
    EXPECT_EQ(&(target = original), &target);
    EXPECT_EQ(target.GetPortID(), "p");
    EXPECT_FALSE(target.IsDeviceIDAvailable());
}

}  // namespace
}  // namespace Vanto
