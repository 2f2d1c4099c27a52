/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Integer registers: bytes, order, sign, bit fields
 */

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class IntegerRegister : public NodeMapTest {
protected:
    static std::string Reg(const std::string& name, const std::string& content, const std::string& kind = "IntReg") {
        return "<" + kind + " Name='" + name + "'><AccessMode>RW</AccessMode><pPort>Device</pPort>" + content + "</" +
               kind + ">";
    }
};

TEST_F(IntegerRegister, ReadsBothByteOrders) {
    Load(Reg("L", "<Address>0x10</Address><Length>4</Length><Endianess>LittleEndian</Endianess>") +
         Reg("B", "<Address>0x10</Address><Length>4</Length><Endianess>BigEndian</Endianess>"));
    port.Put(0x10, {0x12, 0x34, 0x56, 0x78});
    EXPECT_EQ(Integer("L")->GetValue(), 0x78563412);
    EXPECT_EQ(Integer("B")->GetValue(), 0x12345678);
}

TEST_F(IntegerRegister, IsUnsignedAndLittleEndianByDefault) {
    Load(Reg("A", "<Address>0</Address><Length>2</Length>"));
    port.Put(0, {0xFE, 0xFF});
    EXPECT_EQ(Integer("A")->GetValue(), 0xFFFE);
    EXPECT_EQ(Integer("A")->GetMin(), 0);
    EXPECT_EQ(Integer("A")->GetMax(), 0xFFFF);
}

TEST_F(IntegerRegister, ExtendsTheSign) {
    Load(Reg("A", "<Address>0</Address><Length>2</Length><Sign>Signed</Sign>"));
    port.Put(0, {0xFE, 0xFF});
    EXPECT_EQ(Integer("A")->GetValue(), -2);
    EXPECT_EQ(Integer("A")->GetMin(), -32768);
    EXPECT_EQ(Integer("A")->GetMax(), 32767);
}

// Every length and byte order and sign, with the highest bit set and not.
TEST_F(IntegerRegister, ReadsAndWritesEveryLength) {
    std::string nodes;
    for (int length = 1; length <= 8; ++length) {
        for (const char* order : {"LittleEndian", "BigEndian"}) {
            for (const char* sign : {"Signed", "Unsigned"})
                nodes += Reg(std::string(1, order[0]) + sign[0] + std::to_string(length),
                             "<Address>" + std::to_string(length * 16) + "</Address><Length>" + std::to_string(length) +
                                 "</Length><Sign>" + sign + "</Sign><Endianess>" + order +
                                 "</Endianess><Cachable>NoCache</Cachable>");
        }
    }
    Load(nodes);
    for (int length = 1; length <= 8; ++length) {
        for (const std::uint64_t pattern : {0x8123456789ABCDEFU, 0x7EDCBA9876543210U}) {
            const std::uint64_t bits = pattern >> (64 - 8 * length);
            const auto asSigned = static_cast<std::int64_t>(pattern) >> (64 - 8 * length);
            const std::string suffix = std::to_string(length);
            port.PutLittle(length * 16, bits, length);
            EXPECT_EQ(Integer("LU" + suffix)->GetValue(), static_cast<std::int64_t>(bits));
            EXPECT_EQ(Integer("LS" + suffix)->GetValue(), asSigned);
            port.PutBig(length * 16, bits, length);
            EXPECT_EQ(Integer("BU" + suffix)->GetValue(), static_cast<std::int64_t>(bits));
            EXPECT_EQ(Integer("BS" + suffix)->GetValue(), asSigned);
            Integer("LS" + suffix)->SetValue(asSigned);
            EXPECT_EQ(port.Little(length * 16, length), bits);
            Integer("BU" + suffix)->SetValue(static_cast<std::int64_t>(bits), length < 8);
            EXPECT_EQ(port.Big(length * 16, length), bits);
        }
    }
}

TEST_F(IntegerRegister, RefusesWhatDoesNotFit) {
    Load(Reg("U", "<Address>0</Address><Length>1</Length>") +
         Reg("S", "<Address>1</Address><Length>1</Length><Sign>Signed</Sign>"));
    EXPECT_THROW(Integer("U")->SetValue(256), OutOfRangeException);
    EXPECT_THROW(Integer("U")->SetValue(-1), OutOfRangeException);
    EXPECT_THROW(Integer("S")->SetValue(128), OutOfRangeException);
    EXPECT_THROW(Integer("S")->SetValue(-129), OutOfRangeException);
    EXPECT_THROW(Integer("U")->SetValue(256, false), OutOfRangeException);
    EXPECT_EQ(port.Writes(), 0);
    Integer("S")->SetValue(-128);
    EXPECT_EQ(port.Little(1, 1), 0x80U);
}

