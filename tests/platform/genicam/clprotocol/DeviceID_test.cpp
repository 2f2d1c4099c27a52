/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of CDeviceID
 */

#include "CLProtocol/DeviceID.h"

#include <gtest/gtest.h>

#include "scripted/Scripted.h"

namespace {

using CLProtocol::CDeviceID;

TEST(DeviceID, TakesSixTokensApart) {
    CDeviceID id;
    ASSERT_TRUE(id.FromString("/dir#libX.so#Marlow#Heron#H2048#17"));
    EXPECT_EQ(id.GetDriverDirectory(), "/dir");
    EXPECT_EQ(id.GetDriverFileName(), "libX.so");
    EXPECT_EQ(id.GetCameraManufacturer(), "Marlow");
    EXPECT_EQ(id.GetCameraFamily(), "Heron");
    EXPECT_EQ(id.GetCameraModel(), "H2048");
    EXPECT_EQ(id.GetCameraVersion(), "");
    EXPECT_EQ(id.GetCameraSerialNumber(), "17");
    EXPECT_EQ(id.GetShortDeviceID(), "Marlow#Heron#H2048#17");
}

TEST(DeviceID, TakesSevenTokensApart) {
    CDeviceID id;
    ASSERT_TRUE(id.FromString("/dir#libX.so#Marlow#Heron#H2048#V2#17"));
    EXPECT_EQ(id.GetCameraVersion(), "V2");
    EXPECT_EQ(id.GetCameraSerialNumber(), "17");
    EXPECT_EQ(id.GetShortDeviceID(), "Marlow#Heron#H2048#V2#17");
}

TEST(DeviceID, TakesTemplatesApart) {
    CDeviceID id;
    ASSERT_TRUE(id.FromString("d#f#Marlow"));
    EXPECT_EQ(id.GetCameraManufacturer(), "Marlow");
    EXPECT_EQ(id.GetCameraFamily(), "");
    EXPECT_EQ(id.GetShortDeviceID(), "Marlow");
    ASSERT_TRUE(id.FromString("d#f#Marlow#Heron"));
    EXPECT_EQ(id.GetShortDeviceID(), "Marlow#Heron");
    ASSERT_TRUE(id.FromString("d#f#Marlow#Heron#H2048"));
    EXPECT_EQ(id.GetCameraModel(), "H2048");
    EXPECT_EQ(id.GetCameraSerialNumber(), "");
}

TEST(DeviceID, GivesBackItsText) {
    for (const char* text : {"d#f#m", "d#f#m#f#m", "d#f#m#f#m#s", "d#f#m#f#m#v#s", "#####", "######", "##m",
                             "d#f#m##m#", "d#f#caf\xc3\xa9#\xff\xfe#m#s"})
        EXPECT_EQ(CDeviceID(text).ToString(), text);
}

TEST(DeviceID, RefusesWhatIsNone) {
    for (const char* text : {"", "#", "a", "a#b", "1#2#3#4#5#6#7#8", "d#f#m\t", "d#f#m\nx", "d\x7f#f#m"}) {
        CDeviceID id("d#f#Marlow#Heron#H2048#V2#17");
        EXPECT_FALSE(id.FromString(text)) << text;
        EXPECT_EQ(id.ToString() + id.GetDriverDirectory(true) + id.GetDriverFileName() + id.GetDriverPath() +
                      id.GetCameraManufacturer() + id.GetCameraFamily() + id.GetCameraModel() + id.GetCameraVersion() +
                      id.GetCameraSerialNumber() + id.GetShortDeviceID(),
                  "");
    }
}

TEST(DeviceID, StandsAnyBytes) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    EXPECT_FALSE(CDeviceID().FromString("d#f#" + all));
    EXPECT_FALSE(CDeviceID().FromString(GenICam::gcstring("d#f#m\0x", 7)));
    EXPECT_FALSE(CDeviceID().FromString(std::string(1000000, '#')));
    EXPECT_TRUE(CDeviceID().FromString("d#f#" + std::string(1000000, 'x')));
}

TEST(DeviceID, ReplacesVariablesOfItsDirectoryOnRequest) {
    const scripted::ScopedVariable variable("DEVICEID_TEST", "/replaced");
    const CDeviceID id("$(DEVICEID_TEST)/x#libX.so#Marlow");
    EXPECT_EQ(id.GetDriverDirectory(), "$(DEVICEID_TEST)/x");
    EXPECT_EQ(id.GetDriverDirectory(true), "/replaced/x");
#ifndef _WIN32
    EXPECT_EQ(id.GetDriverPath(), "/replaced/x/" + scripted::SystemFolder() + "/libX.so");
#endif
}

TEST(DeviceID, NamesADriverThatCanBeLoaded) {
    EXPECT_EQ(CDeviceID(scripted::FullDeviceId("Marlow")).GetDriverPath(), scripted::DriverPath());
}

TEST(DeviceID, ReadsEscapesOfThisProjectsDriverOnly) {
    const CDeviceID own("d#libMarlowCLProtocol.so#M%23#F%23#N%23#1%23#A%23%2523");
    EXPECT_EQ(own.GetCameraManufacturer(), "M#");
    EXPECT_EQ(own.GetCameraFamily(), "F#");
    EXPECT_EQ(own.GetCameraModel(), "N#");
    EXPECT_EQ(own.GetCameraVersion(), "1#");
    EXPECT_EQ(own.GetCameraSerialNumber(), "A#%23");
    EXPECT_EQ(own.GetShortDeviceID(), "M%23#F%23#N%23#1%23#A%23%2523");
    EXPECT_EQ(CDeviceID("d#libX.so#M#F#N#1#A%23").GetCameraSerialNumber(), "A%23");
}

TEST(DeviceID, MatchesTemplatesTokenByToken) {
    const CDeviceID id("d#f#Marlow#Heron#H2048#17");
    for (const char* text : {"d#f#Marlow", "d#f#Marlow#Heron", "d#f#Marlow#Heron#H2048", "d#f#Marlow#Heron#H2048#17"})
        EXPECT_TRUE(id.IsMatchingTemplate(text)) << text;
    for (const char* text : {"", "d#f", "d#f#Mar", "d#f#Marlow#Her", "d#f#marlow", "e#f#Marlow", "d#f#Marlow#",
                             "d#f#Marlow#Heron#H2048#17#1", "Marlow"})
        EXPECT_FALSE(id.IsMatchingTemplate(text)) << text;
    EXPECT_FALSE(CDeviceID().IsMatchingTemplate("d#f#Marlow"));
}

TEST(DeviceID, SeparatesTokensByANumberSign) {
    EXPECT_EQ(CDeviceID::GetTokenSeperator(), "#");
}

}  // namespace
