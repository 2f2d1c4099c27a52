/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Caching of what can only be written
 */

#include "CachingFixture.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

TEST_F(Caching, AWriteOnlyFieldStartsFromWhatWasWritten) {
    Load(
        "<MaskedIntReg Name='A'><Address>0</Address><Length>1</Length><AccessMode>WO</AccessMode><pPort>Device</pPort>"
        "<LSB>0</LSB><MSB>3</MSB></MaskedIntReg>"
        "<MaskedIntReg Name='B'><Address>0</Address><Length>1</Length><AccessMode>WO</AccessMode><pPort>Device</pPort>"
        "<LSB>4</LSB><MSB>7</MSB></MaskedIntReg>");
    Integer("A")->SetValue(5);
    Integer("B")->SetValue(6);
    EXPECT_EQ(port.Little(0, 1), 0x65U);
    EXPECT_EQ(port.Reads(), 0);
}

namespace {

std::string WriteOnlyBit(const std::string& name, int bit) {
    return "<MaskedIntReg Name='" + name + "'><Address>0</Address><Length>1</Length><AccessMode>WO</AccessMode>" +
           "<pPort>Device</pPort><Bit>" + std::to_string(bit) + "</Bit></MaskedIntReg>";
}

std::string CommandOf(const std::string& name, const std::string& reg) {
    return "<Command Name='" + name + "'><pValue>" + reg + "</pValue><CommandValue>1</CommandValue></Command>";
}

}  // namespace

TEST_F(Caching, WhatACommandWroteIsNotSentAgain) {
    Load(WriteOnlyBit("A", 0) + WriteOnlyBit("B", 1) + WriteOnlyBit("Setting", 7) + CommandOf("First", "A") +
         CommandOf("Second", "B"));
    Integer("Setting")->SetValue(1);
    Command("First")->Execute();
    EXPECT_EQ(port.Little(0, 1), 0x81U);
    Command("Second")->Execute();
    EXPECT_EQ(port.Little(0, 1), 0x82U);
    Integer("Setting")->SetValue(0);
    EXPECT_EQ(port.Little(0, 1), 0x00U);
}

TEST_F(Caching, WhatACommandWroteToAWholeRegisterIsNotSentAgain) {
    Load(WriteOnlyBit("B", 1) + CommandOf("Field", "B") + CommandOf("Whole", "W") +
         "<IntReg Name='W'><Address>0</Address><Length>1</Length><AccessMode>WO</AccessMode><pPort>Device</pPort>"
         "</IntReg>");
    Command("Whole")->Execute();
    Command("Field")->Execute();
    EXPECT_EQ(port.Little(0, 1), 2U);
}

TEST_F(Caching, AnEntryThatClearsItselfIsNotSentAgain) {
    Load(WriteOnlyBit("A", 0) + WriteOnlyBit("B", 1) +
         "<Enumeration Name='E'><EnumEntry Name='Off'><Value>0</Value></EnumEntry><EnumEntry Name='Once'>"
         "<Value>1</Value><IsSelfClearing>Yes</IsSelfClearing></EnumEntry><pValue>A</pValue></Enumeration>");
    Enumeration("E")->FromString("Once");
    EXPECT_EQ(port.Little(0, 1), 1U);
    Integer("B")->SetValue(1);
    EXPECT_EQ(port.Little(0, 1), 2U);
}

TEST_F(Caching, WhatTheDeviceAnswersAtAWriteOnlyPlaceIsNotSentBack) {
    Load(WriteOnlyBit("A", 0) +
         "<IntReg Name='Status'><Address>0</Address><Length>1</Length><AccessMode>RO</AccessMode>"
         "<pPort>Device</pPort></IntReg>");
    port.PutLittle(0, 0xF0, 1);
    EXPECT_EQ(Integer("Status")->GetValue(), 0xF0);
    Integer("A")->SetValue(1);
    EXPECT_EQ(port.Little(0, 1), 1U);
}

TEST_F(Caching, AnotherDeviceHasNoneOfTheSettings) {
    Load(WriteOnlyBit("A", 0) + WriteOnlyBit("B", 1));
    Integer("A")->SetValue(1);
    MemoryPort other;
    map._Connect(&other, "Device");
    Integer("B")->SetValue(1);
    EXPECT_EQ(other.Little(0, 1), 2U);
}

TEST_F(Caching, AFieldBehindAPortThatCannotBeReadStartsFromWhatWasWritten) {
    const auto field = [](const std::string& name, int bit) {
        return "<MaskedIntReg Name='" + name + "'><Address>0</Address><Length>1</Length><AccessMode>RW</AccessMode>" +
               "<pPort>Device</pPort><Bit>" + std::to_string(bit) + "</Bit></MaskedIntReg>";
    };
    Load(field("A", 0) + field("B", 1));
    port.mode = WO;
    Integer("A")->SetValue(1);
    Integer("B")->SetValue(1);
    EXPECT_EQ(port.Little(0, 1), 3U);
    EXPECT_EQ(port.Reads(), 0);
}

TEST_F(Caching, AWriteOnlyRegisterDoesNotAnswerForAReadOnlyOne) {
    Load(
        "<IntReg Name='Command'><Address>0</Address><Length>4</Length><AccessMode>WO</AccessMode>"
        "<pPort>Device</pPort></IntReg>"
        "<IntReg Name='Status'><Address>0</Address><Length>4</Length><AccessMode>RO</AccessMode>"
        "<pPort>Device</pPort></IntReg>");
    Integer("Command")->SetValue(5);
    port.PutLittle(0, 1, 4);
    EXPECT_EQ(Integer("Status")->GetValue(), 1);
}

}  // namespace genapitest
