/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Caching: when the device is asked, and that no old value stays behind
 */

#include "CachingFixture.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

TEST_F(Caching, ReadsARegisterOnce) {
    Load(Reg("R", "<Address>0</Address>") + "<Integer Name='A'><pValue>R</pValue></Integer>");
    EXPECT_EQ(Integer("A")->GetValue(), 0);
    EXPECT_EQ(Integer("A")->GetValue(), 0);
    EXPECT_EQ(Integer("R")->GetValue(), 0);
    EXPECT_EQ(port.Reads(), 1);
    EXPECT_TRUE(Integer("A")->IsValueCacheValid());
}

TEST_F(Caching, AKnownValueThatMayBeUnreadableByNowHasToBeAskedFor) {
    Load(Reg("R", "<Address>0</Address>") + Reg("On", "<Address>8</Address>", "<Cachable>NoCache</Cachable>") +
         "<Integer Name='A'><pIsAvailable>On</pIsAvailable><pValue>R</pValue></Integer>");
    port.PutLittle(8, 1, 4);
    EXPECT_EQ(Integer("A")->GetValue(), 0);
    const int reads = port.Reads();
    EXPECT_FALSE(Integer("A")->IsValueCacheValid());
    EXPECT_EQ(port.Reads(), reads);
    EXPECT_EQ(Integer("A")->GetValue(), 0);
    EXPECT_EQ(port.Reads(), reads + 1);
}

TEST_F(Caching, NoCacheAsksEachTime) {
    Load(Reg("R", "<Address>0</Address>", "<Cachable>NoCache</Cachable>") +
         "<Integer Name='A'><pValue>R</pValue></Integer>");
    EXPECT_EQ(Integer("A")->GetValue(), 0);
    port.PutLittle(0, 5, 4);
    EXPECT_EQ(Integer("A")->GetValue(), 5);
    EXPECT_EQ(port.Reads(), 2);
    EXPECT_FALSE(Integer("A")->IsValueCacheValid());
    EXPECT_FALSE(Node("A")->IsCachable());
}

TEST_F(Caching, WriteThroughKeepsWhatWasWritten) {
    Load(Reg("R", "<Address>0</Address>", "<Cachable>WriteThrough</Cachable>"));
    Integer("R")->SetValue(9);
    EXPECT_EQ(Integer("R")->GetValue(), 9);
    EXPECT_EQ(port.Reads(), 0);
    EXPECT_EQ(port.Little(0, 4), 9U);
}

TEST_F(Caching, WriteAroundReadsBack) {
    Load(Reg("R", "<Address>0</Address>", "<Cachable>WriteAround</Cachable>"));
    Integer("R")->SetValue(9);
    port.PutLittle(0, 8, 4);
    EXPECT_EQ(Integer("R")->GetValue(), 8);
    EXPECT_EQ(Integer("R")->GetValue(), 8);
    EXPECT_EQ(port.Reads(), 1);
}

TEST_F(Caching, IgnoreCacheAsksTheDevice) {
    Load(Reg("R", "<Address>0</Address>") +
         "<Integer Name='A'><pValue>R</pValue></Integer>"
         "<IntSwissKnife Name='S'><pVariable Name='X'>A</pVariable><Formula>X * 2</Formula></IntSwissKnife>");
    EXPECT_EQ(Integer("S")->GetValue(), 0);
    port.PutLittle(0, 4, 4);
    EXPECT_EQ(Integer("S")->GetValue(), 0);
    EXPECT_EQ(Integer("A")->GetValue(false, true), 4);
    EXPECT_EQ(Integer("S")->GetValue(), 8);
    port.PutLittle(0, 5, 4);
    EXPECT_EQ(Integer("S")->GetValue(false, true), 10);
    EXPECT_EQ(Integer("A")->ToString(), "5");
}

TEST_F(Caching, AFailedReadIsNotKept) {
    Load(Reg("R", "<Address>0</Address>"));
    port.failsNext = true;
    EXPECT_THROW(Integer("R")->GetValue(), TimeoutException);
    port.PutLittle(0, 3, 4);
    EXPECT_EQ(Integer("R")->GetValue(), 3);
}

