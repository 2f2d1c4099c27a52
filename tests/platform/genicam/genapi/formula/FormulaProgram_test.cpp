/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Formulas: operators, functions, precedence, variables, errors
 */

#include <cmath>
#include <numbers>

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class Formula : public NodeMapTest {
protected:
    void LoadWith(const std::string& variables, const std::string& formula, const std::string& more,
                  const std::string& kind = "IntSwissKnife") {
        Load("<" + kind + " Name='F'>" + variables + "<Formula>" + Escaped(formula) + "</Formula></" + kind + ">" +
             more);
    }
};

TEST_F(Formula, ComputesIntegers) {
    const std::vector<std::pair<std::string, std::int64_t>> cases = {
        {"1+2*3", 7},
        {"(1+2)*3", 9},
        {"10-4-3", 3},
        {"7/2", 3},
        {"-7/2", -3},
        {"7%3", 1},
        {"-7%3", -1},
        {"2**10", 1024},
        {"2**3**2", 512},
        {"-2**2", 4},
        {"0-2**2", -4},
        {"2**-1", 0},
        {"0**0", 1},
        {"0**5", 0},
        {"1**-3", 1},
        {"1**9223372036854775807", 1},
        {"(-1)**-3", -1},
        {"(-1)**-2", 1},
        {"(-1)**9223372036854775807", -1},
        {"(-1)**9223372036854775806", 1},
        {"2**62", 4611686018427387904},
        {"(-2)**63", INT64_MIN},
        {"3**39", 4052555153018976267},
        {"(-1)**3", -1},
        {"0x10+1", 17},
        {"0xFF & 0x0F", 15},
        {"0xF0 | 0x0F", 255},
        {"0xFF ^ 0x0F", 240},
        {"~0", -1},
        {"1<<4", 16},
        {"256>>4", 16},
        {"-16>>2", -4},
        {"1<<63", INT64_MIN},
        {"3=3", 1},
        {"3<>3", 0},
        {"3==3", 1},
        {"3!=3", 0},
        {"2<3", 1},
        {"2>3", 0},
        {"3<3", 0},
        {"3>3", 0},
        {"3>2", 1},
        {"3<=3", 1},
        {"4<=3", 0},
        {"3>=3", 1},
        {"3>=4", 0},
        {"1&&2", 1},
        {"0||0", 0},
        {"5||0", 1},
        {"2&&0", 0},
        {"1?2:3", 2},
        {"0?2:3", 3},
        {"0?1:0?2:3", 3},
        {"1?0?1:2:3", 2},
        {"- - 3", 3},
        {"+3", 3},
        {"~-1", 0},
        {"1+2<<3", 24},
        {"1|2=2", 1},
        {"6&3=3", 0},
        {"1=1&0=0", 1},
        {"1||0&&0", 1},
        {"2+3>4&&1", 1},
        {"SGN(-5)", -1},
        {"SGN(0)", 0},
        {"NEG(4)", -4},
        {"ABS(-9)", 9},
        {"TRUNC(7)", 7},
        {"FLOOR(7)", 7},
        {"CEIL(7)", 7},
        {"ROUND(7)", 7},
        {"ROUND(7,2)", 7},
        {"0xFFFFFFFFFFFFFFFF", -1},
        {"-9223372036854775808", INT64_MIN},
        {"9223372036854775807", INT64_MAX},
        {"(0 && 1)?2:3", 3},
        {"(0x12345678 & 0x10305070)", 0x10305070 & 0x12345678}};
    for (const auto& [formula, expected] : cases)
        EXPECT_EQ(Evaluate(formula), expected) << formula;
}

