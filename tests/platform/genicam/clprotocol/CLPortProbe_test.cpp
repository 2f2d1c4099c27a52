/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of CCLPort: probing, and the texts of errors
 */

#include "CLProtocol/CLPort.h"

#include <gtest/gtest.h>

#include <cstring>

#include "CLPortFixture.h"
#include "scripted/Scripted.h"

namespace {

using namespace clprotocol_test;

TEST_F(Port, ProbesAt9600AndClosesThePort) {
    EXPECT_EQ(Probe("Marlow", 123), scripted::FullDeviceId(kCamera));
    EXPECT_EQ(driver.probedFor, "Marlow");
    EXPECT_EQ(driver.lastTimeout, 123u);
    EXPECT_EQ(serial.Port(0).rates, (std::vector<std::uint32_t>{1}));
    EXPECT_FALSE(serial.Port(0).isOpen);
    EXPECT_EQ(driver.CountConnections(), 0u);
}

TEST_F(Port, ProbesForNothingWithoutError) {
    EXPECT_EQ(Probe("Other"), "");
    EXPECT_FALSE(serial.Port(0).isOpen);
}

TEST_F(Port, ProbeReportsThatNobodyAnswers) {
    serial.SetCamera(0, "");
    EXPECT_EQ(CodeOf([] { Probe(); }), -10004);
    driver.noAnswer = -30209;
    EXPECT_EQ(CodeOf([] { Probe(); }), -30209);
    EXPECT_FALSE(serial.Port(0).isOpen);
}

TEST_F(Port, ErrorTextIsTheDriversFirst) {
    serial.SetCamera(0, "");
    driver.errorTexts[-10004] = "tried 9600 and\n115200 baud";
    serial.errorTexts[-10004] = "the library's";
    EXPECT_EQ(TextOf([] { Probe(); }), "Port 'Scripted#Port0': function 'clpProbeDevice' of '" +
                                           scripted::DriverPath() + "' failed: tried 9600 and 115200 baud (-10004)");
}

TEST_F(Port, ErrorTextIsTheSerialLibrarysSecond) {
    serial.SetCamera(0, "");
    serial.errorTexts[-10004] = "the library's";
    EXPECT_NE(TextOf([] { Probe(); }).find("failed: the library's (-10004)"), std::string::npos);
}

TEST_F(Port, ErrorTextIsTheStandardsLast) {
    serial.SetCamera(0, "");
    EXPECT_NE(TextOf([] { Probe(); }).find("failed: time-out (-10004)"), std::string::npos);
    driver.onGetErrorText = [](std::int32_t, char*, std::uint32_t*, std::uint32_t) -> std::int32_t { throw 1; };
    serial.onGetErrorText = [](std::int32_t, char*, std::uint32_t*) -> std::int32_t { throw 1; };
    EXPECT_NE(TextOf([] { Probe(); }).find("failed: time-out (-10004)"), std::string::npos);
}

TEST_F(Port, ErrorTextOfAnyLengthIsBounded) {
    serial.SetCamera(0, "");
    driver.onGetErrorText = [](std::int32_t, char* text, std::uint32_t* size, std::uint32_t) {
        std::memset(text, '%', *size);
        *size = 0xffffffff;
        return 0;
    };
    const std::string text = TextOf([] { Probe(); });
    EXPECT_NE(text.find(std::string(4096, '%')), std::string::npos);
    EXPECT_LT(text.size(), 10000u);
}

}  // namespace