TEST_F(Caching, AFailedWriteForgetsTheValue) {
    Load(Reg("R", "<Address>0</Address>"));
    EXPECT_EQ(Integer("R")->GetValue(), 0);
    port.failsNext = true;
    EXPECT_THROW(Integer("R")->SetValue(5), TimeoutException);
    port.PutLittle(0, 5, 4);
    EXPECT_EQ(Integer("R")->GetValue(), 5);
}

TEST_F(Caching, BitFieldsShareTheirWord) {
    Load(Reg("A", "<Address>0</Address>", "<LSB>0</LSB><MSB>7</MSB>", "MaskedIntReg") +
         Reg("B", "<Address>0</Address>", "<LSB>8</LSB><MSB>15</MSB>", "MaskedIntReg") +
         Reg("Word", "<Address>0</Address>"));
    port.PutLittle(0, 0x2211, 4);
    EXPECT_EQ(Integer("A")->GetValue(), 0x11);
    EXPECT_EQ(Integer("B")->GetValue(), 0x22);
    EXPECT_EQ(port.Reads(), 1);
    Integer("A")->SetValue(0x55);
    EXPECT_EQ(Integer("B")->GetValue(), 0x22);
    EXPECT_EQ(Integer("Word")->GetValue(), 0x2255);
    Integer("Word")->SetValue(0x8899);
    EXPECT_EQ(Integer("A")->GetValue(), 0x99);
    EXPECT_EQ(Integer("B")->GetValue(), 0x88);
    EXPECT_EQ(port.Reads(), 1);
}

TEST_F(Caching, AnUncachedNeighbourStartsFromFreshBits) {
    Load(Reg("A", "<Address>0</Address>", "<LSB>0</LSB><MSB>7</MSB><Cachable>NoCache</Cachable>", "MaskedIntReg"));
    EXPECT_EQ(Integer("A")->GetValue(), 0);
    port.PutLittle(0, 0xAABBCC00, 4);
    Integer("A")->SetValue(1);
    EXPECT_EQ(port.Little(0, 4), 0xAABBCC01U);
}

TEST_F(Caching, RegistersThatOverlapNoticeEachOther) {
    Load(Reg("Wide", "<Address>0</Address>") +
         "<IntReg Name='Narrow'><Address>2</Address><Length>2</Length><AccessMode>RW</AccessMode>"
         "<pPort>Device</pPort></IntReg>"
         "<Register Name='Block'><Address>1</Address><Length>40</Length><AccessMode>RW</AccessMode>"
         "<pPort>Device</pPort></Register>");
    std::uint8_t bytes[40] = {};
    Bytes("Block")->Get(bytes, 40);
    EXPECT_EQ(Integer("Wide")->GetValue(), 0);
    Integer("Narrow")->SetValue(0x1234);
    EXPECT_EQ(Integer("Wide")->GetValue(), 0x12340000);
    Bytes("Block")->Get(bytes, 40);
    EXPECT_EQ(bytes[2], 0x12);
    bytes[0] = 0x77;
    Bytes("Block")->Set(bytes, 40);
    EXPECT_EQ(Integer("Wide")->GetValue(), 0x12347700);
}

// The old value must not stay behind when a selector moves the address; moving back needs no second read.
TEST_F(Caching, AMovedAddressHasItsOwnValue) {
    Load(
        "<Integer Name='Sel'><Value>0</Value><pSelected>Gain</pSelected></Integer>"
        "<Integer Name='Gain'><pValue>Reg</pValue></Integer>" +
        Reg("Reg", "<Address>0x100</Address><pIndex Offset='8'>Sel</pIndex>"));
    for (int i = 0; i < 4; ++i)
        port.PutLittle(0x100 + 8 * i, static_cast<unsigned>(10 + i), 4);
    for (int i = 0; i < 4; ++i) {
        Integer("Sel")->SetValue(i);
        EXPECT_EQ(Integer("Gain")->GetValue(), 10 + i);
    }
    EXPECT_EQ(port.Reads(), 4);
    Integer("Sel")->SetValue(1);
    EXPECT_EQ(Integer("Gain")->GetValue(), 11);
    EXPECT_EQ(port.Reads(), 4);
    Integer("Gain")->SetValue(99);
    EXPECT_EQ(port.Little(0x108, 4), 99U);
    Integer("Sel")->SetValue(0);
    EXPECT_EQ(Integer("Gain")->GetValue(), 10);
}

