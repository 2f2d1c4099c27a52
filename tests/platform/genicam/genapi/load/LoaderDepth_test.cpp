/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Loading: circles, long chains, large files
 */

#include "LoadingFixture.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

TEST_F(Loading, ACircleOfValuesThrowsWhenItIsUsed) {
    Load(
        "<Integer Name='A'><pValue>B</pValue></Integer><Integer Name='B'><pValue>C</pValue></Integer>"
        "<Integer Name='C'><pValue>A</pValue></Integer><Integer Name='D'><Value>1</Value></Integer>");
    EXPECT_THROW(Integer("B")->GetValue(), AccessException);
    EXPECT_EQ(Mode("A"), NI);
    EXPECT_EQ(Mode("B"), NI);
    EXPECT_EQ(Mode("C"), NI);
    EXPECT_EQ(Integer("D")->GetValue(), 1);
}

TEST_F(Loading, ANodeThatIsItsOwnValueOrBound) {
    Load(
        "<Integer Name='A'><pValue>A</pValue></Integer>"
        "<Integer Name='B'><Value>1</Value><pMax>B</pMax></Integer>"
        "<IntSwissKnife Name='S'><pVariable Name='X'>S</pVariable><Formula>X+1</Formula></IntSwissKnife>"
        "<IntReg Name='R'><pAddress>R</pAddress><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
        "</IntReg><Register Name='L'><Address>0</Address><pLength>LI</pLength><pPort>Device</pPort></Register>"
        "<IntSwissKnife Name='LI'><pVariable Name='X'>LI2</pVariable><Formula>X</Formula></IntSwissKnife>"
        "<Integer Name='LI2'><pValue>LI</pValue></Integer>");
    EXPECT_THROW(Integer("A")->GetValue(), AccessException);
    EXPECT_EQ(Integer("B")->GetMax(), 1);
    EXPECT_THROW(Integer("S")->GetValue(), AccessException);
    EXPECT_THROW(Integer("R")->GetValue(), AccessException);
    EXPECT_THROW(Bytes("L")->Get(nullptr, 1), AccessException);
}

TEST_F(Loading, BoundsThatReferToEachOtherAreNoCircle) {
    Load(
        "<Integer Name='Lo'><Value>2</Value><pMax>Hi</pMax></Integer>"
        "<Integer Name='Hi'><Value>8</Value><pMin>Lo</pMin></Integer>");
    EXPECT_EQ(Integer("Lo")->GetMax(), 8);
    EXPECT_EQ(Integer("Hi")->GetMin(), 2);
    Integer("Lo")->SetValue(8);
    EXPECT_THROW(Integer("Lo")->SetValue(9), OutOfRangeException);
}

TEST_F(Loading, BoundsInACircleThrow) {
    Load(
        "<IntSwissKnife Name='S'><pVariable Name='X.Max'>A</pVariable><Formula>X.Max</Formula></IntSwissKnife>"
        "<Integer Name='A'><Value>1</Value><pMax>S</pMax></Integer>");
    EXPECT_THROW(Integer("A")->GetMax(), GenericException);
}

TEST_F(Loading, AChainMayBeLong) {
    std::string nodes;
    for (int i = 0; i < 50000; ++i)
        nodes += "<Integer Name='N" + std::to_string(i) + "'><pValue>N" + std::to_string(i + 1) + "</pValue></Integer>";
    Load(nodes + "<Integer Name='N50000'><Value>1</Value></Integer>");
    EXPECT_EQ(Mode("N0"), RW);
    EXPECT_EQ(Integer("N0")->GetValue(), 1);
    EXPECT_EQ(Integer("N0")->GetMax(), INT64_MAX);
    Integer("N50000")->SetValue(2);
    EXPECT_EQ(Integer("N0")->GetValue(false, true), 2);
    Integer("N49950")->SetValue(3);
    EXPECT_EQ(Integer("N0")->GetValue(), 3);
    EXPECT_THROW(Integer("N0")->SetValue(4), LogicalErrorException);
    EXPECT_EQ(Integer("N50000")->GetValue(), 3);
}

TEST_F(Loading, AppearanceEndsInALongChainAndInACircle) {
    std::string nodes;
    for (int i = 0; i < 50000; ++i)
        nodes += "<Integer Name='N" + std::to_string(i) + "'><pValue>N" + std::to_string(i + 1) + "</pValue></Integer>";
    Load(nodes +
         "<Integer Name='N50000'><Value>1</Value><Unit>us</Unit></Integer>"
         "<Integer Name='A'><pValue>B</pValue></Integer><Integer Name='B'><pValue>A</pValue></Integer>");
    EXPECT_EQ(Integer("N49990")->GetUnit(), "us");
    EXPECT_EQ(Integer("N0")->GetRepresentation(), PureNumber);
    EXPECT_EQ(Integer("A")->GetUnit(), "");
}

TEST_F(Loading, StrangeNamesAreLookedUpQuickly) {
    std::string prefixes;
    for (int i = 0; i < 1000000; ++i)
        prefixes += "Std::";
    Load("<Integer Name='A'><pValue>EnumEntry_" + std::string(5000000, '_') + "</pValue></Integer>" +
         "<Integer Name='B'><pValue>" + prefixes + "</pValue></Integer>");
    EXPECT_EQ(Mode("A"), NI);
    EXPECT_EQ(Mode("B"), NI);
}

TEST_F(Loading, AStructureMayHaveVeryManyEntries) {
    std::string entries;
    for (int i = 0; i < 100000; ++i)
        entries +=
            "<StructEntry Name='E" + std::to_string(i) + "'><Bit>" + std::to_string(i % 32) + "</Bit></StructEntry>";
    Load(
        "<StructReg Comment='S'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort>" +
        entries + "</StructReg>");
    Integer("E77")->SetValue(1);
    int set = 0;
    for (int i = 0; i < 100000; ++i)
        set += static_cast<int>(Integer("E" + std::to_string(i))->GetValue());
    EXPECT_EQ(set, 3125);
}

// --- Size ---

TEST_F(Loading, AFileOf50MegabytesLoads) {
    std::string nodes;
    const std::string text(200, 'x');
    int count = 0;
    while (nodes.size() < 50U * 1024 * 1024) {
        const std::string number = std::to_string(count++);
        nodes += "<Integer Name='Feature" + number + "'><ToolTip>" + text + "</ToolTip><pValue>Register" + number +
                 "</pValue></Integer><IntReg Name='Register" + number + "'><Address>" + number +
                 "</Address><Length>1</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>\n";
    }
    Load(nodes);
    EXPECT_EQ(map._GetNodeMap()->GetNumNodes(), 2U * static_cast<unsigned>(count) + 1);
    EXPECT_EQ(Integer("Feature12345")->GetValue(), 0);
    EXPECT_EQ(Bytes("Register12345")->GetAddress(), 12345);
}

}  // namespace genapitest
