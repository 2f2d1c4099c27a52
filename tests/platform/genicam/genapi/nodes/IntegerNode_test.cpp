/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Integer nodes: constants, references, ranges, increments, texts
 */

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class IntegerNode : public NodeMapTest {};

TEST_F(IntegerNode, HoldsAConstant) {
    Load("<Integer Name='A'><Value>42</Value></Integer>");
    EXPECT_EQ(Integer("A")->GetValue(), 42);
    EXPECT_EQ(Mode("A"), RW);
}

TEST_F(IntegerNode, ReadsHexadecimalConstants) {
    Load(
        "<Integer Name='A'><Value>0x1F</Value></Integer>"
        "<Integer Name='B'><Value> -0x10 </Value></Integer>"
        "<Integer Name='C'><Value>0xFFFFFFFFFFFFFFFF</Value></Integer>");
    EXPECT_EQ(Integer("A")->GetValue(), 31);
    EXPECT_EQ(Integer("B")->GetValue(), -16);
    EXPECT_EQ(Integer("C")->GetValue(), -1);
}

TEST_F(IntegerNode, KeepsAWrittenConstant) {
    Load("<Integer Name='A'><Value>1</Value></Integer>");
    Integer("A")->SetValue(7);
    EXPECT_EQ(Integer("A")->GetValue(), 7);
}

TEST_F(IntegerNode, HasTheWholeRangeByDefault) {
    Load("<Integer Name='A'><Value>1</Value></Integer>");
    EXPECT_EQ(Integer("A")->GetMin(), INT64_MIN);
    EXPECT_EQ(Integer("A")->GetMax(), INT64_MAX);
    EXPECT_EQ(Integer("A")->GetInc(), 1);
    EXPECT_EQ(Integer("A")->GetIncMode(), fixedIncrement);
}

TEST_F(IntegerNode, RefusesValuesOutsideItsRange) {
    Load("<Integer Name='A'><Value>5</Value><Min>-3</Min><Max>12</Max><Inc>5</Inc></Integer>");
    EXPECT_THROW(Integer("A")->SetValue(-4), OutOfRangeException);
    EXPECT_THROW(Integer("A")->SetValue(13), OutOfRangeException);
    EXPECT_THROW(Integer("A")->SetValue(3), OutOfRangeException);
    EXPECT_EQ(Integer("A")->GetValue(), 5);
    Integer("A")->SetValue(7);
    EXPECT_EQ(Integer("A")->GetValue(), 7);
}

TEST_F(IntegerNode, SetsAnyValueWithoutVerification) {
    Load("<Integer Name='A'><Value>5</Value><Max>12</Max></Integer>");
    Integer("A")->SetValue(1000, false);
    EXPECT_EQ(Integer("A")->GetValue(), 1000);
    EXPECT_THROW(Integer("A")->GetValue(true), OutOfRangeException);
}

TEST_F(IntegerNode, TakesItsRangeFromNodes) {
    Load(
        "<Integer Name='A'><Value>5</Value><pMin>Lo</pMin><pMax>Hi</pMax><pInc>Step</pInc></Integer>"
        "<Integer Name='Lo'><Value>1</Value></Integer><Integer Name='Hi'><Value>9</Value></Integer>"
        "<Integer Name='Step'><Value>4</Value></Integer>");
    EXPECT_EQ(Integer("A")->GetMin(), 1);
    EXPECT_EQ(Integer("A")->GetMax(), 9);
    EXPECT_EQ(Integer("A")->GetInc(), 4);
    Integer("Hi")->SetValue(20);
    EXPECT_EQ(Integer("A")->GetMax(), 20);
}

TEST_F(IntegerNode, TakesTheRangeOfTheNodeBehind) {
    Load(
        "<Integer Name='A'><pValue>B</pValue></Integer>"
        "<Integer Name='B'><Value>5</Value><Min>2</Min><Max>8</Max><Inc>3</Inc><Unit>us</Unit>"
        "<Representation>Linear</Representation></Integer>");
    EXPECT_EQ(Integer("A")->GetMin(), 2);
    EXPECT_EQ(Integer("A")->GetMax(), 8);
    EXPECT_EQ(Integer("A")->GetInc(), 3);
    EXPECT_EQ(Integer("A")->GetUnit(), "us");
    EXPECT_EQ(Integer("A")->GetRepresentation(), Linear);
}

