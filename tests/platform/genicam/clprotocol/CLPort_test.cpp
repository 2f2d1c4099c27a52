/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of CCLPort
 */

#include "CLProtocol/CLPort.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <future>
#include <thread>

#include "CLProtocol/DeviceID.h"
#include "CLProtocol/Diagnostics.h"
#include "CLProtocol/Log.h"
#include "scripted/Scripted.h"

namespace {

using CLProtocol::CCLPort;
using CLProtocol::CLErrException;
using CLProtocol::ISerial;

constexpr char kPort[] = "Scripted#Port0";
constexpr char kCamera[] = "Marlow#Heron#H2048#1";

class Port : public testing::Test {
public:
    Port() { serial.SetPorts(2, {kCamera, "Marlow#Heron#H4096#2"}); }
    ~Port() override { CLProtocol::SetPatience({}); }

protected:
    static GenICam::gcstring Probe(const std::string& text = "Marlow", std::uint32_t timeoutMs = 100) {
        return CCLPort::ProbeDevice(kPort, scripted::FullDeviceId(text), timeoutMs);
    }

    static void Connect(CCLPort& port, const std::string& deviceId = kCamera) {
        port.Connect(kPort, scripted::FullDeviceId(deviceId));
    }

    template <class Operation>
    static std::int32_t CodeOf(Operation operation) {
        try {
            operation();
        } catch (const CLErrException& error) {
            return error.GetErrorCode();
        }
        return 0;
    }

    template <class Operation>
    static std::string TextOf(Operation operation) {
        try {
            operation();
        } catch (const GenICam::GenericException& error) {
            return error.GetDescription();
        }
        return {};
    }

    static std::string ReadBytes(CCLPort& port, std::int64_t address, std::size_t length) {
        std::string bytes(length, '?');
        port.Read(bytes.data(), address, static_cast<std::int64_t>(length));
        return bytes;
    }