TEST_F(Formula, ComputesFloats) {
    const std::vector<std::pair<std::string, double>> cases = {{"1/2", 0.5},
                                                               {"7%3", 1.0},
                                                               {"7.5%2", 1.5},
                                                               {"2**0.5", std::sqrt(2.0)},
                                                               {"1e3", 1000.0},
                                                               {"1.5E-2", 0.015},
                                                               {".5+.25", 0.75},
                                                               {"2.", 2.0},
                                                               {"0x10", 16.0},
                                                               {"SIN(0)", 0.0},
                                                               {"COS(0)", 1.0},
                                                               {"TAN(0.5)", std::tan(0.5)},
                                                               {"ASIN(1)", std::asin(1.0)},
                                                               {"ACOS(0.5)", std::acos(0.5)},
                                                               {"ATAN(1)", std::atan(1.0)},
                                                               {"EXP(1)", std::exp(1.0)},
                                                               {"LN(10)", std::log(10.0)},
                                                               {"LG(1000)", 3.0},
                                                               {"SQRT(2)", std::sqrt(2.0)},
                                                               {"TRUNC(-1.7)", -1.0},
                                                               {"FLOOR(-1.2)", -2.0},
                                                               {"CEIL(1.2)", 2.0},
                                                               {"ROUND(2.5)", 3.0},
                                                               {"ROUND(-2.5)", -3.0},
                                                               {"ROUND(1.2345,2)", 1.23},
                                                               {"ABS(-1.5)", 1.5},
                                                               {"SGN(-0.1)", -1.0},
                                                               {"NEG(2.5)", -2.5},
                                                               {"PI", std::numbers::pi},
                                                               {"E", std::numbers::e},
                                                               {"PI()", std::numbers::pi},
                                                               {"E()*2", 2 * std::numbers::e},
                                                               {"6&3", 2.0},
                                                               {"1<<4", 16.0},
                                                               {"~0", -1.0},
                                                               {"0xFFFFFFFF & 0xF0", 240.0},
                                                               {"6.5|1", 7.0},
                                                               {"6^3", 5.0},
                                                               {"256>>4", 16.0},
                                                               {"1.25-2", -0.75},
                                                               {"1.5*3", 4.5},
                                                               {"1.5<2", 1.0},
                                                               {"2<1.5", 0.0},
                                                               {"1.5<1.5", 0.0},
                                                               {"1.5>2", 0.0},
                                                               {"2>1.5", 1.0},
                                                               {"1.5>1.5", 0.0},
                                                               {"1.5<=1.5", 1.0},
                                                               {"1.5<=1.25", 0.0},
                                                               {"1.5>=1.5", 1.0},
                                                               {"1.25>=1.5", 0.0},
                                                               {"0.5=0.25", 0.0},
                                                               {"0.5<>0.25", 1.0},
                                                               {"0.5<>0.5", 0.0},
                                                               {"SGN(0.1)", 1.0},
                                                               {"SGN(0.0)", 0.0},
                                                               {"ROUND(123.456,-1)", 120.0},
                                                               {"ROUND(1.5,300)", 1.5},
                                                               {"0.5&&1", 1.0},
                                                               {"0.5=0.5", 1.0},
                                                               {"1?0.5:2", 0.5},
                                                               {"-2**2", 4.0}};
    for (const auto& [formula, expected] : cases)
        EXPECT_DOUBLE_EQ(EvaluateFloat(formula), expected) << formula;
}

TEST_F(Formula, KeepsAll64BitsOfIntegers) {
    EXPECT_EQ(Evaluate("9007199254740993 + 0"), 9007199254740993);
    EXPECT_EQ(Evaluate("0x7FFFFFFFFFFFFFFF - 1"), INT64_MAX - 1);
    EXPECT_EQ(Evaluate("(0x123456789ABCDEF0 >> 4) & 0xFFFFFFFFFFFF"), 0x123456789ABCDEF0 >> 4 & 0xFFFFFFFFFFFF);
}

// A part that is no integer makes the whole formula one of floating point, whose fraction is cut off at the end.
TEST_F(Formula, OfIntegersMayHaveFractions) {
    EXPECT_EQ(Evaluate("3 * 1.5"), 4);
    EXPECT_EQ(Evaluate("SQRT(17)"), 4);
    EXPECT_EQ(Evaluate("-7 / 2.0"), -3);
}