TEST_F(IntegerRegister, LittleEndianBitsCountFromTheLeastSignificant) {
    Load(Reg("Field", "<Address>0</Address><Length>4</Length><LSB>4</LSB><MSB>11</MSB>", "MaskedIntReg") +
         Reg("Flag", "<Address>0</Address><Length>4</Length><Bit>31</Bit>", "MaskedIntReg"));
    port.PutLittle(0, 0x80000AB0, 4);
    EXPECT_EQ(Integer("Field")->GetValue(), 0xAB);
    EXPECT_EQ(Integer("Flag")->GetValue(), 1);
    EXPECT_EQ(Integer("Field")->GetMax(), 0xFF);
}

TEST_F(IntegerRegister, BigEndianBitsCountFromTheMostSignificant) {
    Load(Reg("Field", "<Address>0</Address><Length>4</Length><LSB>7</LSB><MSB>4</MSB><Endianess>BigEndian</Endianess>",
             "MaskedIntReg") +
         Reg("Flag", "<Address>0</Address><Length>4</Length><Bit>0</Bit><Endianess>BigEndian</Endianess>",
             "MaskedIntReg"));
    port.PutBig(0, 0x8A000000, 4);
    EXPECT_EQ(Integer("Field")->GetValue(), 0xA);
    EXPECT_EQ(Integer("Flag")->GetValue(), 1);
}

TEST_F(IntegerRegister, TakesTheEndsOfAFieldInEitherOrder) {
    Load(Reg("A", "<Address>0</Address><Length>2</Length><LSB>11</LSB><MSB>4</MSB>", "MaskedIntReg") +
         Reg("B", "<Address>0</Address><Length>2</Length><LSB>4</LSB><MSB>7</MSB><Endianess>BigEndian</Endianess>",
             "MaskedIntReg"));
    port.Put(0, {0xB0, 0x0A});
    EXPECT_EQ(Integer("A")->GetValue(), 0xAB);
    EXPECT_EQ(Integer("B")->GetValue(), 0x0);
    port.Put(0, {0x0C, 0x00});
    map._InvalidateNodes();
    EXPECT_EQ(Integer("B")->GetValue(), 0xC);
}

TEST_F(IntegerRegister, SignedFieldsExtendTheirSign) {
    Load(Reg("A", "<Address>0</Address><Length>2</Length><LSB>4</LSB><MSB>7</MSB><Sign>Signed</Sign>", "MaskedIntReg"));
    port.Put(0, {0x90, 0});
    EXPECT_EQ(Integer("A")->GetValue(), -7);
    EXPECT_EQ(Integer("A")->GetMin(), -8);
    EXPECT_EQ(Integer("A")->GetMax(), 7);
    Integer("A")->SetValue(-1);
    EXPECT_EQ(port.Little(0, 2), 0xF0U);
}

TEST_F(IntegerRegister, WritingAFieldKeepsTheBitsAroundIt) {
    Load(Reg("A", "<Address>0</Address><Length>4</Length><LSB>8</LSB><MSB>15</MSB>", "MaskedIntReg"));
    port.PutLittle(0, 0xFFFFFFFF, 4);
    Integer("A")->SetValue(0x12);
    EXPECT_EQ(port.Little(0, 4), 0xFFFF12FFU);
}

TEST_F(IntegerRegister, AFieldOf64BitsIsTheWholeRegister) {
    Load(
        Reg("A", "<Address>0</Address><Length>8</Length><LSB>0</LSB><MSB>63</MSB><Sign>Signed</Sign>", "MaskedIntReg"));
    port.PutLittle(0, 0x8000000000000001, 8);
    EXPECT_EQ(Integer("A")->GetValue(), static_cast<std::int64_t>(0x8000000000000001U));
    Integer("A")->SetValue(-5);
    EXPECT_EQ(port.Little(0, 8), static_cast<std::uint64_t>(-5));
}

TEST_F(IntegerRegister, AFieldOutsideTheRegisterThrowsWhenItIsUsed) {
    Load(Reg("A", "<Address>0</Address><Length>1</Length><LSB>4</LSB><MSB>8</MSB>", "MaskedIntReg"));
    EXPECT_THROW(Integer("A")->GetValue(), OutOfRangeException);
    EXPECT_THROW(Integer("A")->SetValue(1), OutOfRangeException);
}

TEST_F(IntegerRegister, MoreThan8BytesAreNoInteger) {
    Load(Reg("A", "<Address>0</Address><Length>9</Length>"));
    EXPECT_THROW(Integer("A")->GetValue(), OutOfRangeException);
}

