/* SPDX-License-Identifier: Apache-2.0 */
#include "vanto/Info.h"

#include <gtest/gtest.h>

#include <thread>
#include <utility>

namespace {

using namespace Vanto;

CDeviceInfo Camera(const char* serial) {
    CDeviceInfo info;
    info.SetModelName("Model").SetSerialNumber(serial);
    return info;
}

TEST(CInfoBase, SaysNotAvailableForAnAbsentProperty) {
    const CDeviceInfo info;
    EXPECT_EQ(info.GetModelName(), CInfoBase::PropertyNotAvailable);
    EXPECT_EQ(CInfoBase::PropertyNotAvailable, "N/A");
    EXPECT_FALSE(info.IsModelNameAvailable());
    gcstring value("before");
    EXPECT_FALSE(info.GetPropertyValue("ModelName", value));
    EXPECT_EQ(value, "N/A");
}

TEST(CInfoBase, ReturnsWhatWasSet) {
    CDeviceInfo info;
    IProperties& self = info.SetPropertyValue("Own", "value");
    EXPECT_EQ(&self, &info);
    info.SetUserDefinedName("");
    EXPECT_TRUE(info.IsUserDefinedNameAvailable());
    EXPECT_EQ(info.GetUserDefinedName(), "");
    gcstring value;
    EXPECT_TRUE(info.GetPropertyValue("Own", value));
    EXPECT_EQ(value, "value");
    EXPECT_FALSE(info.GetPropertyAvailable("own"));
}

TEST(CInfoBase, ListsPropertyNames) {
    StringList_t names{"old"};
    EXPECT_EQ(Camera("1").GetPropertyNames(names), 2);
    EXPECT_EQ(names, (StringList_t{"ModelName", "SerialNumber"}));
}

TEST(CInfoBase, SubsetNeedsEveryPropertyWithTheSameValue) {
    CDeviceInfo partial;
    EXPECT_TRUE(Camera("1").IsSubset(partial));
    partial.SetSerialNumber("1");
    EXPECT_TRUE(Camera("1").IsSubset(partial));
    EXPECT_FALSE(Camera("2").IsSubset(partial));
    EXPECT_FALSE(partial.IsSubset(Camera("1")));
    partial.SetPropertyValue("Other", "");
    EXPECT_FALSE(Camera("1").IsSubset(partial));
}

TEST(CInfoBase, SubsetLeavesOutNotesToTheTransportLayer) {
    CDeviceInfo partial;
    partial.SetSerialNumber("1");
    partial.SetPropertyValue("_BornFree", "1");
    EXPECT_TRUE(Camera("1").IsSubset(partial));
}

TEST(CInfoBase, SubsetIsCaseSensitive) {
    CDeviceInfo partial;
    partial.SetModelName("model");
    EXPECT_FALSE(Camera("1").IsSubset(partial));
}

TEST(CInfoBase, IsUserProvidedUntilThatIsCleared) {
    CDeviceInfo info;
    EXPECT_TRUE(info.IsUserProvided());
    info.GetInfoImpl().ClearUserProvidedFlag();
    EXPECT_FALSE(info.IsUserProvided());
    const CDeviceInfo copy(info);
    EXPECT_FALSE(copy.IsUserProvided());
    CDeviceInfo assigned;
    assigned = info;
    EXPECT_FALSE(assigned.IsUserProvided());
}

TEST(CInfoBase, CopiesAreIndependent) {
    const CDeviceInfo original = Camera("1");
    CDeviceInfo copy(original);
    copy.SetSerialNumber("2");
    EXPECT_EQ(original.GetSerialNumber(), "1");
    CDeviceInfo& self = copy;
    copy = self;
    EXPECT_EQ(copy.GetSerialNumber(), "2");
}

TEST(CInfoBase, AMovedFromRecordStaysUsable) {
    CDeviceInfo info = Camera("1");
    const CDeviceInfo target(std::move(info));
    EXPECT_EQ(target.GetSerialNumber(), "1");
    info.SetSerialNumber("3");
    EXPECT_EQ(info.GetSerialNumber(), "3");
}

TEST(CInfoBase, MayBeReadFromSeveralThreads) {
    const CDeviceInfo info = Camera("1");
    const auto read = [&] {
        for (int i = 0; i < 1000; ++i)
            EXPECT_EQ(info.GetSerialNumber(), "1");
    };
    std::jthread other(read);
    read();
}

TEST(CInfoBase, CopiesKeepTheFlags) {
    CDeviceInfo info = Camera("1");
    EXPECT_EQ(info.GetModelName(), "Model");
    const CDeviceInfo copy(info);
    EXPECT_TRUE(copy.GetInfoImpl().IsModified());
    EXPECT_TRUE(copy.GetInfoImpl().IsAccessed("ModelName"));
    EXPECT_FALSE(copy.GetInfoImpl().IsAccessed("SerialNumber"));
    info.GetInfoImpl().ClearAccessFlags();
    EXPECT_FALSE(CDeviceInfo(info).GetInfoImpl().IsModified());
}

TEST(CTlInfo, HoldsWhatATransportLayerSaysOfItself) {
    CTlInfo info;
    info.SetVersion("1").SetFileName("f");
    info.SetDeviceClass("Class").SetFullName("Full");
    EXPECT_EQ(info.GetVersion(), "1");
    EXPECT_EQ(info.GetDeviceClass(), "Class");
    EXPECT_TRUE(info.IsFileNameAvailable());
}

}  // namespace