    scripted::Environment environment;
    scripted::SerialScript& serial = scripted::Serial();
    scripted::DriverScript& driver = scripted::Driver();
};

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

TEST_F(Port, ConnectsAndDisconnects) {
    CCLPort port;
    EXPECT_FALSE(port.IsConnected());
    EXPECT_EQ(port.GetAccessMode(), GenApi::NA);
    EXPECT_EQ(port.GetSerial(), nullptr);
    EXPECT_EQ(port.GetDeviceID(), "");
    Connect(port);
    EXPECT_TRUE(port.IsConnected());
    EXPECT_EQ(port.GetAccessMode(), GenApi::RW);
    EXPECT_EQ(port.GetDeviceID(), scripted::FullDeviceId(kCamera));
    EXPECT_EQ(driver.probedFor, kCamera);
    EXPECT_EQ(driver.lastTimeout, 500u);
    port.Disconnect();
    EXPECT_FALSE(port.IsConnected());
    EXPECT_FALSE(serial.Port(0).isOpen);
    EXPECT_EQ(driver.CountConnections(), 0u);
    port.Disconnect();
    Connect(port);
    EXPECT_TRUE(port.IsConnected());
}

TEST_F(Port, ConnectsOnce) {
    CCLPort port;
    Connect(port);
    EXPECT_THROW(Connect(port), GenICam::LogicalErrorException);
    EXPECT_TRUE(port.IsConnected());
    EXPECT_EQ(driver.CountConnections(), 1u);
}

TEST_F(Port, FreesAllWhenDestroyed) {
    {
        CCLPort port;
        Connect(port);
    }
    EXPECT_FALSE(serial.Port(0).isOpen);
    EXPECT_EQ(driver.CountConnections(), 0u);
}

TEST_F(Port, ConnectsByATemplate) {
    CCLPort port;
    Connect(port, "Marlow");
    EXPECT_EQ(port.GetDeviceID(), scripted::FullDeviceId(kCamera));
}

TEST_F(Port, RefusesAnotherCamera) {
    CCLPort port;
    EXPECT_EQ(CodeOf([&] { Connect(port, "Marlow#Heron#H2048#2"); }), -20101);
    driver.onProbe = [](ISerial*, const char*, char* id, std::uint32_t* size, std::uint32_t* cookie, std::uint32_t) {
        std::memcpy(id, kCamera, sizeof kCamera);
        *size = sizeof kCamera;
        *cookie = 0xfffffffe;
        return 0;
    };
    EXPECT_EQ(CodeOf([&] { Connect(port, "Marlow#Heron#H2048#2"); }), -20101);
    EXPECT_FALSE(port.IsConnected());
    EXPECT_FALSE(serial.Port(0).isOpen);
}

TEST_F(Port, ConnectsWhereOnlyOneSideNamesTheVersion) {
    serial.SetCamera(0, "Marlow#Heron#H2048#V2#1");
    driver.onProbe = [](ISerial*, const char*, char* id, std::uint32_t* size, std::uint32_t* cookie, std::uint32_t) {
        constexpr char kWithVersion[] = "Marlow#Heron#H2048#V2#1";
        std::memcpy(id, kWithVersion, sizeof kWithVersion);
        *size = sizeof kWithVersion;
        *cookie = 0xfffffffe;
        return 0;
    };
    driver.cookies[0xfffffffe] = "";
    CCLPort port;
    Connect(port);
    EXPECT_EQ(port.GetDeviceID(), scripted::FullDeviceId("Marlow#Heron#H2048#V2#1"));
}

TEST_F(Port, DisconnectsNothingAfterAProbeThatFailed) {
    driver.onProbe = [](ISerial*, const char*, char*, std::uint32_t*, std::uint32_t* cookie, std::uint32_t) {
        *cookie = 4711;
        return -10004;
    };
    CCLPort port;
    EXPECT_THROW(Connect(port), GenICam::GenericException);
    EXPECT_EQ(driver.CountCalls("clpProbeDevice"), 1u);
    EXPECT_EQ(driver.CountCalls("clpDisconnect"), 0u);
}

// A driver that answers with driver's folder and file name in front, as hosts write DeviceIDs.
void AnswerInFull(scripted::DriverScript& driver, const std::string& deviceId) {
    driver.cookies[0xfffffffe] = "";
    driver.onProbe = [deviceId](ISerial*, const char*, char* id, std::uint32_t* size, std::uint32_t* cookie,
                                std::uint32_t) {
        *size = static_cast<std::uint32_t>(deviceId.size() + 1);
        std::memcpy(id, deviceId.c_str(), *size);
        *cookie = 0xfffffffe;
        return 0;
    };
}

TEST_F(Port, TakesAFullDeviceIdOfADriver) {
    AnswerInFull(driver, "/elsewhere#libOther.so#Marlow#Heron#H2048#V2#1");
    EXPECT_EQ(Probe(), scripted::FullDeviceId("Marlow#Heron#H2048#V2#1"));
    AnswerInFull(driver, "/elsewhere#libOther.so#Marlow#Heron#H2048#V2#1");
    CCLPort port;
    Connect(port, "Marlow#Heron#H2048#V2#1");
    EXPECT_EQ(port.GetDeviceID(), scripted::FullDeviceId("Marlow#Heron#H2048#V2#1"));
    EXPECT_EQ(driver.CountConnections(), 1u);
}

TEST_F(Port, KeepsSerialNumbersThatAreNoNames) {
    for (const std::string serialNumber : {"17-A/3", "4711.so", "%s 1", "\xc3\xa4", "0x1;:@$(PATH)"}) {
        const std::string camera = "Marlow#Heron#H2048#1.0.3-rc#" + serialNumber;
        serial.SetCamera(0, camera);
        ASSERT_EQ(Probe(), scripted::FullDeviceId(camera));
        CCLPort port;
        port.Connect(kPort, Probe());
        EXPECT_EQ(driver.probedFor, camera);
        EXPECT_EQ(port.GetDeviceID(), scripted::FullDeviceId(camera));
        EXPECT_EQ(CLProtocol::CDeviceID(port.GetDeviceID()).GetCameraSerialNumber(), serialNumber);
    }
}

TEST_F(Port, ConnectsThroughALocationThatNamesTheSystemsFolder) {
    const std::string folder = scripted::DriverLocation() + "/" + scripted::SystemFolder();
    const std::string full = folder + "#" + scripted::DriverFileName() + "#" + kCamera;
    CCLPort port;
    port.Connect(kPort, full);
    EXPECT_EQ(port.GetDeviceID(), full);
}

TEST_F(Port, IsNotConnectedAfterAFailure) {
    serial.SetCamera(0, "");
    CCLPort port;
    EXPECT_EQ(CodeOf([&] { Connect(port); }), -10004);
    EXPECT_FALSE(port.IsConnected());
    EXPECT_FALSE(serial.Port(0).isOpen);
    serial.SetCamera(0, kCamera);
    Connect(port);
    EXPECT_TRUE(port.IsConnected());
}

TEST_F(Port, PassesOnThatAPortIsInUse) {
    CCLPort first;
    Connect(first);
    serial.errorTexts[-10003] = "held by process 17";
    EXPECT_EQ(CodeOf([] { Probe(); }), -10003);
    EXPECT_NE(TextOf([] { Probe(); }).find("held by process 17 (-10003)"), std::string::npos);
    EXPECT_EQ(CCLPort::ProbeDevice("Scripted#Port1", scripted::FullDeviceId("Marlow"), 100),
              scripted::FullDeviceId("Marlow#Heron#H4096#2"));
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

TEST_F(Port, ThrowsFromItsDestructorAndFreesAll) {
    driver.onDisconnect = [](std::uint32_t) { return -30003; };
    auto port = std::make_unique<CCLPort>();
    Connect(*port);
    EXPECT_EQ(CodeOf([&] { delete port.release(); }), -30003);
    EXPECT_FALSE(serial.Port(0).isOpen);
    CCLPort other;
    Connect(other);
    driver.onDisconnect = [](std::uint32_t) -> std::int32_t { throw 1; };
    EXPECT_THROW(other.Disconnect(), GenICam::RuntimeException);
    EXPECT_FALSE(other.IsConnected());
    EXPECT_FALSE(serial.Port(0).isOpen);
}

TEST_F(Port, DoesNotThrowFromItsDestructorDuringAnotherException) {
    driver.onDisconnect = [](std::uint32_t) { return -30003; };
    EXPECT_THROW(
        {
            CCLPort port;
            Connect(port);
            throw std::runtime_error("first");
        },
        std::runtime_error);
    EXPECT_FALSE(serial.Port(0).isOpen);
}

TEST_F(Port, FailedDisconnectAfterAProbeIsNoFailure) {
    driver.onDisconnect = [](std::uint32_t) { return -30003; };
    EXPECT_EQ(Probe(), scripted::FullDeviceId(kCamera));
    EXPECT_FALSE(serial.Port(0).isOpen);
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

TEST_F(Port, GivesUpOnALineThatHangs) {
    const auto latch = std::make_shared<std::promise<void>>();
    serial.onSetBaudRate = [opened = latch->get_future().share()](scripted::PortScript&, std::uint32_t rate) {
        if (rate != 1)
            opened.wait();
        return 0;
    };
    {
        CCLPort port;
        Connect(port);
        CLProtocol::SetPatience({50, 1000});
        EXPECT_EQ(port.GetSerial()->clSetBaudRate(8), -10004);
        EXPECT_EQ(CodeOf([&] { port.Disconnect(); }), -10004);
    }
    CLProtocol::SetPatience({});
    latch->set_value();
    while (serial.Port(0).closed == 0)
        std::this_thread::yield();
}

TEST_F(Port, GivesUpOnADriverThatHangsAndNoOtherPortIsAffected) {
    const auto latch = std::make_shared<std::promise<void>>();
    driver.onRead = [opened = latch->get_future().share()](ISerial*, std::int64_t, char*, std::int64_t, std::uint32_t) {
        opened.wait();
        return 0;
    };
    CCLPort other;
    other.Connect("Scripted#Port1", scripted::FullDeviceId("Marlow#Heron#H4096#2"));
    {
        CLProtocol::SetPatience({50, 1000});
        CCLPort port;
        port.SetSerialTimeOut(10);
        Connect(port);
        const std::string expected =
            "Function 'clpReadRegister' of '" + scripted::DriverPath() + "' does not return (-10004)";
        EXPECT_EQ(TextOf([&] { ReadBytes(port, 0, 1); }), expected);
        EXPECT_EQ(TextOf([&] { port.Write("x", 0, 1); }), expected);
        EXPECT_EQ(TextOf([&] { port.Disconnect(); }), expected);
        CLProtocol::SetPatience({});
        other.Write("x", 0, 1);
        EXPECT_EQ(CodeOf([] { Probe(); }), -10003);
    }
    latch->set_value();
    while (serial.Port(0).isOpen)
        std::this_thread::yield();
    EXPECT_EQ(driver.CountConnections(), 1u);
    EXPECT_EQ(Probe(), scripted::FullDeviceId(kCamera));
}

TEST_F(Port, GivesUpOnASerialLibraryThatHangs) {
    const auto latch = std::make_shared<std::promise<void>>();
    serial.onInit = [opened = latch->get_future().share()](std::uint32_t index, hSerRef*) {
        if (index == 0)
            opened.wait();
        return 0;
    };
    CLProtocol::SetPatience({50, 1000});
    EXPECT_EQ(TextOf([] { Probe("Marlow", 10); }),
              "Function 'clSerialInit' of '" + scripted::SerialPath() + "' does not return (-10004)");
    CLProtocol::SetPatience({});
    EXPECT_EQ(CCLPort::ProbeDevice("Scripted#Port1", scripted::FullDeviceId("Marlow"), 100),
              scripted::FullDeviceId("Marlow#Heron#H4096#2"));
    latch->set_value();
    while (serial.Port(0).closed == 0)
        std::this_thread::yield();
}

TEST_F(Port, StandsManyThreads) {
    CCLPort port;
    std::vector<std::thread> threads;
    std::atomic<int> accesses{0};
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&, i] {
            for (int turn = 0; turn < 50; ++turn) {
                try {
                    char byte = 0;
                    if (i == 0 && turn % 10 == 0)
                        port.Disconnect();
                    else if (i == 0)
                        Connect(port);
                    else if (i == 1)
                        port.Write(&byte, turn, 1);
                    else
                        port.Read(&byte, turn, 1);
                    ++accesses;
                    if (ISerial* const line = port.GetSerial()) {
                        std::uint32_t mask = 0;
                        line->clGetSupportedBaudRates(&mask);
                    }
                    port.GetDeviceID();
                } catch (const GenICam::GenericException&) {
                    // not connected, or connected already
                }
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    port.Disconnect();
    EXPECT_GT(accesses, 0);
    EXPECT_EQ(driver.CountConnections(), 0u);
}

TEST_F(Port, ProbesManyPortsAtOnce) {
    serial.SetPorts(8, std::vector<std::string>(8, kCamera));
    std::vector<std::thread> threads;
    std::atomic<int> found{0};
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&, i] {
            const std::string id = "Scripted#Port" + std::to_string(i);
            found += CCLPort::ProbeDevice(id, scripted::FullDeviceId("Marlow"), 100).empty() ? 0 : 1;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(found, 8);
}

}  // namespace