TEST_F(Caching, ASelectorInTheDeviceInvalidatesWhatItSelects) {
    Load("<Integer Name='Sel'><pValue>SelReg</pValue><pSelected>Gain</pSelected></Integer>" +
         Reg("SelReg", "<Address>0</Address>") + "<Integer Name='Gain'><pValue>Reg</pValue></Integer>" +
         Reg("Reg", "<Address>0x100</Address>"));
    EXPECT_EQ(Integer("Gain")->GetValue(), 0);
    port.PutLittle(0x100, 7, 4);
    Integer("Sel")->SetValue(1);
    EXPECT_EQ(Integer("Gain")->GetValue(), 7);
}

TEST_F(Caching, AnInvalidatorDropsTheValue) {
    Load(Reg("Mode", "<Address>0</Address>") +
         Reg("Rate", "<Address>8</Address>", "<pInvalidator>Mode</pInvalidator>") +
         "<Integer Name='A'><pValue>Rate</pValue></Integer>");
    EXPECT_EQ(Integer("A")->GetValue(), 0);
    port.PutLittle(8, 30, 4);
    Integer("Mode")->SetValue(1);
    EXPECT_EQ(Integer("A")->GetValue(), 30);
}

// An invalidator of a feature means the value of the feature: the register behind it is asked again.
TEST_F(Caching, AnInvalidatorOfAFeatureReachesItsRegister) {
    Load(Reg("Mode", "<Address>0</Address>") + Reg("Rate", "<Address>8</Address>") +
         "<Integer Name='A'><pValue>Rate</pValue><pInvalidator>Mode</pInvalidator></Integer>");
    EXPECT_EQ(Integer("A")->GetValue(), 0);
    port.PutLittle(8, 30, 4);
    Integer("Mode")->SetValue(1);
    EXPECT_EQ(Integer("A")->GetValue(), 30);
}

TEST_F(Caching, AnInvalidatorWorksThroughOthers) {
    Load(Reg("Mode", "<Address>0</Address>") + "<Integer Name='ModeFeature'><pValue>Mode</pValue></Integer>" +
         Reg("Rate", "<Address>8</Address>", "<pInvalidator>ModeFeature</pInvalidator>"));
    EXPECT_EQ(Integer("Rate")->GetValue(), 0);
    port.PutLittle(8, 30, 4);
    Integer("Mode")->SetValue(1);
    EXPECT_EQ(Integer("Rate")->GetValue(), 30);
}

TEST_F(Caching, InvalidateNodeReadsAgain) {
    Load(Reg("R", "<Address>0</Address>") + "<Integer Name='A'><pValue>R</pValue></Integer>");
    EXPECT_EQ(Integer("A")->GetValue(), 0);
    port.PutLittle(0, 4, 4);
    Node("A")->InvalidateNode();
    EXPECT_EQ(Integer("A")->GetValue(), 4);
    port.PutLittle(0, 5, 4);
    map._InvalidateNodes();
    EXPECT_EQ(Integer("A")->GetValue(), 5);
}

TEST_F(Caching, AccessModesAreInvalidatedToo) {
    Load(Reg("Lock", "<Address>0</Address>") +
         "<Integer Name='A'><Value>1</Value><pIsLocked>Lock</pIsLocked></Integer>");
    EXPECT_EQ(Mode("A"), RW);
    EXPECT_EQ(Mode("A"), RW);
    EXPECT_EQ(port.Reads(), 1);
    Integer("Lock")->SetValue(1);
    EXPECT_EQ(Mode("A"), RO);
}

