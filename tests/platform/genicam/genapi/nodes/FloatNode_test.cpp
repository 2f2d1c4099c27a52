/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Float nodes and float registers
 */

#include <cmath>
#include <limits>

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class FloatNode : public NodeMapTest {
protected:
    static std::string Reg(const std::string& name, int length, const std::string& order) {
        return "<FloatReg Name='" + name + "'><Address>0</Address><Length>" + std::to_string(length) +
               "</Length><AccessMode>RW</AccessMode><pPort>Device</pPort><Endianess>" + order +
               "</Endianess></FloatReg>";
    }
};

TEST_F(FloatNode, HoldsAConstant) {
    Load(
        "<Float Name='A'><Value>1.5e3</Value></Float><Float Name='B'><Value>-7</Value></Float>"
        "<Float Name='C'><Value>+.5</Value></Float>");
    EXPECT_EQ(Float("A")->GetValue(), 1500.0);
    EXPECT_EQ(Float("B")->GetValue(), -7.0);
    EXPECT_EQ(Float("C")->GetValue(), 0.5);
    Float("A")->SetValue(2.25);
    EXPECT_EQ(Float("A")->GetValue(), 2.25);
}

TEST_F(FloatNode, KnowsInfinity) {
    Load("<Float Name='A'><Value>INF</Value></Float><Float Name='B'><Value>-INF</Value></Float>");
    EXPECT_EQ(Float("A")->GetValue(), std::numeric_limits<double>::infinity());
    EXPECT_EQ(Float("A")->ToString(), "INF");
    EXPECT_EQ(Float("B")->ToString(), "-INF");
    EXPECT_THROW(Float("A")->GetValue(true), OutOfRangeException);
}

TEST_F(FloatNode, RefusesValuesOutsideItsRange) {
    Load(
        "<Float Name='A'><Value>1</Value><Min>-1.5</Min><pMax>Hi</pMax></Float>"
        "<Integer Name='Hi'><Value>10</Value></Integer>");
    EXPECT_EQ(Float("A")->GetMin(), -1.5);
    EXPECT_EQ(Float("A")->GetMax(), 10.0);
    EXPECT_THROW(Float("A")->SetValue(-1.6), OutOfRangeException);
    EXPECT_THROW(Float("A")->SetValue(10.1), OutOfRangeException);
    EXPECT_THROW(Float("A")->SetValue(std::nan("")), OutOfRangeException);
    Float("A")->SetValue(1000.0, false);
    EXPECT_EQ(Float("A")->GetValue(), 1000.0);
}

TEST_F(FloatNode, HasAnIncrementWhenTheDescriptionSaysSo) {
    Load(
        "<Float Name='A'><Value>0</Value><Min>-10</Min><Max>10</Max><Inc>0.1</Inc></Float>"
        "<Float Name='B'><Value>0</Value></Float>");
    EXPECT_TRUE(Float("A")->HasInc());
    EXPECT_EQ(Float("A")->GetInc(), 0.1);
    EXPECT_EQ(Float("A")->GetIncMode(), fixedIncrement);
    Float("A")->SetValue(-9.7);
    Float("A")->SetValue(0.3);
    EXPECT_THROW(Float("A")->SetValue(0.35), OutOfRangeException);
    EXPECT_FALSE(Float("B")->HasInc());
    EXPECT_EQ(Float("B")->GetIncMode(), noIncrement);
    EXPECT_THROW(Float("B")->GetInc(), LogicalErrorException);
}

TEST_F(FloatNode, TakesOnlyValidValues) {
    Load("<Float Name='A'><Value>1</Value><Max>3</Max><ValidValueSet>0.5;1.0;4.0</ValidValueSet></Float>");
    EXPECT_EQ(Float("A")->GetIncMode(), listIncrement);
    EXPECT_THROW(Float("A")->SetValue(2.0), OutOfRangeException);
    Float("A")->SetValue(0.5);
    EXPECT_EQ(Float("A")->GetListOfValidValues().size(), 2U);
    EXPECT_EQ(Float("A")->GetListOfValidValues(false).size(), 3U);
}

TEST_F(FloatNode, RoundsForAnIntegerBehind) {
    Load("<Float Name='A'><pValue>B</pValue></Float><Integer Name='B'><Value>3</Value><Max>100</Max></Integer>");
    EXPECT_EQ(Float("A")->GetValue(), 3.0);
    EXPECT_EQ(Float("A")->GetMax(), 100.0);
    Float("A")->SetValue(6.6);
    EXPECT_EQ(Integer("B")->GetValue(), 7);
    EXPECT_FALSE(Float("A")->HasInc());
}

TEST_F(FloatNode, SelectsAValueByIndex) {
    Load(
        "<Float Name='A'><pIndex>I</pIndex><ValueIndexed Index='0'>0.5</ValueIndexed>"
        "<pValueIndexed Index='1'>N</pValueIndexed><pValueDefault>D</pValueDefault></Float>"
        "<Integer Name='I'><Value>0</Value></Integer><Float Name='N'><Value>1.5</Value></Float>"
        "<Float Name='D'><Value>9.5</Value></Float>");
    EXPECT_EQ(Float("A")->GetValue(), 0.5);
    Integer("I")->SetValue(1);
    EXPECT_EQ(Float("A")->GetValue(), 1.5);
    Integer("I")->SetValue(2);
    EXPECT_EQ(Float("A")->GetValue(), 9.5);
}