TEST_F(IntegerNode, VerifiesTheNodesBehindToo) {
    Load(
        "<Integer Name='A'><pValue>B</pValue><Max>100</Max></Integer>"
        "<Integer Name='B'><Value>5</Value><Max>8</Max></Integer>");
    EXPECT_THROW(Integer("A")->SetValue(9), OutOfRangeException);
}

TEST_F(IntegerNode, ReadsAndWritesThroughAReference) {
    Load("<Integer Name='A'><pValue>B</pValue></Integer><Integer Name='B'><Value>5</Value></Integer>");
    EXPECT_EQ(Integer("A")->GetValue(), 5);
    Integer("A")->SetValue(6);
    EXPECT_EQ(Integer("B")->GetValue(), 6);
}

TEST_F(IntegerNode, WritesItsCopies) {
    Load(
        "<Integer Name='A'><pValue>B</pValue><pValueCopy>C</pValueCopy><pValueCopy>D</pValueCopy></Integer>"
        "<Integer Name='B'><Value>0</Value></Integer><Integer Name='C'><Value>0</Value></Integer>"
        "<Integer Name='D'><Value>0</Value></Integer>");
    Integer("A")->SetValue(3);
    EXPECT_EQ(Integer("B")->GetValue(), 3);
    EXPECT_EQ(Integer("C")->GetValue(), 3);
    EXPECT_EQ(Integer("D")->GetValue(), 3);
}

TEST_F(IntegerNode, WritesNothingWhenACopyIsReadOnly) {
    Load(
        "<Integer Name='A'><pValue>B</pValue><pValueCopy>C</pValueCopy></Integer>"
        "<Integer Name='B'><Value>0</Value></Integer>"
        "<Integer Name='C'><Value>0</Value><ImposedAccessMode>RO</ImposedAccessMode></Integer>");
    EXPECT_THROW(Integer("A")->SetValue(3), AccessException);
    EXPECT_EQ(Integer("B")->GetValue(), 0);
}

TEST_F(IntegerNode, SelectsAValueByIndex) {
    Load(
        "<Integer Name='A'><pIndex>I</pIndex><ValueIndexed Index='0'>10</ValueIndexed>"
        "<ValueIndexed Index='0x1'>11</ValueIndexed><pValueIndexed Index='2'>N</pValueIndexed>"
        "<ValueDefault>99</ValueDefault></Integer>"
        "<Integer Name='I'><Value>0</Value></Integer><Integer Name='N'><Value>12</Value></Integer>");
    EXPECT_EQ(Integer("A")->GetValue(), 10);
    Integer("I")->SetValue(1);
    EXPECT_EQ(Integer("A")->GetValue(), 11);
    Integer("I")->SetValue(2);
    EXPECT_EQ(Integer("A")->GetValue(), 12);
    Integer("A")->SetValue(13);
    EXPECT_EQ(Integer("N")->GetValue(), 13);
    Integer("I")->SetValue(3);
    EXPECT_EQ(Integer("A")->GetValue(), 99);
}

TEST_F(IntegerNode, KeepsValuesByIndex) {
    Load(
        "<Integer Name='A'><pIndex>I</pIndex><ValueIndexed Index='0'>10</ValueIndexed>"
        "<ValueIndexed Index='1'>11</ValueIndexed></Integer><Integer Name='I'><Value>0</Value></Integer>");
    Integer("A")->SetValue(20);
    Integer("I")->SetValue(1);
    EXPECT_EQ(Integer("A")->GetValue(), 11);
    Integer("I")->SetValue(0);
    EXPECT_EQ(Integer("A")->GetValue(), 20);
}

TEST_F(IntegerNode, IsNotAvailableForAnIndexWithoutAValue) {
    Load(
        "<Integer Name='A'><pIndex>I</pIndex><ValueIndexed Index='0'>10</ValueIndexed></Integer>"
        "<Integer Name='I'><Value>5</Value></Integer>");
    EXPECT_EQ(Mode("A"), NA);
    EXPECT_THROW(Integer("A")->GetValue(), AccessException);
}

