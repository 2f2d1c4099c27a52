/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The functions of the built library, against serial lines
 */

#include <gmock/gmock.h>

#include <chrono>
#include <thread>
#include <vector>

#include "Fixture.h"

namespace ClSerTtyTest {
namespace {

using testing::HasSubstr;

TEST_F(ClSerTtyTest, NamesItsMakerAndVersion) {
    char name[64] = {};
    std::uint32_t size = sizeof(name);
    std::uint32_t version = 0;
    EXPECT_EQ(m_library.GetManufacturerInfo(name, &size, &version), CL_ERR_NO_ERR);
    EXPECT_STREQ(name, "COM_Port");
    EXPECT_EQ(size, 9U);
    EXPECT_EQ(version, static_cast<std::uint32_t>(CL_DLL_VERSION_2_1));
}

TEST_F(ClSerTtyTest, TooSmallABufferGivesTheSizeNeeded) {
    char name[8] = "before";
    std::uint32_t size = sizeof(name);
    std::uint32_t version = 0;
    EXPECT_EQ(m_library.GetManufacturerInfo(name, &size, &version), CL_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(size, 9U);
    EXPECT_STREQ(name, "before");
}

TEST_F(ClSerTtyTest, NullPointersAreRefused) {
    std::uint32_t number = 100;
    std::uint32_t version = 0;
    char text[100];
    const hSerRef ref = Open();
    EXPECT_EQ(m_library.GetManufacturerInfo(nullptr, &number, &version), CL_ERR_INVALID_PTR);
    EXPECT_EQ(m_library.GetManufacturerInfo(text, nullptr, &version), CL_ERR_INVALID_PTR);
    EXPECT_EQ(m_library.GetManufacturerInfo(text, &number, nullptr), CL_ERR_INVALID_PTR);
    EXPECT_EQ(m_library.GetNumSerialPorts(nullptr), CL_ERR_INVALID_PTR);
    EXPECT_EQ(m_library.GetSerialPortIdentifier(0, text, nullptr), CL_ERR_INVALID_PTR);
    EXPECT_EQ(m_library.SerialInit(0, nullptr), CL_ERR_INVALID_PTR);
    EXPECT_EQ(m_library.SerialRead(ref, text, nullptr, 0), CL_ERR_INVALID_PTR);
    EXPECT_EQ(m_library.SerialWrite(ref, text, nullptr, 0), CL_ERR_INVALID_PTR);
    number = 1;
    EXPECT_EQ(m_library.SerialRead(ref, nullptr, &number, 0), CL_ERR_INVALID_PTR);
    number = 1;
    EXPECT_EQ(m_library.SerialWrite(ref, nullptr, &number, 0), CL_ERR_INVALID_PTR);
    EXPECT_EQ(m_library.GetNumBytesAvail(ref, nullptr), CL_ERR_INVALID_PTR);
    EXPECT_EQ(m_library.GetSupportedBaudRates(ref, nullptr), CL_ERR_INVALID_PTR);
    EXPECT_EQ(m_library.GetErrorText(CL_ERR_TIMEOUT, text, nullptr), CL_ERR_INVALID_PTR);
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyTest, ReferencesAreNumbersItKnowsNotPointers) {
    const hSerRef open = Open();
    int variable = 0;
    for (hSerRef ref :
         {hSerRef{nullptr}, static_cast<hSerRef>(&variable), reinterpret_cast<hSerRef>(~std::uintptr_t{0}),
          static_cast<hSerRef>(static_cast<char*>(open) + 1)}) {
        std::string bytes(1, ' ');
        std::uint32_t number = 0;
        EXPECT_EQ(Read(ref, bytes, 0), CL_ERR_INVALID_REFERENCE);
        EXPECT_EQ(Write(ref, "x", 0), CL_ERR_INVALID_REFERENCE);
        EXPECT_EQ(m_library.GetNumBytesAvail(ref, &number), CL_ERR_INVALID_REFERENCE);
        EXPECT_EQ(m_library.FlushPort(ref), CL_ERR_INVALID_REFERENCE);
        EXPECT_EQ(m_library.GetSupportedBaudRates(ref, &number), CL_ERR_INVALID_REFERENCE);
        EXPECT_EQ(m_library.SetBaudRate(ref, CL_BAUDRATE_9600), CL_ERR_INVALID_REFERENCE);
        m_library.SerialClose(ref);
    }
    EXPECT_EQ(Write(open, "x"), CL_ERR_NO_ERR);
    m_library.SerialClose(open);
    EXPECT_EQ(Write(open, "x"), CL_ERR_INVALID_REFERENCE);
}

TEST_F(ClSerTtyTest, AnIndexBehindTheLastIsRefused) {
    hSerRef ref = &ref;
    EXPECT_EQ(m_library.SerialInit(10000, &ref), CL_ERR_INVALID_INDEX);
    EXPECT_EQ(ref, nullptr);
    std::uint32_t size = 0;
    EXPECT_EQ(m_library.GetSerialPortIdentifier(10000, nullptr, &size), CL_ERR_INVALID_INDEX);
    EXPECT_THAT(m_library.TextOf(CL_ERR_INVALID_INDEX), HasSubstr("10000"));
}

TEST_F(ClSerTtyTest, AnotherThreadsCountDoesNotMoveMyIndices) {
    const std::uint32_t index = m_library.IndexOf("cam0");
    std::thread([&] {
        const SerialEnd other(Link("cam"));
        EXPECT_EQ(m_library.IndexOf("cam0"), index + 1);
    }).join();
    char name[64] = {};
    std::uint32_t size = sizeof(name);
    EXPECT_EQ(m_library.GetSerialPortIdentifier(index, name, &size), CL_ERR_NO_ERR);
    EXPECT_STREQ(name, "cam0");
}

TEST_F(ClSerTtyTest, AThreadThatDidNotCountUsesTheLastCount) {
    const std::uint32_t index = m_library.IndexOf("cam0");
    std::thread([&] {
        hSerRef ref = nullptr;
        EXPECT_EQ(m_library.SerialInit(index, &ref), CL_ERR_NO_ERR);
        m_library.SerialClose(ref);
    }).join();
}

TEST_F(ClSerTtyTest, PassesAllByteValuesBothWays) {
    std::string all;
    for (int value = 0; value < 256; ++value)
        all.push_back(static_cast<char>(value));
    const hSerRef ref = Open();
    EXPECT_EQ(Write(ref, all), CL_ERR_NO_ERR);
    EXPECT_EQ(m_end->Receive(256), all);
    m_end->Send(all);
    std::string read(256, ' ');
    EXPECT_EQ(Read(ref, read), CL_ERR_NO_ERR);
    EXPECT_EQ(read, all);
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyTest, ReadsMoreThanTheSystemsBufferHolds) {
    const hSerRef ref = Open();
    const std::string sent(100000, 'y');
    std::thread sender([&] {
        for (std::size_t at = 0; at < sent.size(); at += 1000) {
            m_end->Send(sent.substr(at, 1000));
            while (!m_end->IsRead())
                std::this_thread::yield();
        }
    });
    std::string read(sent.size(), ' ');
    EXPECT_EQ(Read(ref, read), CL_ERR_NO_ERR);
    EXPECT_EQ(read, sent);
    sender.join();
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyTest, AReadThatTimesOutLosesNothing) {
    const hSerRef ref = Open();
    m_end->Send("abc");
    std::string four = "....";
    EXPECT_EQ(Read(ref, four, 20), CL_ERR_TIMEOUT);
    EXPECT_EQ(four, "....");
    std::uint32_t available = 0;
    EXPECT_EQ(m_library.GetNumBytesAvail(ref, &available), CL_ERR_NO_ERR);
    EXPECT_EQ(available, 3U);
    m_end->Send("d");
    EXPECT_EQ(Read(ref, four), CL_ERR_NO_ERR);
    EXPECT_EQ(four, "abcd");
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyTest, AReadCanBeRepeatedWithTheSameVariables) {
    const hSerRef ref = Open();
    char bytes[4] = "...";
    std::uint32_t size = 3;
    EXPECT_EQ(m_library.SerialRead(ref, bytes, &size, 10), CL_ERR_TIMEOUT);
    m_end->Send("abc");
    EXPECT_EQ(m_library.SerialRead(ref, bytes, &size, 10000), CL_ERR_NO_ERR);
    EXPECT_EQ(size, 3U);
    EXPECT_STREQ(bytes, "abc");
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyTest, HostsMaySetAParityThatThereIsNot) {
    const hSerRef ref = Open();
    EXPECT_EQ(m_library.SetParity(ref, 0), CL_ERR_NO_ERR);
    m_library.SerialClose(ref);
    EXPECT_EQ(m_library.SetParity(ref, 0), CL_ERR_INVALID_REFERENCE);
}

TEST_F(ClSerTtyTest, ATimeOutIsNeverEarly) {
    const hSerRef ref = Open();
    std::string byte(1, ' ');
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(Read(ref, byte, 30), CL_ERR_TIMEOUT);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(30));
    EXPECT_THAT(m_library.TextOf(CL_ERR_TIMEOUT), HasSubstr("0 of 1"));
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyTest, AReadOfNothingSucceeds) {
    const hSerRef ref = Open();
    std::uint32_t size = 0;
    EXPECT_EQ(m_library.SerialRead(ref, nullptr, &size, 0), CL_ERR_NO_ERR);
    EXPECT_EQ(m_library.SerialWrite(ref, nullptr, &size, 0), CL_ERR_NO_ERR);
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyTest, AWriteToALineThatTakesNothingTimesOutAndTellsHowFarItCame) {
    const hSerRef ref = Open();
    std::string bytes(10 * 1000 * 1000, 'z');
    auto size = static_cast<std::uint32_t>(bytes.size());
    EXPECT_EQ(m_library.SerialWrite(ref, bytes.data(), &size, 20), CL_ERR_TIMEOUT);
    EXPECT_GT(size, 0U);
    EXPECT_LT(size, bytes.size());
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyTest, FlushDiscardsWhatArrivedInPartAndWhatWaits) {
    const hSerRef ref = Open();
    m_end->Send("old");
    std::string four = "....";
    EXPECT_EQ(Read(ref, four, 10), CL_ERR_TIMEOUT);
    m_end->Send("older");
    EXPECT_EQ(m_library.FlushPort(ref), CL_ERR_NO_ERR);
    m_end->Send("new!");
    EXPECT_EQ(Read(ref, four), CL_ERR_NO_ERR);
    EXPECT_EQ(four, "new!");
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyTest, AVanishedPortIsAnErrorAndNoTimeOut) {
    const hSerRef ref = Open();
    m_end->Unplug();
    std::string byte(1, ' ');
    std::uint32_t number = 0;
    EXPECT_EQ(Read(ref, byte), CL_ERR_INVALID_REFERENCE);
    EXPECT_THAT(m_library.TextOf(CL_ERR_INVALID_REFERENCE), HasSubstr("'cam0'"));
    EXPECT_EQ(Write(ref, "x"), CL_ERR_INVALID_REFERENCE);
    EXPECT_EQ(m_library.GetNumBytesAvail(ref, &number), CL_ERR_INVALID_REFERENCE);
    EXPECT_EQ(m_library.FlushPort(ref), CL_ERR_INVALID_REFERENCE);
    EXPECT_EQ(m_library.SetBaudRate(ref, CL_BAUDRATE_19200), CL_ERR_INVALID_REFERENCE);
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyTest, APortThatVanishesDuringAReadEndsTheRead) {
    const hSerRef ref = Open();
    std::string bytes(10, ' ');
    std::thread unplugger([&] {
        m_end->Send("abc");
        m_end->Unplug();
    });
    EXPECT_EQ(Read(ref, bytes, 600000), CL_ERR_INVALID_REFERENCE);
    unplugger.join();
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyTest, ClosingEndsAReadOfAnotherThread) {
    const hSerRef ref = Open();
    std::thread closer([&] {
        m_end->Send("x");
        m_library.SerialClose(ref);
    });
    std::string bytes(2, ' ');
    EXPECT_EQ(Read(ref, bytes, 600000), CL_ERR_INVALID_REFERENCE);
    closer.join();
    m_library.SerialClose(Open());
}

TEST_F(ClSerTtyTest, ANewPortUnderTheSameLinkOpensWithoutANewCount) {
    const std::uint32_t index = m_library.IndexOf("cam0");
    m_end->Unplug();
    const SerialEnd other(Link("cam0"));
    hSerRef ref = nullptr;
    EXPECT_EQ(m_library.SerialInit(index, &ref), CL_ERR_NO_ERR);
    EXPECT_EQ(Write(ref, "x"), CL_ERR_NO_ERR);
    EXPECT_EQ(other.Receive(1), "x");
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyTest, OpensAt9600AndChangesTheRateOfTheLine) {
    const hSerRef ref = Open();
    EXPECT_EQ(m_end->BitsPerSecond(), 9600U);
    std::uint32_t mask = 0;
    EXPECT_EQ(m_library.GetSupportedBaudRates(ref, &mask), CL_ERR_NO_ERR);
    EXPECT_EQ(mask, 0xFFU);
    const std::uint32_t rates[] = {9600, 19200, 38400, 57600, 115200, 230400, 460800, 921600};
    for (std::uint32_t bit = 0; bit < 8; ++bit) {
        EXPECT_EQ(m_library.SetBaudRate(ref, 1U << bit), CL_ERR_NO_ERR);
        EXPECT_EQ(m_end->BitsPerSecond(), rates[bit]);
    }
    EXPECT_EQ(m_library.SetBaudRate(ref, CL_BAUDRATE_9600), CL_ERR_NO_ERR);
    EXPECT_EQ(m_library.SetBaudRate(ref, CL_BAUDRATE_FASTEST), CL_ERR_NO_ERR);
    EXPECT_EQ(m_end->BitsPerSecond(), 921600U);
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyTest, RefusesAnythingButOneKnownRate) {
    const hSerRef ref = Open();
    for (std::uint32_t flag : {0x0U, 0x3U, 0x100U, 0xFFFFFFFFU, 0x40000001U})
        EXPECT_EQ(m_library.SetBaudRate(ref, flag), CL_ERR_BAUD_RATE_NOT_SUPPORTED) << flag;
    EXPECT_EQ(m_end->BitsPerSecond(), 9600U);
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyTest, KnowsTheTextOfEachStandardCode) {
    for (std::int32_t code : {0, -10001, -10002, -10003, -10004, -10005, -10006, -10007, -10008, -10009, -10010, -10011,
                              -10012, -10098, -10099}) {
        EXPECT_FALSE(m_library.TextOf(code).empty()) << code;
    }
    std::uint32_t size = 0;
    EXPECT_EQ(m_library.GetErrorText(-10013, nullptr, &size), CL_ERR_ERROR_NOT_FOUND);
    EXPECT_EQ(m_library.GetErrorText(1, nullptr, &size), CL_ERR_ERROR_NOT_FOUND);
}

TEST_F(ClSerTtyTest, TheLastErrorIsTheThreadsOwn) {
    const hSerRef ref = Open();
    std::string byte(1, ' ');
    EXPECT_EQ(Read(ref, byte, 0), CL_ERR_TIMEOUT);
    EXPECT_THAT(m_library.TextOf(CL_ERR_TIMEOUT), HasSubstr("cam0"));
    std::thread([&] { EXPECT_EQ(m_library.TextOf(CL_ERR_TIMEOUT), "The time-out has passed."); }).join();
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyTest, SeparatePortsServeSeparateThreads) {
    constexpr int kPorts = 4;
    std::vector<std::thread> threads;
    for (int number = 0; number < kPorts; ++number) {
        threads.emplace_back([this, number] {
            const SerialEnd end(Link("many" + std::to_string(number)));
            for (int round = 0; round < 50; ++round) {
                const hSerRef ref = Open("many" + std::to_string(number));
                end.Send("ping");
                std::string four(4, ' ');
                EXPECT_EQ(Read(ref, four), CL_ERR_NO_ERR);
                EXPECT_EQ(four, "ping");
                m_library.SerialClose(ref);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

TEST_F(ClSerTtyTest, OnePortUsedByManyThreadsWhileItIsClosedStaysSane) {
    const hSerRef ref = Open();
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&] {
            std::string byte(1, ' ');
            while (Read(ref, byte, 1) != CL_ERR_INVALID_REFERENCE)
                EXPECT_NE(Write(ref, "x", 1), CL_ERR_INVALID_PTR);
        });
    }
    m_end->Receive(20);
    m_library.SerialClose(ref);
    for (std::thread& thread : threads)
        thread.join();
    m_library.SerialClose(Open());
}

}  // namespace
}  // namespace ClSerTtyTest