TEST_F(Formula, ThrowsWhatDoesNotFit) {
    for (const char* formula : {"1/0", "1%0", "0**-1", "9223372036854775807+1", "0-9223372036854775807-2",
                                "3037000500*3037000500", "2**63", "3**40", "(-2)**64", "1<<64", "1<<-1", "1>>64",
                                "1>>-1", "ABS(1<<63)", "-(1<<63)", "(1<<63)/(0-1)", "1.5*1e300"})
        EXPECT_THROW(Evaluate(formula), OutOfRangeException) << formula;
    for (const char* formula : {"1/0", "1%0", "SQRT(-1)", "LN(0)", "ASIN(2)", "EXP(1000)", "1e308*10", "(0-1)**0.5",
                                "1e30 & 1", "ROUND(1,1e9)", "ROUND(1,301)", "1.5%0", "0.5-1e308*10", "TAN(1)*1e308*10"})
        EXPECT_THROW(EvaluateFloat(formula), OutOfRangeException) << formula;
}

TEST_F(Formula, OneWithoutRemainderByMinusOneIsZero) {
    EXPECT_EQ(Evaluate("(1<<63) % (0-1)"), 0);
}

TEST_F(Formula, ThatDoesNotParseMakesItsNodeNotImplemented) {
    for (const char* formula :
         {"",   "1+",    "*1",    "1 2",      "(1",           "1)",      "1?2",           "1:2",  "1?2:",
          "X",  "SIN",   "SIN()", "SIN(1,2)", "ROUND(1,2,3)", "ROUND()", "(1,2)",         "1=>2", "#",
          "0x", "1.2.3", "1e",    "5x",       "a.b",          "sin(1)",  "1 ? 2 : 3 : 4", "()",   "PI(1)",
          "!1"}) {
        Load("<IntSwissKnife Name='F'><Formula>" + Escaped(formula) +
             "</Formula></IntSwissKnife>"
             "<Integer Name='A'><Value>1</Value></Integer>");
        EXPECT_EQ(Mode("F"), NI) << formula;
        EXPECT_THROW(Integer("F")->GetValue(), AccessException) << formula;
        EXPECT_EQ(Integer("A")->GetValue(), 1);
        EXPECT_EQ(Warnings(wkUnusableNode), 1) << formula;
    }
}

TEST_F(Formula, CanBeCheckedForAllNodesAtOnce) {
    Load(
        "<IntSwissKnife Name='A'><Formula>1+</Formula></IntSwissKnife>"
        "<IntSwissKnife Name='B'><Formula>1</Formula></IntSwissKnife>");
    gcstring_vector errors;
    EXPECT_FALSE(map._GetNodeMap()->ParseSwissKnives(&errors));
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_NE(errors[0].find("'A'"), gcstring::npos);
    Load("<IntSwissKnife Name='B'><Formula>1</Formula></IntSwissKnife>");
    EXPECT_TRUE(map._GetNodeMap()->ParseSwissKnives());
}

TEST_F(Formula, EvaluatesOnlyTheBranchThatCounts) {
    const std::string zero = "<Integer Name='Zero'><Value>0</Value></Integer>";
    const std::string variable = "<pVariable Name='Z'>Zero</pVariable>";
    LoadWith(variable, "Z = 0 ? 5 : 1 / Z", zero);
    EXPECT_EQ(Integer("F")->GetValue(), 5);
    LoadWith(variable, "Z <> 0 && 1 / Z", zero);
    EXPECT_EQ(Integer("F")->GetValue(), 0);
    LoadWith(variable, "Z = 0 || 1 / Z", zero);
    EXPECT_EQ(Integer("F")->GetValue(), 1);
}

