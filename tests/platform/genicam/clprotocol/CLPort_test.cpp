/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of CCLPort
 */

#include "CLProtocol/CLPort.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <stdexcept>

#include "CLPortFixture.h"
#include "CLProtocol/Diagnostics.h"
#include "scripted/Scripted.h"

namespace {

using namespace clprotocol_test;
using CLProtocol::ISerial;

// Another thread counts the ports while this one opens: the number is that of another port then.
TEST_F(Port, IsNotAnotherOneThatTookItsNumber) {
    serial.onInit = [this](std::uint32_t, hSerRef*) {
        serial.onGetSerialPortIdentifier = [](std::uint32_t, char* id, std::uint32_t* size) {
            std::strcpy(id, "Other");
            *size = 6;
            return 0;
        };
        return 0;
    };
    CCLPort port;
    EXPECT_THROW(Connect(port), CLErrException);
    EXPECT_FALSE(port.IsConnected());
    serial.onInit = nullptr;
    serial.onGetSerialPortIdentifier = nullptr;
    Connect(port);
    EXPECT_TRUE(port.IsConnected());
}

TEST_F(Port, RefusesWhatIsNoDeviceId) {
    for (const std::string& text :
         {std::string(), std::string("Marlow"), std::string(500, '#'), std::string("\xff\t")}) {
        EXPECT_EQ(CodeOf([&] { CCLPort::ProbeDevice(kPort, text, 100); }), -20100);
        CCLPort port;
        EXPECT_EQ(CodeOf([&] { port.Connect(kPort, text); }), -20100);
    }
}

TEST_F(Port, StandsADriverThatThrows) {
    driver.onProbe = [](ISerial*, const char*, char*, std::uint32_t*, std::uint32_t*, std::uint32_t) -> std::int32_t {
        throw std::runtime_error("reason");
    };
    EXPECT_EQ(TextOf([] { Probe(); }),
              "Function 'clpProbeDevice' of '" + scripted::DriverPath() + "' threw an exception: reason");
    EXPECT_FALSE(serial.Port(0).isOpen);
}

TEST_F(Port, StandsADeviceIdOfAnyBytes) {
    driver.onProbe = [](ISerial*, const char*, char* id, std::uint32_t* size, std::uint32_t* cookie, std::uint32_t) {
        for (std::uint32_t i = 0; i < *size; ++i)
            id[i] = static_cast<char>(i % 255 + 1);
        *size = 0xfffffffe;
        *cookie = 1;
        return 0;
    };
    driver.onDisconnect = nullptr;
    const GenICam::gcstring id = Probe();
    EXPECT_EQ(id.size(), scripted::FullDeviceId("").size() + 4096);
    EXPECT_EQ(id.str().find('\t'), std::string::npos);
    CCLPort port;
    EXPECT_EQ(CodeOf([&] { Connect(port); }), -20101);
    EXPECT_FALSE(serial.Port(0).isOpen);
}

TEST_F(Port, RefusesADeviceWithoutACookie) {
    driver.onProbe = [](ISerial*, const char*, char* id, std::uint32_t* size, std::uint32_t* cookie, std::uint32_t) {
        std::memcpy(id, kCamera, sizeof kCamera);
        *size = sizeof kCamera;
        *cookie = 0;
        return 0;
    };
    EXPECT_EQ(CodeOf([] { Probe(); }), -20103);
}

TEST_F(Port, HasOneAndTheSameLineForTheDriverEachTime) {
    std::vector<ISerial*> lines;
    driver.onProbe = [&](ISerial* line, const char*, char*, std::uint32_t* size, std::uint32_t*, std::uint32_t) {
        lines.push_back(line);
        *size = 0;
        return 0;
    };
    std::vector<std::unique_ptr<char[]>> blocks;
    for (int round = 0; round < 3; ++round)
        for (const char* port : {"Scripted#Port0", "Scripted#Port1"}) {
            CCLPort::ProbeDevice(port, scripted::FullDeviceId("Marlow"), 100);
            blocks.push_back(std::make_unique<char[]>(200));  // what a freed object's place may become
        }
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_NE(lines[0], lines[1]);
    EXPECT_EQ(lines, (std::vector<ISerial*>{lines[0], lines[1], lines[0], lines[1], lines[0], lines[1]}));
}

TEST_F(Port, LineFailsOnceItIsClosed) {
    ISerial* line = nullptr;
    driver.onProbe = [&](ISerial* given, const char*, char*, std::uint32_t* size, std::uint32_t*, std::uint32_t) {
        line = given;
        *size = 0;
        return 0;
    };
    Probe();
    ASSERT_NE(line, nullptr);
    char byte = 0;
    std::uint32_t number = 1;
    EXPECT_EQ(line->clSerialRead(&byte, &number, 0), -10006);
    EXPECT_EQ(line->clSerialWrite(&byte, &number, 0), -10006);
    EXPECT_EQ(line->clGetSupportedBaudRates(&number), -10006);
    EXPECT_EQ(line->clSetBaudRate(1), -10006);
}

TEST_F(Port, ReadsAndWritesRegisters) {
    CCLPort port;
    port.SetSerialTimeOut(321);
    Connect(port);
    driver.SetRegister(0x100000000, "abcd");
    EXPECT_EQ(ReadBytes(port, 0x100000000, 4), "abcd");
    EXPECT_EQ(driver.lastTimeout, 321u);
    port.Write("xyz", -5, 3);
    EXPECT_EQ(driver.GetRegister(-5, 3), "xyz");
    const std::string large(100000, 'l');
    port.Write(large.data(), 0, static_cast<std::int64_t>(large.size()));
    EXPECT_EQ(ReadBytes(port, 0, large.size()), large);
}

TEST_F(Port, RefusesAccessesWithoutConnectionBufferOrSense) {
    CCLPort port;
    char byte = 0;
    EXPECT_THROW(port.Read(&byte, 0, 1), GenICam::RuntimeException);
    EXPECT_THROW(port.Write(&byte, 0, 1), GenICam::RuntimeException);
    EXPECT_THROW(port.GetXML(true), GenICam::RuntimeException);
    Connect(port);
    for (const std::int64_t length :
         {std::int64_t{0}, std::int64_t{-1}, (std::int64_t{64} << 20) + 1, std::numeric_limits<std::int64_t>::min(),
          std::numeric_limits<std::int64_t>::max()}) {
        EXPECT_THROW(port.Read(&byte, 0, length), GenICam::InvalidArgumentException);
        EXPECT_THROW(port.Write(&byte, 0, length), GenICam::InvalidArgumentException);
    }
    EXPECT_THROW(port.Read(nullptr, 0, 1), GenICam::InvalidArgumentException);
    EXPECT_THROW(port.Write(nullptr, 0, 1), GenICam::InvalidArgumentException);
}

TEST_F(Port, LeavesTheBufferAloneOnFailure) {
    CCLPort port;
    Connect(port);
    driver.onRead = [](ISerial*, std::int64_t, char* buffer, std::int64_t length, std::uint32_t) {
        std::memset(buffer, 'x', static_cast<std::size_t>(length));
        return -30001;
    };
    char bytes[4] = {'?', '?', '?', '?'};
    EXPECT_EQ(CodeOf([&] { port.Read(bytes, 0, 4); }), -30001);
    EXPECT_EQ(std::string(bytes, 4), "????");
    EXPECT_TRUE(port.IsConnected());
}

TEST_F(Port, TakesPositiveResultsAsSuccess) {
    CCLPort port;
    Connect(port);
    driver.onRead = [](ISerial*, std::int64_t, char*, std::int64_t, std::uint32_t) { return 30001; };
    EXPECT_EQ(CodeOf([&] { ReadBytes(port, 0, 1); }), 0);
    driver.onWrite = [](ISerial*, std::int64_t, const char*, std::int64_t, std::uint32_t) { return 1; };
    port.Write("x", 0, 1);
}

TEST_F(Port, NoticesAPulledCable) {
    CCLPort port;
    Connect(port);
    serial.SetCamera(0, "");
    EXPECT_EQ(CodeOf([&] { ReadBytes(port, 0, 1); }), -10004);
    serial.SetCamera(0, kCamera);
    EXPECT_EQ(CodeOf([&] { ReadBytes(port, 0, 1); }), 0);
}

TEST_F(Port, RefusalIsNoCameraLinkError) {
    CCLPort port;
    Connect(port);
    driver.onWrite = [](ISerial*, std::int64_t, const char*, std::int64_t, std::uint32_t) { return -30104; };
    EXPECT_THROW(port.Write("x", 0, 1), GenICam::AccessException);
    EXPECT_NE(TextOf([&] { port.Write("x", 0, 1); }).find("function 'clpWriteRegister' of '"), std::string::npos);
    EXPECT_NE(TextOf([&] { port.Write("x", 0, 1); }).find("(-30104)"), std::string::npos);
    driver.onRead = [](ISerial*, std::int64_t, char*, std::int64_t, std::uint32_t) { return -30107; };
    EXPECT_THROW(ReadBytes(port, 0, 1), GenICam::TimeoutException);
    driver.onRead = nullptr;
    EXPECT_EQ(CodeOf([&] { ReadBytes(port, 0, 1); }), 0);
}

TEST_F(Port, RefusalAfterAPendingWriteIsOneAsWell) {
    CCLPort port;
    Connect(port);
    driver.pendingWrites = 2;
    driver.writeResult = -30106;
    EXPECT_THROW(port.Write("x", 0, 1), GenICam::AccessException);
}

TEST_F(Port, UnknownCodeIsARefusalWhereTheCameraAnswered) {
    CCLPort port;
    Connect(port);
    driver.onRead = [](ISerial* line, std::int64_t, char*, std::int64_t, std::uint32_t timeoutMs) {
        char bytes[128] = {'?'};
        std::uint32_t size = 1;
        line->clSerialWrite(bytes, &size, timeoutMs);
        size = sizeof bytes;
        line->clSerialRead(bytes, &size, 2);
        return -30001;
    };
    EXPECT_THROW(ReadBytes(port, 0, 1), GenICam::AccessException);
    serial.SetCamera(0, "");
    EXPECT_EQ(CodeOf([&] { ReadBytes(port, 0, 1); }), -30001);
    driver.onRead = [](ISerial*, std::int64_t, char*, std::int64_t, std::uint32_t) { return -30001; };
    EXPECT_EQ(CodeOf([&] { ReadBytes(port, 0, 1); }), -30001);
}

TEST_F(Port, RefusalWhileAProbeRunsKeepsItsCode) {
    driver.onProbe = [](ISerial*, const char*, char*, std::uint32_t*, std::uint32_t*, std::uint32_t) { return -30107; };
    EXPECT_EQ(CodeOf([] { Probe(); }), -30107);
    CCLPort port;
    EXPECT_EQ(CodeOf([&] { Connect(port); }), -30107);
}

TEST_F(Port, TellsWhatTheSerialLibraryThrew) {
    CCLPort port;
    Connect(port);
    serial.onWrite = [](scripted::PortScript&, char*, std::uint32_t*, std::uint32_t) -> std::int32_t {
        throw std::runtime_error("reason");
    };
    const std::string text = TextOf([&] { ReadBytes(port, 0, 1); });
    EXPECT_NE(text.find("invalid reference (-10006). Function 'clSerialWrite' of '" + scripted::SerialPath() +
                        "' threw an exception: reason"),
              std::string::npos)
        << text;
}

TEST_F(Port, ContinuesPendingWrites) {
    CCLPort port;
    Connect(port);
    driver.pendingWrites = 5;
    port.Write("x", 0, 1);
    EXPECT_EQ(driver.CountCalls("clpContinueWriteRegister"), 5u);
    driver.pendingWrites = 2;
    driver.writeResult = -30007;
    EXPECT_EQ(CodeOf([&] { port.Write("x", 0, 1); }), -30007);
}

TEST_F(Port, GivesUpOnWritesThatStayPending) {
    CLProtocol::SetPatience({30000, 30});
    CCLPort port;
    Connect(port);
    std::atomic<int> ended{0};
    driver.onWrite = [](ISerial*, std::int64_t, const char*, std::int64_t, std::uint32_t) { return 20101; };
    driver.onContinueWrite = [&](bool continueWaiting) {
        ended += continueWaiting ? 0 : 1;
        return 20101;
    };
    EXPECT_THROW(port.Write("x", 0, 1), GenICam::TimeoutException);
    EXPECT_EQ(ended, 1);
}

TEST_F(Port, WriteThatWasGivenUpIsAFailureWhateverTheDriverSaysToIt) {
    CLProtocol::SetPatience({30000, 5});
    CCLPort port;
    Connect(port);
    driver.onWrite = [](ISerial*, std::int64_t, const char*, std::int64_t, std::uint32_t) { return 20101; };
    std::int32_t answer = 0;
    driver.onContinueWrite = [&](bool continueWaiting) { return continueWaiting ? 20101 : answer; };
    for (answer = 0; answer <= 5; answer += 5)
        EXPECT_THROW(port.Write("x", 0, 1), GenICam::TimeoutException);
    answer = -30007;
    EXPECT_EQ(CodeOf([&] { port.Write("x", 0, 1); }), -30007);
}

TEST_F(Port, HandsOutItsSerialLine) {
    serial.supportedRates = 0x1b;
    CCLPort port;
    Connect(port);
    ISerial* const line = port.GetSerial();
    ASSERT_NE(line, nullptr);
    std::uint32_t mask = 0;
    EXPECT_EQ(line->clGetSupportedBaudRates(&mask), 0);
    EXPECT_EQ(mask, 0x1bu);
    EXPECT_EQ(line->clSetBaudRate(8), 0);
    EXPECT_EQ(serial.Port(0).rate, 8u);
    serial.ports[0].input = "abc";
    char bytes[3];
    std::uint32_t size = 3;
    EXPECT_EQ(line->clSerialRead(bytes, &size, 1000), 0);
    EXPECT_EQ(std::string(bytes, size), "abc");
    EXPECT_EQ(line->clSerialWrite(bytes, &size, 1000), 0);
    serial.onGetSupportedBaudRates = [](std::uint32_t*) { return -10006; };
    EXPECT_EQ(line->clGetSupportedBaudRates(&mask), -10006);
    EXPECT_EQ(line->clGetSupportedBaudRates(nullptr), -10011);
    port.Disconnect();
    EXPECT_LT(line->clGetSupportedBaudRates(&mask), 0);
}

}  // namespace