TEST_F(IntegerRegister, APortMaySwapTheByteOrder) {
    map._LoadXMLFromString(Describe(
        "<IntReg "
        "Name='A'><Address>0</Address><Length>2</Length><AccessMode>RO</AccessMode><pPort>Other</pPort></IntReg>"
        "<Port Name='Other'><SwapEndianess>Yes</SwapEndianess></Port>"));
    ASSERT_TRUE(map._Connect(&port, "Other"));
    port.Put(0, {0x12, 0x34});
    EXPECT_EQ(Integer("A")->GetValue(), 0x1234);
}

TEST_F(IntegerRegister, EntriesOfAStructureShareItsElements) {
    Load(
        "<StructReg Comment='S'><Address>0x20</Address><Length>2</Length><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort><Endianess>BigEndian</Endianess><Sign>Unsigned</Sign>"
        "<StructEntry Name='Low'><Bit>15</Bit></StructEntry>"
        "<StructEntry Name='Mid'><LSB>11</LSB><MSB>8</MSB><Sign>Signed</Sign></StructEntry>"
        "<StructEntry Name='ReadOnly'><Bit>0</Bit><AccessMode>RO</AccessMode></StructEntry></StructReg>");
    port.PutBig(0x20, 0x80F1, 2);
    EXPECT_EQ(Integer("Low")->GetValue(), 1);
    EXPECT_EQ(Integer("Mid")->GetValue(), -1);
    EXPECT_EQ(Integer("ReadOnly")->GetValue(), 1);
    EXPECT_EQ(Mode("ReadOnly"), RO);
    EXPECT_EQ(port.Reads(), 1);
}

TEST_F(IntegerRegister, IsARegister) {
    Load(Reg("A", "<Address>0x40</Address><Length>3</Length>"));
    port.Put(0x40, {1, 2, 3});
    std::uint8_t bytes[3] = {};
    Bytes("A")->Get(bytes, 3);
    EXPECT_EQ(bytes[2], 3);
    EXPECT_EQ(Bytes("A")->GetAddress(), 0x40);
    EXPECT_EQ(Bytes("A")->GetLength(), 3);
    const std::uint8_t other[3] = {9, 8, 7};
    Bytes("A")->Set(other, 3);
    EXPECT_EQ(Integer("A")->GetValue(), 0x070809);
    EXPECT_THROW(Bytes("A")->Set(other, 2), OutOfRangeException);
    EXPECT_THROW(Bytes("A")->Get(bytes, 4), OutOfRangeException);
    EXPECT_THROW(Bytes("A")->Get(nullptr, 3), OutOfRangeException);
}

TEST_F(IntegerRegister, AFormulaBehindTheEntriesOfAStructureCountsForItsAddress) {
    Load(
        "<StructReg Comment='S'><Address>0x100</Address><Length>4</Length><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort><StructEntry Name='E'><LSB>0</LSB><MSB>7</MSB></StructEntry>"
        "<IntSwissKnife><Formula>0x20</Formula></IntSwissKnife></StructReg>");
    port.PutLittle(0x120, 9, 4);
    EXPECT_EQ(Integer("E")->GetValue(), 9);
    EXPECT_EQ(Bytes("E")->GetAddress(), 0x120);
}

// A register behind such a port is one of the other byte order in all respects: its bits are counted that way, too.
TEST_F(IntegerRegister, AFieldBehindAPortThatSwapsIsOneOfTheOtherByteOrder) {
    const auto field = [](const std::string& name, const std::string& order) {
        return "<MaskedIntReg Name='" + name + "'><Address>0</Address><Length>2</Length><AccessMode>RW</AccessMode>" +
               "<pPort>Other</pPort><LSB>3</LSB><MSB>0</MSB><Endianess>" + order + "</Endianess></MaskedIntReg>";
    };
    map._LoadXMLFromString(Describe(field("Little", "LittleEndian") + field("Big", "BigEndian") +
                                    "<Port Name='Other'><SwapEndianess>Yes</SwapEndianess></Port>"));
    ASSERT_TRUE(map._Connect(&port, "Other"));
    port.Put(0, {0x12, 0x34});
    EXPECT_EQ(Integer("Little")->GetValue(), 0x1);
    EXPECT_EQ(Integer("Big")->GetValue(), 0x2);
    Integer("Little")->SetValue(0xA);
    EXPECT_EQ(port.Big(0, 2), 0xA234U);
    Integer("Big")->SetValue(0xB);
    EXPECT_EQ(port.Big(0, 2), 0xAB34U);
}

}  // namespace genapitest
