/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One port used by several threads at once: none waits for another's time-out
 */

#include <gmock/gmock.h>

#include <thread>

#include "Fixture.h"
#include "SerialPort.h"

namespace ClSerTtyTest {
namespace {

using testing::HasSubstr;

constexpr std::uint32_t kLong = 600000;  // of a wait that another thread ends

class SerialPortTest : public ClSerTtyTest {
protected:
    /// A read of two bytes of which the first has been taken from the line.
    std::thread StartRead(hSerRef ref, std::string& bytes, std::int32_t& code) {
        bytes.assign(2, '.');
        std::thread reader([this, ref, &bytes, &code] { code = Read(ref, bytes, kLong); });
        m_end->Send("a");
        while (!m_end->IsRead())
            std::this_thread::yield();
        return reader;
    }

    /// A write of more than the line takes, of which the first bytes have come.
    std::thread StartWrite(hSerRef ref, std::int32_t& code) {
        std::thread writer([this, ref, &code] { code = Write(ref, std::string(10 * 1000 * 1000, 'z'), kLong); });
        m_end->Receive(1);
        return writer;
    }
};

TEST_F(SerialPortTest, AWaitingReadKeepsNobodyFromWriting) {
    const hSerRef ref = Open();
    std::string read;
    std::int32_t code = 1;
    std::thread reader = StartRead(ref, read, code);
    EXPECT_EQ(Write(ref, "x", 100), CL_ERR_NO_ERR);
    EXPECT_EQ(m_end->Receive(1), "x");
    m_end->Send("b");
    reader.join();
    EXPECT_EQ(code, CL_ERR_NO_ERR);
    EXPECT_EQ(read, "ab");
    m_library.SerialClose(ref);
}

TEST_F(SerialPortTest, AWaitingReadKeepsNobodyFromCountingAndFlushing) {
    const hSerRef ref = Open();
    std::string read;
    std::int32_t code = 1;
    std::thread reader = StartRead(ref, read, code);
    std::uint32_t available = 0;
    EXPECT_EQ(m_library.GetNumBytesAvail(ref, &available), CL_ERR_NO_ERR);
    EXPECT_EQ(available, 1U);
    EXPECT_EQ(m_library.FlushPort(ref), CL_ERR_NO_ERR);
    EXPECT_EQ(m_library.GetNumBytesAvail(ref, &available), CL_ERR_NO_ERR);
    EXPECT_EQ(available, 0U);
    m_end->Send("bc");
    reader.join();
    EXPECT_EQ(code, CL_ERR_NO_ERR);
    EXPECT_EQ(read, "bc");
    m_library.SerialClose(ref);
}

TEST_F(SerialPortTest, AWaitingReadKeepsNobodyFromChangingTheRate) {
    const hSerRef ref = Open();
    std::string read;
    std::int32_t code = 1;
    std::thread reader = StartRead(ref, read, code);
    std::uint32_t mask = 0;
    EXPECT_EQ(m_library.GetSupportedBaudRates(ref, &mask), CL_ERR_NO_ERR);
    EXPECT_EQ(m_library.SetBaudRate(ref, CL_BAUDRATE_115200), CL_ERR_NO_ERR);
    EXPECT_EQ(m_end->BitsPerSecond(), 115200U);
    m_end->Send("b");
    reader.join();
    EXPECT_EQ(read, "ab");
    m_library.SerialClose(ref);
}

TEST_F(SerialPortTest, ASecondReadWaitsNoLongerThanItsOwnTimeOut) {
    const hSerRef ref = Open();
    std::string read;
    std::int32_t code = 1;
    std::thread reader = StartRead(ref, read, code);
    std::string byte = ".";
    EXPECT_EQ(Read(ref, byte, 10), CL_ERR_TIMEOUT);
    EXPECT_THAT(m_library.TextOf(CL_ERR_TIMEOUT), HasSubstr("another read"));
    EXPECT_EQ(byte, ".");
    m_end->Send("b");
    reader.join();
    EXPECT_EQ(read, "ab");
    m_library.SerialClose(ref);
}

TEST_F(SerialPortTest, AWaitingWriteKeepsNobodyFromReading) {
    const hSerRef ref = Open();
    std::int32_t code = 1;
    std::thread writer = StartWrite(ref, code);
    m_end->Send("abc");
    std::string byte = ".";
    EXPECT_EQ(Read(ref, byte), CL_ERR_NO_ERR);
    EXPECT_EQ(byte, "a");
    std::uint32_t available = 0;
    EXPECT_EQ(m_library.GetNumBytesAvail(ref, &available), CL_ERR_NO_ERR);
    EXPECT_EQ(available, 2U);
    EXPECT_EQ(m_library.FlushPort(ref), CL_ERR_NO_ERR);
    m_library.SerialClose(ref);
    writer.join();
    EXPECT_EQ(code, CL_ERR_INVALID_REFERENCE);
}

TEST_F(SerialPortTest, ASecondWriteWaitsNoLongerThanItsOwnTimeOut) {
    const hSerRef ref = Open();
    std::int32_t code = 1;
    std::thread writer = StartWrite(ref, code);
    std::string byte = "x";
    std::uint32_t size = 1;
    EXPECT_EQ(m_library.SerialWrite(ref, byte.data(), &size, 10), CL_ERR_TIMEOUT);
    EXPECT_EQ(size, 0U);
    m_library.SerialClose(ref);
    writer.join();
}

TEST_F(SerialPortTest, ClosingEndsAReadAWriteAndThoseWhoWaitForTheirTurn) {
    const hSerRef ref = Open();
    std::string read;
    std::int32_t codes[4] = {};
    std::thread reader = StartRead(ref, read, codes[0]);
    std::thread writer = StartWrite(ref, codes[1]);
    std::string byte = ".";
    std::thread secondReader([&] { codes[2] = Read(ref, byte, kLong); });
    std::thread secondWriter([&] { codes[3] = Write(ref, "x", kLong); });
    m_library.SerialClose(ref);
    for (std::thread* thread : {&reader, &writer, &secondReader, &secondWriter})
        thread->join();
    for (const std::int32_t code : codes)
        EXPECT_EQ(code, CL_ERR_INVALID_REFERENCE);
    m_library.SerialClose(Open());
}

TEST_F(SerialPortTest, EachReadAfterUnpluggingFails) {
    const hSerRef ref = Open();
    m_end->Unplug();
    for (int round = 0; round < 3; ++round) {
        std::string bytes(10, '.');
        EXPECT_EQ(Read(ref, bytes, 10), CL_ERR_INVALID_REFERENCE);
        EXPECT_EQ(bytes, std::string(10, '.'));
    }
    m_library.SerialClose(ref);
}

TEST_F(SerialPortTest, ATimeOutSaysHowManyBytesWereThere) {
    const hSerRef ref = Open();
    m_end->Send("abc");
    std::string four = "....";
    EXPECT_EQ(Read(ref, four, 10), CL_ERR_TIMEOUT);
    EXPECT_THAT(m_library.TextOf(CL_ERR_TIMEOUT), HasSubstr("Only 3 of 4 bytes"));
    m_library.SerialClose(ref);
}

/// Takes one byte at a time, and all that are asked of it.
class WillingDevice final : public ClSerTty::SerialDevice {
public:
    bool WaitForInput(ClSerTty::Deadline) override { return false; }
    std::size_t TakeInput(std::span<char>) override { return 0; }
    std::size_t WriteSome(std::span<const char>, ClSerTty::Deadline) override { return 1; }
    std::size_t BytesAvailable() override { return 0; }
    void DiscardInput() override {}
    std::uint32_t SupportedBaudRates() override { return CL_BAUDRATE_9600; }
    void SetBaudRate(std::uint32_t) override {}
    void Cancel() noexcept override {}
};

TEST(SerialPortAlone, AWriteEndsInTimeEvenIfTheLineGoesOnTakingBytes) {
    ClSerTty::SerialPort port("line", std::make_unique<WillingDevice>());
    const std::string bytes(100, 'x');
    EXPECT_EQ(port.Write(bytes, 0), 1U);
    EXPECT_EQ(port.Write(bytes, kLong), bytes.size());
    EXPECT_EQ(port.Write({}, kLong), 0U);
}

}  // namespace
}  // namespace ClSerTtyTest
