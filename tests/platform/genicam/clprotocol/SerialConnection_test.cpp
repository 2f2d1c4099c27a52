/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the open serial port, with libraries of every temper
 */

#include "SerialConnection.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>

#include "CLProtocol/CLException.h"
#include "scripted/Scripted.h"

namespace {

using CLProtocol::SerialConnection;
using CLProtocol::SerialLibrary;
using scripted::PortScript;

class Connection : public testing::Test {
protected:
    static std::int32_t Read(SerialConnection& connection, std::uint32_t size, std::uint32_t timeoutMs,
                             std::string* text = nullptr) {
        std::string buffer(size, '?');
        const std::int32_t result = connection.clSerialRead(buffer.data(), &size, timeoutMs);
        if (text != nullptr)
            *text = buffer.substr(0, size);
        return result;
    }

    static std::string ReadText(SerialConnection& connection, std::uint32_t size, std::uint32_t timeoutMs = 5000) {
        std::string text;
        EXPECT_EQ(Read(connection, size, timeoutMs, &text), 0);
        return text;
    }

    static std::int32_t Write(SerialConnection& connection, std::string text, std::uint32_t timeoutMs,
                              std::uint32_t* written) {
        *written = static_cast<std::uint32_t>(text.size());
        return connection.clSerialWrite(text.data(), written, timeoutMs);
    }

