/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The baud rate of a connection, through its register and by flag
 */

#include "Connection.h"

#include <gtest/gtest.h>

#include "ConnectionFixture.h"
#include "Rig.h"

namespace {

using namespace marlow;
using namespace marlow::test;
using std::chrono::milliseconds;

TEST_F(ConnectionTest, BaudRateRegisterHasTheEntryValueAndIsNeverSent) {
    Open();
    camera.received.clear();
    EXPECT_EQ(Read(0x4D42445200000000, 4), (Bytes{0, 0, 0, 15}));
    EXPECT_TRUE(camera.received.empty());
}

TEST_F(ConnectionTest, BaudRateRegisterChangesTheRateOfBothSides) {
    Open();
    for (const auto& rate : gencp::kBaudRates) {
        EXPECT_TRUE(Write(0x4D42445200000000, {0, 0, 0, static_cast<std::uint8_t>(rate.entryValue)}));
        EXPECT_EQ(camera.Rate(), rate.flag);
        EXPECT_EQ(Read(0x4D42445200000000, 4), (Bytes{0, 0, 0, static_cast<std::uint8_t>(rate.entryValue)}));
        EXPECT_EQ(connection.Rate(serial, kTimeout), rate.flag);
        EXPECT_EQ(Read(0, 4), (Bytes{0, 1, 0, 3}));
    }
}

TEST_F(ConnectionTest, CameraThatWasLostByAChangeIsBroughtBackByTheNext) {
    LoseByAChange();
    camera.responseDelay = milliseconds(2);
    connection.SetRate(serial, 0x01, kTimeout);
    EXPECT_EQ(camera.Rate(), 0x01u);
    EXPECT_EQ(connection.Rate(serial, kTimeout), 0x01u);
}

TEST_F(ConnectionTest, CameraThatStaysLateIsBroughtBackByTheSecondChange) {
    LoseByAChange();
    EXPECT_EQ(CodeOf([&] { connection.SetRate(serial, 0x01, kTimeout); }), CL_ERR_TIMEOUT) << "it heard that, too";
    connection.SetRate(serial, 0x01, kTimeout);
    EXPECT_EQ(camera.Rate(), 0x01u);
    EXPECT_EQ(connection.Rate(serial, kTimeout), 0x01u);
}

TEST_F(ConnectionTest, AnotherCameraInPlaceOfALostOneKeepsItsRate) {
    LoseByAChange();
    camera.responseDelay = milliseconds(2);
    camera.SetText(gencp::abrm::kSerialNumber, "other");
    EXPECT_EQ(CodeOf([&] { connection.SetRate(serial, 0x01, kTimeout); }), CLProtocol::CLP_NO_DEVICE_FOUND);
    EXPECT_EQ(camera.Rate(), 0x80u);
    EXPECT_EQ(connection.Rate(serial, kTimeout), 0x01u);
}

TEST_F(ConnectionTest, ChangeBehindAnAccessWithoutAnswerCostsOneLook) {
    Open();
    camera.isSilent = true;
    EXPECT_EQ(CodeOf([&] { Read(0, 4); }), CL_ERR_TIMEOUT);
    const Time begin = clock.Now();
    EXPECT_EQ(CodeOf([&] { connection.SetRate(serial, 0x80, kTimeout); }), CL_ERR_TIMEOUT);
    EXPECT_LE(clock.Now() - begin, milliseconds(150));
}

TEST_F(ConnectionTest, EntryValuesWithoutRateAreRefused) {
    Open();
    for (const int value : {0, 16, 24, 255})
        EXPECT_EQ(CodeOf([&] {
                      Write(0x4D42445200000000, {0, 0, 0, static_cast<std::uint8_t>(value)});
                  }),
                  CL_ERR_BAUD_RATE_NOT_SUPPORTED);
    EXPECT_EQ(CodeOf([&] { Write(0x4D42445200000000, {0, 0, 1, 20}); }), CL_ERR_BAUD_RATE_NOT_SUPPORTED);
    EXPECT_EQ(camera.Rate(), 0x01u);
}

TEST_F(ConnectionTest, PartsOfTheBaudRateRegisterAreRefused) {
    Open();
    camera.received.clear();
    EXPECT_EQ(CodeOf([&] { Read(0x4D42445200000000, 2); }), kBadRange);
    EXPECT_EQ(CodeOf([&] { Read(0x4D42445200000000, 8); }), kBadRange);
    EXPECT_EQ(CodeOf([&] { Read(0x4D42445200000002, 4); }), kBadRange);
    EXPECT_EQ(CodeOf([&] { Read(0x4D424451FFFFFFFE, 4); }), kBadRange);
    EXPECT_TRUE(camera.received.empty());
    EXPECT_EQ(CodeOf([&] { Read(0x4D42445200000004, 4); }), kStatusCodes - 3);
    EXPECT_EQ(CodeOf([&] { Read(0x4D424451FFFFFFFC, 4); }), kStatusCodes - 3);
}

TEST_F(ConnectionTest, RateIsSetByFlagAsWell) {
    Open();
    connection.SetRate(serial, 0x80, kTimeout);
    EXPECT_EQ(camera.Rate(), 0x80u);
    for (const std::uint32_t flag : {0u, 0x03u, 0x100u, 0x40000000u})
        EXPECT_EQ(CodeOf([&] { connection.SetRate(serial, flag, kTimeout); }), CLProtocol::CLP_PARAM_VALUE);
}

TEST_F(ConnectionTest, SupportedRatesAreThoseOfBothSides) {
    serial.supported = 0x15;
    camera.SetNumber(gencp::sbrm::kSupportedBaudRates.At(kSbrmAddress), 0x91);
    Open();
    EXPECT_EQ(connection.SupportedRates(serial, kTimeout), 0x11u);
}

TEST_F(ConnectionTest, CameraWithoutSerialRegistersCannotChange) {
    camera.SetCapability(gencp::capability::kFamilyName);
    Open();
    EXPECT_EQ(connection.SupportedRates(serial, kTimeout), 0x01u);
    EXPECT_EQ(CodeOf([&] { connection.SetRate(serial, 0x80, kTimeout); }), kNoSerialRegisters);
}

}  // namespace
