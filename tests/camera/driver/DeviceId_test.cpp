/* SPDX-License-Identifier: Apache-2.0 */
#include "DeviceId.h"

#include <gtest/gtest.h>

#include "Rig.h"

namespace {

using namespace marlow;
using marlow::test::CodeOf;

const CameraName kCamera{"Marlow", "Heron", "H2048", "1.0", "42"};

TEST(CameraName, IsFiveTokens) {
    EXPECT_EQ(kCamera.ToShortDeviceId(), "Marlow#Heron#H2048#1.0#42");
    EXPECT_EQ((CameraName{"Marlow", "Heron", "H2048", "", ""}.ToShortDeviceId()), "Marlow#Heron#H2048##");
}

TEST(CameraName, KeepsSeparatorsOfItsTokensApart) {
    const CameraName odd{"Marlow", "He#ron", "H%23", "1#", "4#2"};
    EXPECT_EQ(odd.ToShortDeviceId(), "Marlow#He%23ron#H%2523#1%23#4%232");
    EXPECT_TRUE(DeviceRequest(odd.ToShortDeviceId()).Fits(odd));
    EXPECT_EQ(DeviceRequest(odd.ToShortDeviceId()).ShortDeviceId(), "Marlow#He%23ron#H%2523#4%232");
}

TEST(CameraName, IsThatOfTheSameCameraWhateverItsVersion) {
    EXPECT_TRUE(kCamera.IsSameCameraAs({"Marlow", "Heron", "H2048", "2.0", "42"}));
    EXPECT_FALSE(kCamera.IsSameCameraAs({"Acme", "Heron", "H2048", "1.0", "42"}));
    EXPECT_FALSE(kCamera.IsSameCameraAs({"Marlow", "Egret", "H2048", "1.0", "42"}));
    EXPECT_FALSE(kCamera.IsSameCameraAs({"Marlow", "Heron", "H4096", "1.0", "42"}));
    EXPECT_FALSE(kCamera.IsSameCameraAs({"Marlow", "Heron", "H2048", "1.0", "43"}));
}

TEST(DeviceRequest, FitsItsOwnBeginnings) {
    for (const char* text :
         {"Marlow", "Marlow#Heron", "Marlow#Heron#H2048", "Marlow#Heron#H2048#42", "Marlow#Heron#H2048#1.0#42",
          "dir/x#libMarlowCLProtocol.so#Marlow", "dir#lib#Marlow#Heron#H2048#42", "dir#lib#Marlow#Heron#H2048#1.0#42"})
        EXPECT_TRUE(DeviceRequest(text).Fits(kCamera)) << text;
}

TEST(DeviceRequest, OthersDoNotFit) {
    for (const char* text : {"Marlow#Egret", "Marlow#Heron#H4096", "Marlow#Heron#H2048#43", "Marlow#Heron#H2048#",
                             "dir#lib#Marlow#Heron#H2048#43", "Marlow#"})
        EXPECT_FALSE(DeviceRequest(text).Fits(kCamera)) << text;
}

TEST(DeviceRequest, AnotherMakersCameraDoesNotFit) {
    EXPECT_FALSE(DeviceRequest("Marlow").Fits({"Acme", "Heron", "H2048", "1.0", "42"}));
}

TEST(DeviceRequest, NamesOneCameraWithItsSerialNumber) {
    EXPECT_FALSE(DeviceRequest("Marlow#Heron#H2048").NamesOneCamera());
    EXPECT_TRUE(DeviceRequest("Marlow#Heron#H2048#").NamesOneCamera());
    EXPECT_TRUE(DeviceRequest("d#l#Marlow#Heron#H2048#42").NamesOneCamera());
}

TEST(DeviceRequest, WhatIsNotOfThisDriverIsRefused) {
    for (const char* text : {"", "#", "Acme", "marlow", "Marlow2", "x#y#Acme#Heron", "Marlow#1#2#3#4#5", "x#Marlow"})
        EXPECT_EQ(CodeOf([&] { DeviceRequest{text}; }), CLProtocol::CLP_INVALID_DEVICEID) << text;
}

TEST(DeviceRequest, ShortDeviceIdGoesAsFarAsTheRequest) {
    EXPECT_EQ(DeviceRequest("Marlow").ShortDeviceId(), "Marlow");
    EXPECT_EQ(DeviceRequest("d#l#Marlow#Heron#H2048#1.0#42").ShortDeviceId(), "Marlow#Heron#H2048#42");
}

}  // namespace
