/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The memory of a camera
 */

#include "camera/RegisterFile.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "gencp/Protocol.h"

namespace MarlowSim {
namespace {

using gencp::Bytes;

constexpr gencp::Register kText{0x100, 16};
constexpr gencp::Register kFirst{0x200, 4};
constexpr gencp::Register kSecond{0x204, 4};
constexpr gencp::Register kConstant{0x208, 4};
constexpr gencp::Register kCommand{0x20C, 4};

class RegisterFileTest : public testing::Test {
protected:
    RegisterFileTest() {
        m_file.AddText(kText, Access::kReadWrite, "name");
        m_file.AddNumber(kFirst, Access::kReadWrite, 1);
        m_file.AddNumber(kSecond, Access::kReadWrite, 2);
        m_file.AddNumber(kConstant, Access::kRead, 0x01020304);
        m_file.AddNumber(kCommand, Access::kWrite, 0);
    }

    Bytes Read(std::uint64_t address, std::size_t length) {
        Bytes out;
        EXPECT_EQ(m_file.Read(address, length, out), gencp::kStatusSuccess);
        return out;
    }

    RegisterFile m_file;
};

TEST_F(RegisterFileTest, ReadsAcrossRegistersAndPartsOfThem) {
    EXPECT_EQ(Read(0x203, 3), (Bytes{1, 0, 0}));
    EXPECT_EQ(Read(0x200, 12), (Bytes{0, 0, 0, 1, 0, 0, 0, 2, 1, 2, 3, 4}));
}

TEST_F(RegisterFileTest, ReadsNothingWhereNothingIs) {
    Bytes out{9};
    EXPECT_EQ(m_file.Read(0x110, 4, out), gencp::kStatusInvalidAddress);
    EXPECT_EQ(m_file.Read(0x10E, 4, out), gencp::kStatusInvalidAddress);
    EXPECT_EQ(m_file.Read(0, 1, out), gencp::kStatusInvalidAddress);
    EXPECT_EQ(m_file.Read(UINT64_MAX - 1, 4, out), gencp::kStatusInvalidAddress);
    EXPECT_EQ(m_file.Read(0x20C, 4, out), gencp::kStatusAccessDenied);
    EXPECT_EQ(out, Bytes{9});
}

TEST_F(RegisterFileTest, WritesWholeNumbersOnly) {
    EXPECT_EQ(m_file.Write(0x200, Bytes{0, 0, 0, 7, 0, 0, 0, 8}), gencp::kStatusSuccess);
    EXPECT_EQ(m_file.Number(kFirst), 7U);
    EXPECT_EQ(m_file.Number(kSecond), 8U);
    EXPECT_EQ(m_file.Write(0x200, Bytes{9, 9}), gencp::kStatusBadAlignment);
    EXPECT_EQ(m_file.Write(0x202, Bytes{9, 9}), gencp::kStatusBadAlignment);
    EXPECT_EQ(m_file.Number(kFirst), 7U);
}

TEST_F(RegisterFileTest, WritesTheBeginningOfATextAndClearsTheRest) {
    EXPECT_EQ(m_file.Write(0x100, Bytes{'a', 'b'}), gencp::kStatusSuccess);
    EXPECT_EQ(Read(0x100, 5), (Bytes{'a', 'b', 0, 0, 0}));
}

TEST_F(RegisterFileTest, RefusesWritesToConstantsAndGaps) {
    EXPECT_EQ(m_file.Write(0x208, Bytes(4)), gencp::kStatusWriteProtected);
    EXPECT_EQ(m_file.Write(0x300, Bytes(4)), gencp::kStatusInvalidAddress);
    EXPECT_EQ(Read(0x208, 4), (Bytes{1, 2, 3, 4}));
}

TEST_F(RegisterFileTest, AWriterMayRefuse) {
    m_file.OnWrite(kFirst, [](gencp::ByteView) { return gencp::kStatusInvalidParameter; });
    EXPECT_EQ(m_file.Write(0x200, Bytes(4)), gencp::kStatusInvalidParameter);
    EXPECT_EQ(m_file.Number(kFirst), 1U);
}

TEST_F(RegisterFileTest, AReaderMakesTheValue) {
    m_file.OnRead(kSecond, [] { return NumberBytes(0x55, 4); });
    EXPECT_EQ(Read(0x207, 1), Bytes{0x55});
    EXPECT_EQ(m_file.Number(kSecond), 2U);
}

TEST_F(RegisterFileTest, KnowsNoRegisterThatWasNotLaid) {
    EXPECT_THROW(m_file.Number({0x300, 4}), std::logic_error);
}

}  // namespace
}  // namespace MarlowSim