TEST_F(Caching, APollingTimeInvalidatesWhenItIsOver) {
    Load(Reg("R", "<Address>0</Address>", "<PollingTime>100</PollingTime>"));
    EXPECT_EQ(Node("R")->GetPollingTime(), 100);
    EXPECT_EQ(Integer("R")->GetValue(), 0);
    port.PutLittle(0, 4, 4);
    map._Poll(60);
    EXPECT_EQ(Integer("R")->GetValue(), 0);
    map._Poll(60);
    EXPECT_EQ(Integer("R")->GetValue(), 4);
}

TEST_F(Caching, PollingMayBeBlocked) {
    Load(Reg("R", "<Address>0</Address>", "<PollingTime>100</PollingTime><pBlockPolling>Block</pBlockPolling>") +
         "<Integer Name='Block'><Value>1</Value></Integer>");
    EXPECT_EQ(Integer("R")->GetValue(), 0);
    port.PutLittle(0, 4, 4);
    map._Poll(200);
    EXPECT_EQ(Integer("R")->GetValue(), 0);
    Integer("Block")->SetValue(0);
    map._Poll(200);
    EXPECT_EQ(Integer("R")->GetValue(), 4);
}

TEST_F(Caching, AnInvalidatorOfAStructureReachesItsEntries) {
    Load(
        "<StructReg Comment='S'><pInvalidator>Mode</pInvalidator><pAddress>Base</pAddress><Length>4</Length>"
        "<AccessMode>RW</AccessMode><pPort>Device</pPort><StructEntry Name='E'><LSB>0</LSB><MSB>7</MSB></StructEntry>"
        "</StructReg><Integer Name='Mode'><Value>0</Value></Integer><Integer Name='Base'><Value>0</Value></Integer>");
    EXPECT_EQ(Integer("E")->GetValue(), 0);
    port.PutLittle(0, 9, 4);
    EXPECT_EQ(Integer("E")->GetValue(), 0);
    Integer("Mode")->SetValue(1);
    EXPECT_EQ(Integer("E")->GetValue(), 9);
    port.PutLittle(0x20, 5, 4);
    Integer("Base")->SetValue(0x20);
    EXPECT_EQ(Integer("E")->GetValue(), 5);
}

TEST_F(Caching, WhatDependsOnAnUncachedRegisterIsComputedEachTime) {
    Load(Reg("R", "<Address>0</Address>", "<Cachable>NoCache</Cachable>") +
         "<IntSwissKnife Name='S'><pVariable Name='X'>R</pVariable><Formula>X + 1</Formula></IntSwissKnife>"
         "<Integer Name='A'><Value>0</Value><pMax>S</pMax></Integer>");
    EXPECT_EQ(Integer("A")->GetMax(), 1);
    port.PutLittle(0, 41, 4);
    EXPECT_EQ(Integer("A")->GetMax(), 42);
}

TEST_F(Caching, AddressesFromUncachedNodesAreLookedUpEachTime) {
    Load(Reg("Base", "<Address>0</Address>", "<Cachable>NoCache</Cachable>") +
         Reg("R", "<Address>0x10</Address><pAddress>Base</pAddress>"));
    port.PutLittle(0x10, 1, 4);
    port.PutLittle(0x20, 2, 4);
    EXPECT_EQ(Integer("R")->GetValue(), 1);
    port.PutLittle(0, 0x10, 4);
    EXPECT_EQ(Integer("R")->GetValue(), 2);
}

TEST_F(Caching, AWriteToAPortDropsEverything) {
    Load(Reg("R", "<Address>0</Address>"));
    EXPECT_EQ(Integer("R")->GetValue(), 0);
    const std::uint8_t byte = 3;
    CPortPtr(Node("Device"))->Write(&byte, 0, 1);
    EXPECT_EQ(Integer("R")->GetValue(), 3);
}

