/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the headers for drivers: what is compiled in C and in C++11 uses a line of a host in C++20
 */

#include "CLProtocol/CLProtocol.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class Line final : public CLProtocol::ISerial {
public:
    CLINT32 clSerialRead(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) override {
        calls += "read " + std::to_string(*bufferSize) + " " + std::to_string(serialTimeout) + ";";
        *buffer = 'r';
        return 1;
    }
    CLINT32 clSerialWrite(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) override {
        calls += "write " + std::string(buffer, *bufferSize) + " " + std::to_string(serialTimeout) + ";";
        return 2;
    }
    CLINT32 clGetSupportedBaudRates(CLUINT32* baudRates) override {
        calls += "rates;";
        *baudRates = 0xff;
        return 3;
    }
    CLINT32 clSetBaudRate(CLUINT32 baudRate) override {
        calls += "rate " + std::to_string(baudRate) + ";";
        return 4;
    }

    std::string calls;
};

void Log(CLINT32, const char*, va_list) {}

TEST(HeadersForDrivers, ServeADriverInC) {
    Line line;
    char byte = 0;
    EXPECT_EQ(clpInitLib(&Log, CLProtocol::CLP_LOG_INFO), 0);
    EXPECT_EQ(clpIsParamSupported(CLProtocol::CLP_DEVICE_BAUDERATE), 0);
    EXPECT_EQ(clpIsParamSupported(CLProtocol::CLP_LOG_LEVEL), -20105);
    EXPECT_EQ(clpReadRegister(&line, 1, 2, &byte, 1, 500), 1);
    EXPECT_EQ(clpWriteRegister(&line, 1, 2, "abc", 3, 400), 2);
    EXPECT_EQ(clpSetParam(&line, CLProtocol::CLP_DEVICE_BAUDERATE, 1, nullptr, 0, 0), 4);
    EXPECT_EQ(line.calls, "read 1 500;write abc 400;rates;rate 16;");
    EXPECT_EQ(byte, 'r');
}

TEST(HeadersForDrivers, ServeADriverInCpp11) {
    Line line;
    char byte = 0;
    CLUINT32 major = 0;
    CLUINT32 minor = 0;
    EXPECT_EQ(clpGetCLProtocolVersion(&major, &minor), 0);
    EXPECT_EQ(major * 100 + minor, 102U);
    EXPECT_EQ(clpContinueWriteRegister(&line, 1, 1, 0), 20101);
    EXPECT_EQ(clpGetParam(&line, CLProtocol::CLP_DEVICE_BAUDERATE, 1, &byte, 1, 300), 1);
    EXPECT_EQ(line.calls, "read 1 300;");
}

}  // namespace