TEST_F(FloatNode, IsPrintedByItsNotation) {
    Load(
        "<Float Name='A'><Value>1234.56789</Value></Float>"
        "<Float Name='F'><Value>1234.56789</Value><DisplayNotation>Fixed</DisplayNotation>"
        "<DisplayPrecision>2</DisplayPrecision></Float>"
        "<Float Name='S'><Value>1234.56789</Value><DisplayNotation>Scientific</DisplayNotation>"
        "<DisplayPrecision>3</DisplayPrecision></Float>");
    EXPECT_EQ(Float("A")->ToString(), "1234.57");
    EXPECT_EQ(Float("F")->ToString(), "1234.57");
    EXPECT_EQ(Float("S")->ToString(), "1.235e+03");
    EXPECT_EQ(Float("F")->GetDisplayNotation(), fnFixed);
    EXPECT_EQ(Float("F")->GetDisplayPrecision(), 2);
    EXPECT_EQ(Float("A")->GetDisplayPrecision(), 6);
}

TEST_F(FloatNode, IsParsed) {
    Load("<Float Name='A'><Value>0</Value></Float>");
    Float("A")->FromString(" 2.5e-1 ");
    EXPECT_EQ(Float("A")->GetValue(), 0.25);
    EXPECT_THROW(Float("A")->FromString("1,5"), InvalidArgumentException);
    EXPECT_THROW(Float("A")->FromString(""), InvalidArgumentException);
}

TEST_F(FloatNode, TakesUnitAndRepresentationOfTheNodeBehind) {
    Load(
        "<Float Name='A'><pValue>B</pValue></Float>"
        "<Float Name='B'><Value>1</Value><Unit>dB</Unit><Representation>Logarithmic</Representation></Float>");
    EXPECT_EQ(Float("A")->GetUnit(), "dB");
    EXPECT_EQ(Float("A")->GetRepresentation(), Logarithmic);
}

TEST_F(FloatNode, ARegisterOf4BytesIsSinglePrecision) {
    Load(Reg("L", 4, "LittleEndian") + Reg("B", 4, "BigEndian"));
    port.Put(0, {0x00, 0x00, 0x20, 0xC0});
    EXPECT_EQ(Float("L")->GetValue(), -2.5);
    Float("B")->SetValue(-2.5);
    EXPECT_EQ(port.Big(0, 4), 0xC0200000U);
    EXPECT_EQ(Float("B")->GetMax(), static_cast<double>(std::numeric_limits<float>::max()));
    EXPECT_THROW(Float("B")->SetValue(1e39), OutOfRangeException);
    EXPECT_THROW(Float("B")->SetValue(1e39, false), OutOfRangeException);
}

TEST_F(FloatNode, ARegisterOf8BytesIsDoublePrecision) {
    Load(Reg("L", 8, "LittleEndian") + Reg("B", 8, "BigEndian"));
    Float("L")->SetValue(0.1);
    EXPECT_EQ(port.Little(0, 8), 0x3FB999999999999AU);
    port.PutBig(0, 0x3FB999999999999AU, 8);
    map._InvalidateNodes();
    EXPECT_EQ(Float("B")->GetValue(), 0.1);
}

TEST_F(FloatNode, ARegisterOfAnotherLengthIsNoNumber) {
    Load(Reg("A", 2, "LittleEndian"));
    EXPECT_THROW(Float("A")->GetValue(), OutOfRangeException);
    EXPECT_THROW(Float("A")->SetValue(1.0), OutOfRangeException);
}

TEST_F(FloatNode, CanBeNarrowedAtRunTime) {
    Load("<Float Name='A'><Value>5</Value></Float>");
    Float("A")->ImposeMin(0.5);
    Float("A")->ImposeMax(7.5);
    EXPECT_EQ(Float("A")->GetMin(), 0.5);
    EXPECT_THROW(Float("A")->SetValue(7.6), OutOfRangeException);
}

TEST_F(FloatNode, OffersTheValidValuesOfTheNodeBehind) {
    Load(
        "<Float Name='A'><pValue>B</pValue></Float><Float Name='I'><pValue>C</pValue></Float>"
        "<Float Name='B'><Value>1</Value><ValidValueSet>0.5;1;2</ValidValueSet></Float>"
        "<Integer Name='C'><Value>4</Value><ValidValueSet>2;4</ValidValueSet></Integer>");
    EXPECT_EQ(Float("A")->GetIncMode(), listIncrement);
    EXPECT_EQ(Float("A")->GetListOfValidValues().size(), 3U);
    EXPECT_EQ(Float("I")->GetIncMode(), listIncrement);
    ASSERT_EQ(Float("I")->GetListOfValidValues().size(), 2U);
    EXPECT_DOUBLE_EQ(Float("I")->GetListOfValidValues()[1], 4.0);
}

TEST_F(FloatNode, IsPrintedByTheNotationOfTheNodeBehind) {
    Load(
        "<Float Name='A'><pValue>B</pValue></Float><Float Name='B'><Value>1.23456</Value>"
        "<DisplayNotation>Fixed</DisplayNotation><DisplayPrecision>2</DisplayPrecision></Float>");
    EXPECT_EQ(Float("A")->GetDisplayNotation(), fnFixed);
    EXPECT_EQ(Float("A")->GetDisplayPrecision(), 2);
    EXPECT_EQ(Float("A")->ToString(), "1.23");
}

}  // namespace genapitest