TEST_F(Formula, ReadsOnlyTheVariablesThatCount) {
    Load(
        "<IntSwissKnife Name='F'><pVariable Name='C'>Choice</pVariable><pVariable Name='R'>Reg</pVariable>"
        "<Formula>C ? R : 7</Formula></IntSwissKnife><Integer Name='Choice'><Value>0</Value></Integer>"
        "<IntReg Name='Reg'><Address>0</Address><Length>4</Length><AccessMode>RO</AccessMode><pPort>Device</pPort>"
        "</IntReg>");
    EXPECT_EQ(Integer("F")->GetValue(), 7);
    EXPECT_EQ(port.Reads(), 0);
}

TEST_F(Formula, HasNamedConstantsAndExpressions) {
    LoadWith(
        "<pVariable Name='X'>N</pVariable><Constant Name='TEN'>10</Constant>"
        "<Expression Name='XPLUS2'>TEN2 + X</Expression><Expression Name='TEN2'>TEN / 5</Expression>",
        "TEN * XPLUS2", "<Integer Name='N'><Value>4</Value></Integer>");
    EXPECT_EQ(Integer("F")->GetValue(), 60);
}

TEST_F(Formula, AFloatingConstantMakesItFloating) {
    LoadWith("<Constant Name='K'>0.5</Constant>", "9 * K", "");
    EXPECT_EQ(Integer("F")->GetValue(), 4);
}

TEST_F(Formula, AnExpressionIsComputedOnce) {
    std::string expressions = "<Expression Name='E0'>1</Expression>";
    for (int i = 1; i < 60; ++i)
        expressions += "<Expression Name='E" + std::to_string(i) + "'>E" + std::to_string(i - 1) + " + E" +
                       std::to_string(i - 1) + "</Expression>";
    LoadWith(expressions, "E59", "");
    EXPECT_EQ(Integer("F")->GetValue(), std::int64_t{1} << 59);
}

TEST_F(Formula, ExpressionsInACircleOrTooDeepAreRefused) {
    LoadWith("<Expression Name='A'>B</Expression><Expression Name='B'>A</Expression>", "1", "");
    EXPECT_EQ(Mode("F"), NI);
    std::string expressions = "<Expression Name='E0'>1</Expression>";
    for (int i = 1; i < 100; ++i)
        expressions += "<Expression Name='E" + std::to_string(i) + "'>E" + std::to_string(i - 1) + "</Expression>";
    LoadWith(expressions, "E99", "");
    EXPECT_EQ(Mode("F"), NI);
}

TEST_F(Formula, NamesComeBeforeFunctions) {
    LoadWith("<pVariable Name='EXP'>N</pVariable><pVariable Name='E'>N</pVariable>", "EXP + E",
             "<Integer Name='N'><Value>4</Value></Integer>");
    EXPECT_EQ(Integer("F")->GetValue(), 8);
}

TEST_F(Formula, VariablesMayNamePartsOfANode) {
    LoadWith(
        "<pVariable Name='A'>N</pVariable><pVariable Name='A.Min'>N</pVariable>"
        "<pVariable Name='A.Max'>N</pVariable><pVariable Name='A.Inc'>N</pVariable>"
        "<pVariable Name='A.Value'>N</pVariable>",
        "A + 10 * A.Min + 100 * A.Max + 10000 * A.Inc + 100000 * A.Value",
        "<Integer Name='N'><Value>5</Value><Min>1</Min><Max>9</Max><Inc>2</Inc></Integer>");
    EXPECT_EQ(Integer("F")->GetValue(), 5 + 10 + 900 + 20000 + 500000);
}

TEST_F(Formula, ThePartMayBeNamedInTheFormula) {
    LoadWith("<pVariable Name='A'>N</pVariable>", "A.Max - A.Min",
             "<Integer Name='N'><Value>5</Value><Min>1</Min><Max>9</Max></Integer>");
    EXPECT_EQ(Integer("F")->GetValue(), 8);
    LoadWith("<pVariable Name='A'>N</pVariable>", "A.Nothing", "<Integer Name='N'><Value>5</Value></Integer>");
    EXPECT_EQ(Mode("F"), NI);
}

