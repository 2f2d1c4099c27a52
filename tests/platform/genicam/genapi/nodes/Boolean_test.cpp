/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Booleans
 */

#include "NodeTexts.h"
#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class BooleanNode : public NodeMapTest {};

TEST_F(BooleanNode, IsOneOrZeroByDefault) {
    Load("<Boolean Name='B'><pValue>R</pValue></Boolean>" + Reg("R"));
    EXPECT_FALSE(Bool("B")->GetValue());
    Bool("B")->SetValue(true);
    EXPECT_EQ(port.Little(0, 4), 1U);
    EXPECT_TRUE((*Bool("B"))());
    *Bool("B") = false;
    EXPECT_EQ(port.Little(0, 4), 0U);
}

TEST_F(BooleanNode, HasItsOwnValuesForTrueAndFalse) {
    Load("<Boolean Name='B'><pValue>R</pValue><OnValue>0x80</OnValue><OffValue>0x7F</OffValue></Boolean>" + Reg("R"));
    Bool("B")->SetValue(true);
    EXPECT_EQ(port.Little(0, 4), 0x80U);
    Bool("B")->SetValue(false);
    EXPECT_EQ(port.Little(0, 4), 0x7FU);
    EXPECT_FALSE(Bool("B")->GetValue());
    Integer("R")->SetValue(3);
    EXPECT_THROW(Bool("B")->GetValue(), OutOfRangeException);
}

TEST_F(BooleanNode, SelectsItsValueByIndex) {
    Load(
        "<Boolean Name='B'><pIndex>I</pIndex><ValueIndexed Index='0'>0</ValueIndexed>"
        "<pValueIndexed Index='1'>R</pValueIndexed></Boolean><Integer Name='I'><Value>0</Value></Integer>" +
        Reg("R"));
    EXPECT_FALSE(Bool("B")->GetValue());
    Integer("I")->SetValue(1);
    Bool("B")->SetValue(true);
    EXPECT_EQ(port.Little(0, 4), 1U);
    Integer("I")->SetValue(0);
    EXPECT_FALSE(Bool("B")->GetValue());
}

TEST_F(BooleanNode, HasTexts) {
    Load("<Boolean Name='B'><Value>0</Value></Boolean>");
    EXPECT_EQ(Bool("B")->ToString(), "0");
    Bool("B")->FromString("true");
    EXPECT_EQ(Bool("B")->ToString(), "1");
    Bool("B")->FromString("0");
    EXPECT_FALSE(Bool("B")->GetValue());
    EXPECT_THROW(Bool("B")->FromString("maybe"), InvalidArgumentException);
}

TEST_F(BooleanNode, IsANumberForOthers) {
    Load(
        "<Boolean Name='B'><Value>40</Value><OnValue>40</OnValue><OffValue>3</OffValue></Boolean>"
        "<Integer Name='I'><pValue>B</pValue></Integer>"
        "<IntSwissKnife Name='S'><pVariable Name='X'>B</pVariable><Formula>X * 5</Formula></IntSwissKnife>");
    EXPECT_EQ(Integer("I")->GetValue(), 1);
    EXPECT_EQ(Integer("S")->GetValue(), 5);
    Integer("I")->SetValue(0);
    EXPECT_FALSE(Bool("B")->GetValue());
    EXPECT_EQ(Integer("S")->GetValue(), 0);
}

TEST_F(BooleanNode, WithOneValueForBothIsNotImplemented) {
    Load("<Boolean Name='B'><Value>1</Value><OnValue>1</OnValue><OffValue>1</OffValue></Boolean>");
    EXPECT_EQ(Mode("B"), NI);
}

}  // namespace genapitest