TEST_F(IntegerNode, TakesOnlyValidValues) {
    Load(
        "<Integer Name='A'><Value>1</Value><Min>0</Min><Max>50</Max><ValidValueSet>1; 4;16 ;64</ValidValueSet>"
        "</Integer>");
    EXPECT_EQ(Integer("A")->GetIncMode(), listIncrement);
    EXPECT_THROW(Integer("A")->SetValue(2), OutOfRangeException);
    EXPECT_THROW(Integer("A")->SetValue(64), OutOfRangeException);
    Integer("A")->SetValue(16);
    const int64_autovector_t bounded = Integer("A")->GetListOfValidValues();
    EXPECT_EQ(std::vector<std::int64_t>(bounded.begin(), bounded.end()), (std::vector<std::int64_t>{1, 4, 16}));
    EXPECT_EQ(Integer("A")->GetListOfValidValues(false).size(), 4U);
}

TEST_F(IntegerNode, IsPrintedByItsRepresentation) {
    Load(
        "<Integer Name='Dec'><Value>-255</Value></Integer>"
        "<Integer Name='Hex'><Value>255</Value><Representation>HexNumber</Representation></Integer>"
        "<Integer Name='Ip'><Value>0xC0A80102</Value><Representation>IPV4Address</Representation></Integer>"
        "<Integer Name='Mac'><Value>0x0030531A2B3C</Value><Representation>MACAddress</Representation></Integer>");
    EXPECT_EQ(Integer("Dec")->ToString(), "-255");
    EXPECT_EQ(Integer("Hex")->ToString(), "0xff");
    EXPECT_EQ(Integer("Ip")->ToString(), "192.168.1.2");
    EXPECT_EQ(Integer("Mac")->ToString(), "00:30:53:1a:2b:3c");
}

TEST_F(IntegerNode, IsParsedByItsRepresentation) {
    Load(
        "<Integer Name='Dec'><Value>0</Value></Integer>"
        "<Integer Name='Ip'><Value>0</Value><Representation>IPV4Address</Representation></Integer>"
        "<Integer Name='Mac'><Value>0</Value><Representation>MACAddress</Representation></Integer>");
    Integer("Dec")->FromString(" 0x20 ");
    EXPECT_EQ(Integer("Dec")->GetValue(), 32);
    Integer("Ip")->FromString("10.0.0.255");
    EXPECT_EQ(Integer("Ip")->GetValue(), 0x0A0000FF);
    Integer("Mac")->FromString("00:30:53:1A:2b:3c");
    EXPECT_EQ(Integer("Mac")->GetValue(), 0x0030531A2B3C);
    EXPECT_THROW(Integer("Dec")->FromString("seven"), InvalidArgumentException);
    EXPECT_THROW(Integer("Ip")->FromString("10.0.0.256"), InvalidArgumentException);
    EXPECT_THROW(Integer("Ip")->FromString("10.0.0"), InvalidArgumentException);
}

TEST_F(IntegerNode, CanBeNarrowedAtRunTime) {
    Load("<Integer Name='A'><Value>5</Value></Integer>");
    Integer("A")->ImposeMin(3);
    Integer("A")->ImposeMax(7);
    EXPECT_EQ(Integer("A")->GetMin(), 3);
    EXPECT_EQ(Integer("A")->GetMax(), 7);
    EXPECT_THROW(Integer("A")->SetValue(8), OutOfRangeException);
}

TEST_F(IntegerNode, ChecksTheIncrementOverTheWholeRange) {
    Load("<Integer Name='A'><Value>0</Value><Min>-9223372036854775807</Min><Inc>2</Inc></Integer>");
    Integer("A")->SetValue(9223372036854775807);
    EXPECT_THROW(Integer("A")->SetValue(0), OutOfRangeException);
}

TEST_F(IntegerNode, RoundsTheNumberOfAFloatBehind) {
    Load("<Integer Name='A'><pValue>B</pValue></Integer><Float Name='B'><Value>2.6</Value></Float>");
    EXPECT_EQ(Integer("A")->GetValue(), 3);
    Integer("A")->SetValue(5);
    EXPECT_EQ(Float("B")->GetValue(), 5.0);
}

TEST_F(IntegerNode, WithoutAValueIsNotImplemented) {
    Load("<Integer Name='A'><Min>0</Min></Integer>");
    EXPECT_EQ(Mode("A"), NI);
    EXPECT_THROW(Integer("A")->GetValue(), AccessException);
}

