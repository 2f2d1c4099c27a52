/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The baud rates of a camera: changing, confirming, falling back
 */

#include "camera/Device.h"

#include <gtest/gtest.h>

#include "DeviceFixture.h"
#include "gencp/Memory.h"
#include "simulator/CameraRegisters.h"

namespace MarlowSim {
namespace {

constexpr Register kBaud = sbrm::kCurrentBaudRate.At(kSbrmAddress);

TEST_F(DeviceTest, ChangesItsRateWhenTheAnswerHasLeft) {
    m_device->Receive(Command(kWriteMem, EncodeWrite(kBaud.address, NumberBytes(0x80, 4)), 1), m_now);
    EXPECT_EQ(m_device->BitsPerSecond(), 9600U);
    EXPECT_TRUE(Sent());
    EXPECT_EQ(m_device->BitsPerSecond(), 921600U);
}

TEST_F(DeviceTest, FallsBackWithoutTheConfirmingWrite) {
    EXPECT_EQ(Write(kBaud, 0x80), kStatusSuccess);
    Wait(249);
    EXPECT_EQ(m_device->BitsPerSecond(), 921600U);
    EXPECT_EQ(m_device->NextEvent(), m_now + milliseconds(1));
    Wait(1);
    EXPECT_EQ(m_device->BitsPerSecond(), 9600U);
    EXPECT_EQ(Number(kBaud), 0x01U);
}

TEST_F(DeviceTest, KeepsAConfirmedRate) {
    EXPECT_EQ(Write(kBaud, 0x80), kStatusSuccess);
    Wait(200);
    EXPECT_EQ(Write(kBaud, 0x80), kStatusSuccess);
    Wait(10000);
    EXPECT_EQ(m_device->BitsPerSecond(), 921600U);
    EXPECT_EQ(Number(kBaud), 0x80U);
}

TEST_F(DeviceTest, RepeatsTheAnswerOfARateChangeAfterFallingBackAndStays) {
    EXPECT_EQ(Write(kBaud, 0x80), kStatusSuccess);
    Wait(250);
    Exchange(m_lastWrite);
    EXPECT_EQ(m_device->BitsPerSecond(), 9600U);
}

TEST_F(DeviceTest, RefusesRatesThatItDoesNotHave) {
    CameraOptions options;
    options.rates = 0x11;
    Make(options);
    EXPECT_EQ(Number(sbrm::kSupportedBaudRates.At(kSbrmAddress)), 0x11U);
    for (const std::uint32_t flag : {0x00U, 0x02U, 0x11U, 0x100U})
        EXPECT_EQ(Write(kBaud, flag), kStatusInvalidParameter) << flag;
    EXPECT_EQ(Write(kBaud, 0x10), kStatusSuccess);
}

TEST_F(DeviceTest, GoesBackTo9600WhenTheHostGivesUpControl) {
    Write(kBaud, 0x80);
    Write(kBaud, 0x80);
    EXPECT_EQ(Write(abrm::kAccessPrivilege, 0), kStatusSuccess);
    EXPECT_EQ(m_device->BitsPerSecond(), 921600U) << "nobody was in control";
    EXPECT_EQ(Write(abrm::kAccessPrivilege, 1), kStatusSuccess);
    EXPECT_EQ(Write(abrm::kAccessPrivilege, 2), kStatusInvalidParameter);
    EXPECT_EQ(Write(abrm::kAccessPrivilege, 0), kStatusSuccess);
    EXPECT_EQ(m_device->BitsPerSecond(), 9600U);
}

TEST_F(DeviceTest, GoesBackTo9600WhenTheHeartbeatStops) {
    Write(kBaud, 0x80);
    Write(kBaud, 0x80);
    EXPECT_EQ(Write(abrm::kHeartbeatTimeout, 1000), kStatusSuccess);
    EXPECT_EQ(Write(abrm::kHeartbeatTimeout, 499), kStatusInvalidParameter);
    EXPECT_EQ(Write(abrm::kDeviceConfiguration, 1), kStatusSuccess);
    Wait(5000);
    EXPECT_EQ(m_device->BitsPerSecond(), 921600U) << "nobody is in control";
    EXPECT_EQ(Write(abrm::kAccessPrivilege, 1), kStatusSuccess);
    Wait(999);
    Number(abrm::kAccessPrivilege);
    Wait(999);
    EXPECT_EQ(m_device->BitsPerSecond(), 921600U) << "each access starts the time anew";
    Wait(1);
    EXPECT_EQ(m_device->BitsPerSecond(), 9600U);
    EXPECT_EQ(Number(abrm::kAccessPrivilege), 0U);
}

TEST_F(DeviceTest, MayBeAtAnotherRateWhenSwitchedOn) {
    CameraOptions options;
    options.baud = 115200;
    Make(options);
    EXPECT_EQ(m_device->BitsPerSecond(), 115200U);
    EXPECT_EQ(Number(kBaud), 0x10U);
}

}  // namespace
}  // namespace MarlowSim