TEST_F(Caching, ThousandsOfAddressesDoNotPileUp) {
    Load("<Integer Name='Sel'><Value>0</Value></Integer>" +
         Reg("Reg", "<Address>0</Address><pIndex Offset='1'>Sel</pIndex>"));
    for (int i = 0; i < 50000; i += 2) {
        Integer("Sel")->SetValue(i);
        ASSERT_EQ(Integer("Reg")->GetValue(), 0);
    }
    Integer("Reg")->SetValue(1);
    EXPECT_EQ(port.Little(49998, 4), 1U);
}

TEST_F(Caching, AFeatureIsCachedLikeTheLeastCachedPartOfItsValue) {
    Load(Reg("Volatile", "<Address>0</Address>", "<Cachable>NoCache</Cachable>") +
         Reg("Around", "<Address>4</Address>", "<Cachable>WriteAround</Cachable>") +
         Reg("Plain", "<Address>8</Address>") + Reg("Moving", "<pAddress>Volatile</pAddress>") +
         "<SwissKnife Name='S'><pVariable Name='X'>Plain</pVariable><pVariable Name='Y'>Volatile</pVariable>"
         "<Formula>X+Y</Formula></SwissKnife>"
         "<IntConverter Name='C'><pVariable Name='X'>Around</pVariable><FormulaTo>FROM+X</FormulaTo>"
         "<FormulaFrom>TO-X</FormulaFrom><pValue>Plain</pValue></IntConverter>"
         "<Integer Name='A'><Value>1</Value><pIsLocked>Volatile</pIsLocked></Integer>"
         "<Float Name='F'><pValue>S</pValue></Float>");
    EXPECT_EQ(Node("Plain")->GetCachingMode(), WriteThrough);
    EXPECT_EQ(Node("Moving")->GetCachingMode(), NoCache);
    EXPECT_EQ(Node("S")->GetCachingMode(), NoCache);
    EXPECT_EQ(Node("F")->GetCachingMode(), NoCache);
    EXPECT_FALSE(Node("F")->IsCachable());
    EXPECT_EQ(Node("C")->GetCachingMode(), WriteAround);
    EXPECT_EQ(Node("A")->GetCachingMode(), WriteThrough);
}

TEST_F(Caching, AnEntryMovesWithItsStructure) {
    Load(Reg("Volatile", "<Address>0</Address>", "<Cachable>NoCache</Cachable>") +
         "<StructReg Comment='S'><pAddress>Volatile</pAddress><Length>4</Length><AccessMode>RW</AccessMode>"
         "<pPort>Device</pPort><StructEntry Name='E'><Bit>0</Bit></StructEntry></StructReg>");
    EXPECT_EQ(Node("E")->GetCachingMode(), NoCache);
}

// Blocks that come up one after the other are found by the writes to others that share their bytes.
TEST_F(Caching, PlacesThatAreReadLaterNoticeWrites) {
    Load("<Integer Name='At'><Value>0</Value></Integer>" + Reg("Moving", "<pAddress>At</pAddress>") +
         "<IntReg Name='Byte'><pAddress>At</pAddress><Length>1</Length><AccessMode>RW</AccessMode>"
         "<pPort>Device</pPort></IntReg>" +
         Reg("Fixed", "<Address>0x40</Address>"));
    Integer("Fixed")->SetValue(0);
    for (const int address : {0x38, 0x48, 0x3E, 0x42, 0x40}) {
        Integer("At")->SetValue(address);
        EXPECT_EQ(Integer("Moving")->GetValue(), 0);
    }
    for (const int address : {0x3E, 0x42, 0x40}) {
        Integer("At")->SetValue(address);
        Integer("Fixed")->SetValue(0x44332211);
        EXPECT_EQ(Integer("Moving")->GetValue(), static_cast<std::int64_t>(port.Little(address, 4))) << address;
        Integer("At")->SetValue(0x41);
        Integer("Byte")->SetValue(0x99);
        EXPECT_EQ(Integer("Fixed")->GetValue(), 0x44339911);
    }
}

}  // namespace genapitest