TEST_F(IntegerNode, WithAnUnreadableValueNamesNodeAndLine) {
    Load("<Integer Name='A'>\n<Value>many</Value></Integer>");
    try {
        Integer("A")->GetValue();
        FAIL() << "read";
    } catch (const AccessException& exception) {
        const std::string text = exception.GetDescription();
        EXPECT_NE(text.find("'A' (line 3)"), std::string::npos) << text;
        EXPECT_NE(text.find("'many'"), std::string::npos) << text;
    }
    EXPECT_EQ(Warnings(wkUnusableNode), 1);
}

TEST_F(IntegerNode, SaturatesAMaximumThatIsTooLarge) {
    Load(
        "<Integer Name='A'><Value>1</Value><Max>0xFFFFFFFFFFFFFFFF</Max></Integer>"
        "<Integer Name='B'><Value>1</Value><Max>18446744073709551615</Max></Integer>");
    EXPECT_EQ(Integer("A")->GetMax(), INT64_MAX);
    EXPECT_EQ(Integer("B")->GetMax(), INT64_MAX);
}

TEST_F(IntegerNode, HasShortcuts) {
    Load("<Integer Name='A'><Value>1</Value></Integer>");
    CIntegerPtr a = Node("A");
    *a = 9;
    EXPECT_EQ((*a)(), 9);
    EXPECT_EQ(**a, 9);
    static_cast<IValue&>(*a) = gcstring("10");
    EXPECT_EQ(a->GetValue(), 10);
}

TEST_F(IntegerNode, OffersTheValidValuesOfTheNodeBehind) {
    Load(
        "<Integer Name='A'><pValue>B</pValue><Max>8</Max></Integer><Integer Name='B'><pValue>C</pValue></Integer>"
        "<Integer Name='C'><Value>4</Value><ValidValueSet>2;4;8;16</ValidValueSet></Integer>");
    EXPECT_EQ(Integer("A")->GetIncMode(), listIncrement);
    ASSERT_EQ(Integer("A")->GetListOfValidValues().size(), 3U);
    EXPECT_EQ(Integer("A")->GetListOfValidValues()[2], 8);
    EXPECT_EQ(Integer("A")->GetListOfValidValues(false).size(), 4U);
    EXPECT_THROW(Integer("A")->SetValue(5), OutOfRangeException);
}

TEST_F(IntegerNode, AnIncrementOfItsOwnHidesTheValidValuesBehind) {
    Load(
        "<Integer Name='A'><pValue>B</pValue><Inc>2</Inc></Integer>"
        "<Integer Name='B'><Value>4</Value><ValidValueSet>2;4;8;16</ValidValueSet></Integer>");
    EXPECT_EQ(Integer("A")->GetIncMode(), fixedIncrement);
    EXPECT_EQ(Integer("A")->GetListOfValidValues().size(), 0U);
}

TEST_F(IntegerNode, WritesNothingWhenACopyRefusesTheValue) {
    Load(
        "<Integer Name='A'><pValue>B</pValue><pValueCopy>C</pValueCopy><pValueCopy>D</pValueCopy></Integer>"
        "<Integer Name='B'><Value>1</Value></Integer><Integer Name='C'><Value>1</Value></Integer>"
        "<Float Name='D'><Value>1</Value><Max>5</Max></Float>");
    EXPECT_THROW(Integer("A")->SetValue(6), OutOfRangeException);
    EXPECT_EQ(Integer("B")->GetValue(), 1);
    EXPECT_EQ(Integer("C")->GetValue(), 1);
    Integer("A")->SetValue(6, false);
    EXPECT_DOUBLE_EQ(Float("D")->GetValue(), 6.0);
}

TEST_F(IntegerNode, IsReadOnlyWhenACopyIs) {
    Load(
        "<Integer Name='A'><pValue>B</pValue><pValueCopy>C</pValueCopy></Integer>"
        "<Integer Name='B'><Value>1</Value></Integer>"
        "<Integer Name='C'><Value>1</Value><pIsLocked>Lock</pIsLocked></Integer>"
        "<Integer Name='Lock'><Value>1</Value></Integer>");
    EXPECT_EQ(Mode("A"), RO);
    Integer("Lock")->SetValue(0);
    EXPECT_EQ(Mode("A"), RW);
}

}  // namespace genapitest