    scripted::Environment environment;
    scripted::SerialScript& script = scripted::Serial();
    std::shared_ptr<const SerialLibrary> library = std::make_shared<const SerialLibrary>(scripted::SerialPath());
};

TEST_F(Connection, OpensAt9600AndClosesAgain) {
    {
        const auto connection = std::make_unique<SerialConnection>(library, 0, "id");
        EXPECT_TRUE(script.Port(0).isOpen);
        EXPECT_EQ(script.Port(0).rates, (std::vector<std::uint32_t>{CL_BAUDRATE_9600}));
    }
    EXPECT_FALSE(script.Port(0).isOpen);
    EXPECT_EQ(script.Port(0).closed, 1);
}

TEST_F(Connection, ReportsAPortInUseWithTheLibrarysText) {
    script.errorTexts[-10003] = "held by process 17";
    const SerialConnection first(library, 0, "Scripted#Port0");
    try {
        const SerialConnection second(library, 0, "Scripted#Port0");
        FAIL();
    } catch (const CLProtocol::CLErrException& error) {
        EXPECT_EQ(error.GetErrorCode(), -10003);
        EXPECT_EQ(std::string(error.GetDescription()),
                  "Could not open port 'Scripted#Port0': function 'clSerialInit' of '" + scripted::SerialPath() +
                      "' failed: held by process 17 (-10003)");
    }
}

TEST_F(Connection, KeepsTheRateOfAPortThatLacks9600) {
    script.supportedRates = CL_BAUDRATE_115200;
    SerialConnection connection(library, 0, "id");
    EXPECT_TRUE(script.Port(0).rates.empty());
    EXPECT_EQ(connection.clSetBaudRate(CL_BAUDRATE_115200), 0);
}

TEST_F(Connection, ClosesAPortWhoseRateCannotBeSet) {
    script.onSetBaudRate = [](PortScript&, std::uint32_t) { return -10006; };
    EXPECT_THROW(SerialConnection(library, 0, "id"), CLProtocol::CLErrException);
    EXPECT_EQ(script.Port(0).closed, 1);
    script.onSetBaudRate = [](PortScript&, std::uint32_t) -> std::int32_t { throw std::runtime_error("no"); };
    EXPECT_THROW(SerialConnection(library, 0, "id"), GenICam::RuntimeException);
    EXPECT_EQ(script.Port(0).closed, 2);
}

TEST_F(Connection, ReadsAndWrites) {
    SerialConnection connection(library, 0, "id");
    script.ports[0].input = "answer";
    EXPECT_EQ(ReadText(connection, 4), "answ");
    EXPECT_EQ(ReadText(connection, 2), "er");
    EXPECT_EQ(ReadText(connection, 0), "");
    std::uint32_t written = 0;
    EXPECT_EQ(Write(connection, "hello", 100, &written), 0);
    EXPECT_EQ(written, 5u);
    EXPECT_EQ(script.Port(0).output, "hello");
}

TEST_F(Connection, CopiesNothingOnATimeOut) {
    SerialConnection connection(library, 0, "id");
    script.ports[0].input = "abc";
    char buffer[4] = {'?', '?', '?', '?'};
    std::uint32_t size = 4;
    EXPECT_EQ(connection.clSerialRead(buffer, &size, 10), -10004);
    EXPECT_EQ(size, 4u);  // for those who ask again with the same variable
    EXPECT_EQ(std::string(buffer, 4), "????");
    EXPECT_EQ(ReadText(connection, 3), "abc");
}

TEST_F(Connection, WaitsItselfWhereALibraryReportsSuccessWithNothing) {
    int calls = 0;
    script.onRead = [&](PortScript&, char* buffer, std::uint32_t* size, std::uint32_t) {
        const bool isReady = ++calls == 5;
        if (isReady)
            std::memset(buffer, 'x', *size);
        else
            *size = 0;
        return 0;
    };
    SerialConnection connection(library, 0, "id");
    EXPECT_EQ(ReadText(connection, 3), "xxx");
    EXPECT_EQ(calls, 5);
}

TEST_F(Connection, EndsAReadInTimeWhereALibraryReportsSuccessWithNothing) {
    script.onRead = [](PortScript&, char*, std::uint32_t* size, std::uint32_t) {
        *size = 0;
        return 0;
    };
    SerialConnection connection(library, 0, "id");
    EXPECT_EQ(Read(connection, 3, 20), -10004);
}

TEST_F(Connection, PausesBetweenReadsThatGiveNothing) {
    int calls = 0;
    script.onRead = [&](PortScript&, char*, std::uint32_t* size, std::uint32_t) {
        ++calls;
        *size = 0;
        return 0;
    };
    SerialConnection connection(library, 0, "id");
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(Read(connection, 3, 30), -10004);
    const auto elapsed = std::chrono::steady_clock::now() - begin;
    EXPECT_LE(calls, elapsed / std::chrono::milliseconds(1) + 1);
}

TEST_F(Connection, WaitsItselfWhereALibraryTimesOutTooEarly) {
    int calls = 0;
    script.onRead = [&](PortScript&, char* buffer, std::uint32_t* size, std::uint32_t) {
        if (++calls < 4)
            return -10004;
        std::memset(buffer, 'x', *size);
        return 0;
    };
    SerialConnection connection(library, 0, "id");
    EXPECT_EQ(ReadText(connection, 2), "xx");
}

TEST_F(Connection, CollectsPartsOfAnAnswer) {
    std::string line = "abcdef";
    script.onRead = [&](PortScript&, char* buffer, std::uint32_t* size, std::uint32_t) {
        *size = line.empty() ? 0 : 1;
        if (*size == 1)
            *buffer = line.front();
        line.erase(0, 1);
        return 0;
    };
    SerialConnection connection(library, 0, "id");
    EXPECT_EQ(ReadText(connection, 4), "abcd");
    // What came in before a time-out is there for the next read.
    EXPECT_EQ(Read(connection, 3, 20), -10004);
    EXPECT_EQ(ReadText(connection, 2), "ef");
}

TEST_F(Connection, BelievesNoCountBeyondWhatItAskedFor) {
    script.onRead = [](PortScript&, char* buffer, std::uint32_t* size, std::uint32_t) {
        std::memset(buffer, 'x', *size + 100);
        *size = 0xffffffff;
        return 0;
    };
    SerialConnection connection(library, 0, "id");
    EXPECT_EQ(ReadText(connection, 3), "xxx");
    EXPECT_EQ(ReadText(connection, 2), "xx");
}

TEST_F(Connection, ReadsMoreThanOnePiece) {
    SerialConnection connection(library, 0, "id");
    std::string text;
    for (int i = 0; text.size() < 200000; ++i)
        text += std::to_string(i);
    script.ports[0].input = text;
    EXPECT_EQ(ReadText(connection, static_cast<std::uint32_t>(text.size())), text);
}

TEST_F(Connection, PassesOnErrorsOfReading) {
    script.onRead = [](PortScript&, char*, std::uint32_t*, std::uint32_t) { return -10006; };
    SerialConnection connection(library, 0, "id");
    EXPECT_EQ(Read(connection, 3, 1000), -10006);
}

TEST_F(Connection, ContinuesIncompleteWrites) {
    std::uint32_t calls = 0;
    std::string line;
    script.onWrite = [&](PortScript&, char* buffer, std::uint32_t* size, std::uint32_t) {
        *size = calls++ % 2;  // nothing, one byte, nothing, ...
        line.append(buffer, *size);
        return 0;
    };
    SerialConnection connection(library, 0, "id");
    std::uint32_t written = 0;
    EXPECT_EQ(Write(connection, "hello", 5000, &written), 0);
    EXPECT_EQ(written, 5u);
    EXPECT_EQ(line, "hello");
}

TEST_F(Connection, EndsAWriteInTimeAndTellsHowFarItCame) {
    int calls = 0;
    script.onWrite = [&](PortScript&, char*, std::uint32_t* size, std::uint32_t) {
        *size = ++calls == 1 ? 2 : 0;
        return 0;
    };
    SerialConnection connection(library, 0, "id");
    std::uint32_t written = 0;
    EXPECT_EQ(Write(connection, "hello", 20, &written), -10004);
    EXPECT_EQ(written, 2u);
}

TEST_F(Connection, GoesOnBehindWhatALibraryTookBeforeItTimedOut) {
    std::string line;
    script.onWrite = [&](PortScript&, char* buffer, std::uint32_t* size, std::uint32_t) {
        const bool isAll = *size <= 2;
        *size = std::min(*size, 2u);
        line.append(buffer, *size);
        return isAll ? 0 : -10004;
    };
    SerialConnection connection(library, 0, "id");
    std::uint32_t written = 0;
    EXPECT_EQ(Write(connection, "hello", 5000, &written), 0);
    EXPECT_EQ(written, 5u);
    EXPECT_EQ(line, "hello");
}

TEST_F(Connection, TellsWhatALibraryTookBeforeItTimedOutAtTheDeadline) {
    bool hasTaken = false;
    script.onWrite = [&](PortScript&, char*, std::uint32_t* size, std::uint32_t) {
        *size = std::exchange(hasTaken, true) ? 0 : 3;
        return -10004;
    };
    SerialConnection connection(library, 0, "id");
    std::uint32_t written = 0;
    EXPECT_EQ(Write(connection, "hello", 20, &written), -10004);
    EXPECT_EQ(written, 3u);
}

TEST_F(Connection, BelievesNoWriteBeyondWhatItGave) {
    script.onWrite = [](PortScript&, char*, std::uint32_t* size, std::uint32_t) {
        *size = 0xffffffff;
        return 0;
    };
    SerialConnection connection(library, 0, "id");
    std::uint32_t written = 0;
    EXPECT_EQ(Write(connection, "hello", 20, &written), 0);
    EXPECT_EQ(written, 5u);
}

TEST_F(Connection, PassesOnErrorsOfWriting) {
    script.onWrite = [](PortScript&, char*, std::uint32_t*, std::uint32_t) { return -10004; };
    SerialConnection connection(library, 0, "id");
    std::uint32_t written = 0;
    EXPECT_EQ(Write(connection, "hello", 1000, &written), -10004);
    EXPECT_EQ(written, 0u);
}

TEST_F(Connection, TurnsExceptionsIntoACodeAndKeepsTheirText) {
    script.onRead = [](PortScript&, char*, std::uint32_t*, std::uint32_t) -> std::int32_t {
        throw std::runtime_error("reason");
    };
    script.onWrite = [](PortScript&, char*, std::uint32_t*, std::uint32_t) -> std::int32_t { throw 1; };
    SerialConnection connection(library, 0, "id");
    EXPECT_EQ(connection.TakeCause(), "");
    EXPECT_EQ(Read(connection, 3, 1000), -10006);
    EXPECT_EQ(connection.TakeCause(),
              "Function 'clSerialRead' of '" + scripted::SerialPath() + "' threw an exception: reason");
    std::uint32_t written = 0;
    EXPECT_EQ(Write(connection, "hello", 1000, &written), -10006);
}

TEST_F(Connection, StandsACloseThatThrows) {
    script.onClose = [](PortScript&) { throw std::runtime_error("reason"); };
    { const SerialConnection connection(library, 0, "id"); }
    script.onClose = nullptr;
    EXPECT_EQ(script.Port(0).closed, 0);
}

TEST_F(Connection, RefusesNullPointers) {
    SerialConnection connection(library, 0, "id");
    std::uint32_t size = 1;
    char byte = 0;
    EXPECT_EQ(connection.clSerialRead(nullptr, &size, 0), -10011);
    EXPECT_EQ(connection.clSerialRead(&byte, nullptr, 0), -10011);
    EXPECT_EQ(connection.clSerialWrite(nullptr, &size, 0), -10011);
    EXPECT_EQ(connection.clSerialWrite(&byte, nullptr, 0), -10011);
    EXPECT_EQ(connection.clGetSupportedBaudRates(nullptr), -10011);
}

TEST_F(Connection, PassesOnBaudRates) {
    script.supportedRates = 0x13;
    SerialConnection connection(library, 0, "id");
    std::uint32_t mask = 0;
    EXPECT_EQ(connection.clGetSupportedBaudRates(&mask), 0);
    EXPECT_EQ(mask, 0x13u);
    EXPECT_EQ(connection.clSetBaudRate(CL_BAUDRATE_115200), 0);
    EXPECT_EQ(script.Port(0).rate, 0x10u);
    EXPECT_EQ(connection.clSetBaudRate(CL_BAUDRATE_921600), -10008);
}

TEST_F(Connection, LeavesOutRatesThatAPortClaimsAndRefuses) {
    script.onSetBaudRate = [](PortScript& port, std::uint32_t flag) {
        return flag >= CL_BAUDRATE_460800 && port.name == "Port0" ? -10008 : 0;
    };
    std::uint32_t mask = 0;
    {
        SerialConnection connection(library, 0, "id");
        EXPECT_EQ(connection.clSetBaudRate(CL_BAUDRATE_921600), -10008);
        EXPECT_EQ(connection.clGetSupportedBaudRates(&mask), 0);
        EXPECT_EQ(mask, 0x7fu);
    }
    SerialConnection again(library, 0, "id");
    EXPECT_EQ(again.clGetSupportedBaudRates(&mask), 0);
    EXPECT_EQ(mask, 0x7fu);
    EXPECT_EQ(again.clSetBaudRate(CL_BAUDRATE_460800), -10008);
    EXPECT_EQ(again.clGetSupportedBaudRates(&mask), 0);
    EXPECT_EQ(mask, 0x3fu);
    script.SetPorts(2, {});
    SerialConnection other(library, 1, "id");
    EXPECT_EQ(other.clGetSupportedBaudRates(&mask), 0);
    EXPECT_EQ(mask, 0xffu);
}

TEST_F(Connection, ForgetsWhatCameAtAnotherRate) {
    SerialConnection connection(library, 0, "id");
    bool isFirst = true;
    script.onRead = [&](PortScript&, char* buffer, std::uint32_t* size, std::uint32_t) {
        *size = isFirst ? 1 : 0;
        isFirst = false;
        *buffer = 'x';
        return 0;
    };
    EXPECT_EQ(Read(connection, 2, 10), -10004);
    EXPECT_EQ(connection.clSetBaudRate(CL_BAUDRATE_19200), 0);
    EXPECT_EQ(Read(connection, 1, 10), -10004);
}

}  // namespace