TEST_F(Formula, VariablesMayNameEntries) {
    LoadWith("<pVariable Name='X'>E</pVariable><pVariable Name='X.Entry.Off'>E</pVariable>", "X = X.Entry.Off ? 1 : 2",
             "<Enumeration Name='E'><EnumEntry Name='Off'><Value>7</Value></EnumEntry>"
             "<EnumEntry Name='On'><Value>8</Value></EnumEntry><Value>7</Value></Enumeration>");
    EXPECT_EQ(Integer("F")->GetValue(), 1);
    Enumeration("E")->FromString("On");
    EXPECT_EQ(Integer("F")->GetValue(), 2);
}

TEST_F(Formula, EveryKindOfNumberMayBeAVariable) {
    LoadWith(
        "<pVariable Name='I'>I</pVariable><pVariable Name='F'>Fl</pVariable><pVariable Name='B'>B</pVariable>"
        "<pVariable Name='E'>En</pVariable><pVariable Name='C'>C</pVariable>",
        "I + F + B + E + C",
        "<Integer Name='I'><Value>1</Value></Integer><Float Name='Fl'><Value>0.5</Value></Float>"
        "<Boolean Name='B'><Value>1</Value></Boolean><Enumeration Name='En'><EnumEntry Name='X'><Value>8</Value>"
        "</EnumEntry><Value>8</Value></Enumeration>"
        "<Command Name='C'><Value>16</Value><CommandValue>1</CommandValue></Command>",
        "SwissKnife");
    EXPECT_EQ(Float("F")->GetValue(), 26.5);
}

TEST_F(Formula, AVariableWithoutANumberMakesItNotImplemented) {
    LoadWith("<pVariable Name='X'>S</pVariable>", "X", "<String Name='S'><Value>1</Value></String>");
    EXPECT_EQ(Mode("F"), NI);
}

TEST_F(Formula, MayBeVeryLongAndVeryDeep) {
    std::string deep(20000, '(');
    deep += "1" + std::string(20000, ')');
    EXPECT_EQ(Evaluate(deep), 1);
    std::string ladder;
    for (int i = 0; i < 5000; ++i)
        ladder += "X = " + std::to_string(i) + " ? " + std::to_string(i * 2) + " : ";
    LoadWith("<pVariable Name='X'>N</pVariable>", ladder + "0-1", "<Integer Name='N'><Value>4999</Value></Integer>");
    EXPECT_EQ(Integer("F")->GetValue(), 9998);
    std::string nested = "1";
    for (int i = 0; i < 3000; ++i)
        nested = "1+(" + nested + ")";
    EXPECT_EQ(Evaluate(nested), 3001);
}

TEST_F(Formula, CannotBeSet) {
    Load("<IntSwissKnife Name='F'><Formula>1</Formula></IntSwissKnife>");
    EXPECT_EQ(Mode("F"), RO);
    EXPECT_THROW(Integer("F")->SetValue(1), AccessException);
}

// --- Converters ---

// What is no number must not hide behind a comparison, a condition or a function that gives one again.
TEST_F(Formula, AnOverflowWithinAFormulaThrows) {
    for (const char* formula : {"1e308 * 10 > 5", "0 - 1e308 - 1e308 < 5", "1e308 + 1e308 > 5", "10 ** 400 > 5",
                                "1e308 / 1e-10 > 5", "(1e308 * 10) ? 1 : 2", "1 / (1e308 * 10)", "ATAN(1e308 * 10)",
                                "SGN(1e308 * 10)", "(1e308 * 10) && 1", "(1e308 * 10) || 0", "(-8.0) ** 0.5 > 0"})
        EXPECT_THROW(EvaluateFloat(formula), OutOfRangeException) << formula;
    EXPECT_DOUBLE_EQ(EvaluateFloat("1e308 * 0.5"), 0.5e308);
}

}  // namespace genapitest
