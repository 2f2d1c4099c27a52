/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Registers
 */

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class RegisterNode : public NodeMapTest {};

TEST_F(RegisterNode, HoldsBytes) {
    Load(
        "<Register Name='R'><Address>0x20</Address><Length>5</Length><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort></Register>");
    port.Put(0x20, {1, 2, 3, 4, 255});
    EXPECT_EQ(Bytes("R")->ToString(), "0x01020304ff");
    Bytes("R")->FromString("0x0A0b0C0d0E");
    EXPECT_EQ(port.Big(0x20, 5), 0x0A0B0C0D0EU);
    EXPECT_THROW(Bytes("R")->FromString("0x0A0b0C0d"), OutOfRangeException);
    EXPECT_THROW(Bytes("R")->FromString("0x0A0b0C0d0"), InvalidArgumentException);
    EXPECT_THROW(Bytes("R")->FromString("hello worl"), InvalidArgumentException);
    EXPECT_EQ(Node("R")->GetPrincipalInterfaceType(), intfIRegister);
}

TEST_F(RegisterNode, FeatureLocksAndSmartFeaturesAreRegisters) {
    for (const char* kind : {"AdvFeatureLock", "SmartFeature"}) {
        Load(std::string("<") + kind +
             " Name='R'><FeatureID>0x0030533B73C3</FeatureID><Timeout>0</Timeout>"
             "<Address>0x20</Address><Length>8</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></" +
             kind + ">");
        Bytes("R")->FromString("0x0030533b73c3f000");
        EXPECT_EQ(port.Big(0x20, 8), 0x0030533B73C3F000U) << kind;
        gcstring value;
        gcstring attribute;
        EXPECT_TRUE(Node("R")->GetProperty("FeatureID", value, attribute));
        EXPECT_EQ(value, "0x0030533B73C3");
        EXPECT_TRUE(map._GetWarnings().empty());
    }
}

TEST_F(RegisterNode, TextAndNumberRegistersHaveTheInterface) {
    Load(
        "<StringReg Name='S'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
        "</StringReg><FloatReg Name='F'><Address>4</Address><Length>8</Length><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort></FloatReg>");
    const std::uint8_t text[4] = {'a', 'b', 0, 'c'};
    Bytes("S")->Set(text, 4);
    EXPECT_EQ(String("S")->GetValue(), "ab");
    EXPECT_EQ(Bytes("F")->GetAddress(), 4);
    EXPECT_EQ(Bytes("F")->GetLength(), 8);
    EXPECT_TRUE(String("S")->IsValueCacheValid());
}

TEST_F(RegisterNode, TakesItsLengthFromANode) {
    Load(
        "<Register Name='R'><Address>0</Address><pLength>L</pLength><AccessMode>RO</AccessMode>"
        "<pPort>Device</pPort></Register><Integer Name='L'><Value>3</Value></Integer>");
    EXPECT_EQ(Bytes("R")->GetLength(), 3);
    Integer("L")->SetValue(6);
    EXPECT_EQ(Bytes("R")->GetLength(), 6);
    EXPECT_EQ(Bytes("R")->ToString(), "0x000000000000");
}

// Lengths come from cameras: nothing is allocated for one that no register has.
TEST_F(RegisterNode, RefusesLengthsThatNoRegisterHas) {
    Load(
        "<StringReg Name='R'><Address>0</Address><pLength>L</pLength><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort></StringReg><Integer Name='L'><Value>3400000000</Value></Integer>"
        "<Register Name='Huge'><Address>0</Address><Length>0xFFFFFFFFFF</Length><AccessMode>RO</AccessMode>"
        "<pPort>Device</pPort></Register>");
    EXPECT_THROW(String("R")->GetValue(), OutOfRangeException);
    EXPECT_THROW(String("R")->SetValue("x"), OutOfRangeException);
    for (const std::int64_t length : {std::int64_t{0}, std::int64_t{-1}, INT64_MAX, INT64_MIN}) {
        Integer("L")->SetValue(length);
        EXPECT_THROW(String("R")->GetValue(), OutOfRangeException);
    }
    EXPECT_EQ(Mode("Huge"), NI);
    EXPECT_EQ(port.accesses.size(), 0U);
}

TEST_F(RegisterNode, SumsAllPartsOfItsAddress) {
    Load(
        "<Register Name='R'><Address>0x100</Address><Address>0x20</Address><pAddress>P</pAddress>"
        "<IntSwissKnife Name='Inner'><pVariable Name='X'>P</pVariable><Formula>X * 3</Formula></IntSwissKnife>"
        "<pIndex Offset='0x10'>I</pIndex><pIndex pOffset='O'>I</pIndex><pIndex>I</pIndex><Length>8</Length>"
        "<AccessMode>RO</AccessMode><pPort>Device</pPort></Register>"
        "<Integer Name='P'><Value>1</Value></Integer><Integer Name='I'><Value>2</Value></Integer>"
        "<Integer Name='O'><Value>0x1000</Value></Integer>");
    EXPECT_EQ(Bytes("R")->GetAddress(), 0x100 + 0x20 + 1 + 3 + 2 * 0x10 + 2 * 0x1000 + 2 * 8);
    Integer("P")->SetValue(2);
    Integer("I")->SetValue(0);
    EXPECT_EQ(Bytes("R")->GetAddress(), 0x100 + 0x20 + 2 + 6);
    EXPECT_EQ(Integer("Inner")->GetValue(), 6);
}

TEST_F(RegisterNode, WithoutAPortIsNotImplemented) {
    Load(
        "<Register Name='A'><Address>0</Address><Length>1</Length><AccessMode>RO</AccessMode></Register>"
        "<Register Name='B'><Address>0</Address><Length>1</Length><AccessMode>RO</AccessMode><pPort>Nowhere</pPort>"
        "</Register><Register Name='C'><Address>0</Address><Length>1</Length><AccessMode>RO</AccessMode>"
        "<pPort>I</pPort></Register><Integer Name='I'><Value>1</Value></Integer>");
    EXPECT_EQ(Mode("A"), NI);
    EXPECT_EQ(Mode("B"), NI);
    EXPECT_EQ(Mode("C"), NI);
    EXPECT_THROW(Bytes("A")->GetAddress(), AccessException);
    EXPECT_EQ(Integer("I")->GetValue(), 1);
}

}  // namespace genapitest
