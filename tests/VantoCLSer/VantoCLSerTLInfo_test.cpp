/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the transport layer's info record
 */

#include "VantoCLSer/VantoCLSerTLInfo.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vanto {
namespace {

TEST(TlInfo, HasFourProperties) {
    StringList_t names;
    EXPECT_EQ(GetTLInfo().GetPropertyNames(names), 4);
    EXPECT_THAT(std::vector<gcstring>(names.begin(), names.end()),
                testing::UnorderedElementsAre(gcstring("DeviceClass"), gcstring("FullName"), gcstring("VendorName"),
                                              gcstring("FriendlyName")));
}

TEST(TlInfo, IsOfTheDeviceClass) {
    EXPECT_EQ(GetTLInfo().GetDeviceClass(), "MarlowCameraLink");
}

TEST(TlInfo, EndsItsFullNameWithTheVersion) {
    EXPECT_EQ(GetTLInfo().GetFullName(), "Camera Link/MarlowCameraLink 3.2.2.3032");
}

TEST(TlInfo, NamesTheInterfaceAsVendor) {
    EXPECT_EQ(GetTLInfo().GetVendorName(), "Camera Link");
    EXPECT_EQ(GetTLInfo().GetFriendlyName(), "Camera Link");
}

TEST(TlInfo, HasNoVersionOfItsOwn) {
    EXPECT_FALSE(GetTLInfo().IsVersionAvailable());
}

TEST(TlInfo, IsBuiltOnce) {
    EXPECT_EQ(&GetTLInfo(), &GetTLInfo());
}

TEST(TlInfo, TellsTheFlagOfItsImplementation) {
    EXPECT_EQ(GetTLInfo().IsUserProvided(), GetTLInfo().GetInfoImpl().IsUserProvided());
    EXPECT_TRUE(GetTLInfo().IsUserProvided());  // nothing clears it
}

}  // namespace
}  // namespace Vanto
