/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Converters: formulas both ways, ranges, access
 */

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class Converter : public NodeMapTest {};

TEST_F(Converter, ConvertsBothWays) {
    Load(
        "<Converter Name='C'><FormulaTo>FROM * 4</FormulaTo><FormulaFrom>TO / 4</FormulaFrom><pValue>R</pValue>"
        "</Converter><Integer Name='R'><Value>10</Value></Integer>");
    EXPECT_EQ(Float("C")->GetValue(), 2.5);
    Float("C")->SetValue(3.5);
    EXPECT_EQ(Integer("R")->GetValue(), 14);
}

TEST_F(Converter, OfIntegersKeeps64Bits) {
    Load(
        "<IntConverter Name='C'><FormulaTo>FROM - 1</FormulaTo><FormulaFrom>TO + 1</FormulaFrom><pValue>R</pValue>"
        "</IntConverter><Integer Name='R'><Value>9007199254740992</Value></Integer>");
    EXPECT_EQ(Integer("C")->GetValue(), 9007199254740993);
    Integer("C")->SetValue(9007199254740995);
    EXPECT_EQ(Integer("R")->GetValue(), 9007199254740994);
}

TEST_F(Converter, UsesVariables) {
    Load(
        "<IntConverter Name='C'><pVariable Name='K'>K</pVariable><FormulaTo>FROM * K</FormulaTo>"
        "<FormulaFrom>TO / K</FormulaFrom><pValue>R</pValue></IntConverter>"
        "<Integer Name='R'><Value>12</Value></Integer><Integer Name='K'><Value>3</Value></Integer>");
    EXPECT_EQ(Integer("C")->GetValue(), 4);
    Integer("K")->SetValue(6);
    EXPECT_EQ(Integer("C")->GetValue(), 2);
    Integer("C")->SetValue(5);
    EXPECT_EQ(Integer("R")->GetValue(), 30);
}

TEST_F(Converter, ConvertsTheRange) {
    Load(
        "<Converter Name='Up'><FormulaTo>FROM * 2</FormulaTo><FormulaFrom>TO / 2</FormulaFrom><pValue>R</pValue>"
        "</Converter><Converter Name='Down'><FormulaTo>1000 / FROM</FormulaTo><FormulaFrom>1000 / TO</FormulaFrom>"
        "<pValue>R</pValue><Slope>Decreasing</Slope></Converter>"
        "<Converter Name='Any'><FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom><pValue>R</pValue>"
        "<Slope>Varying</Slope></Converter>"
        "<Integer Name='R'><Value>10</Value><Min>5</Min><Max>50</Max></Integer>");
    EXPECT_EQ(Float("Up")->GetMin(), 2.5);
    EXPECT_EQ(Float("Up")->GetMax(), 25.0);
    EXPECT_EQ(Float("Down")->GetMin(), 20.0);
    EXPECT_EQ(Float("Down")->GetMax(), 200.0);
    EXPECT_EQ(Float("Any")->GetMax(), std::numeric_limits<double>::max());
    EXPECT_THROW(Float("Up")->SetValue(25.5), OutOfRangeException);
    EXPECT_THROW(Float("Down")->SetValue(10.0), OutOfRangeException);
}

TEST_F(Converter, OfIntegersConvertsTheRange) {
    Load(
        "<IntConverter Name='C'><FormulaTo>100 - FROM</FormulaTo><FormulaFrom>100 - TO</FormulaFrom><pValue>R</pValue>"
        "</IntConverter><Integer Name='R'><Value>10</Value><Min>5</Min><Max>50</Max></Integer>");
    EXPECT_EQ(Integer("C")->GetMin(), 50);
    EXPECT_EQ(Integer("C")->GetMax(), 95);
}

// Equal values at both ends are neither rising nor falling.
TEST_F(Converter, WhoseFormulasIgnoreTheirVariableTakesAnyValue) {
    const auto converter = [](const std::string& kind, const std::string& name, const std::string& formulas) {
        return "<" + kind + " Name='" + name + "'><pVariable Name='K'>K</pVariable>" + formulas +
               "<pValue>R</pValue></" + kind + ">";
    };
    const std::string from = "<FormulaTo>FROM / K</FormulaTo><FormulaFrom>K</FormulaFrom>";
    const std::string to = "<FormulaTo>K</FormulaTo><FormulaFrom>TO</FormulaFrom>";
    Load(converter("IntConverter", "IntFrom", from) + converter("IntConverter", "IntTo", to) +
         converter("Converter", "From", from) + converter("Converter", "To", to) +
         "<Integer Name='K'><Value>10</Value></Integer><Integer Name='R'><Value>7</Value><Min>0</Min><Max>99</Max>"
         "</Integer>");
    EXPECT_EQ(Integer("IntFrom")->GetMin(), INT64_MIN);
    EXPECT_EQ(Integer("IntFrom")->GetMax(), INT64_MAX);
    Integer("IntFrom")->SetValue(250);
    EXPECT_EQ(Integer("R")->GetValue(), 25);
    Integer("IntTo")->SetValue(5000);
    EXPECT_EQ(Integer("R")->GetValue(), 10);
    Float("From")->SetValue(305.0);
    EXPECT_EQ(Integer("R")->GetValue(), 31);
    Float("To")->SetValue(-5000.0);
    EXPECT_EQ(Integer("R")->GetValue(), 10);
    EXPECT_THROW(Integer("IntFrom")->SetValue(1000), OutOfRangeException);
}

TEST_F(Converter, MayLieBehindACommandWhoseValueItIgnores) {
    Load(
        "<Command Name='Go'><pValue>C</pValue><CommandValue>1</CommandValue></Command>"
        "<IntConverter Name='C'><FormulaTo>FROM * 0xA5</FormulaTo><FormulaFrom>(TO = 300) ? 1 : 0</FormulaFrom>"
        "<pValue>R</pValue></IntConverter><Integer Name='R'><Value>0</Value><Min>0</Min><Max>0xFF</Max></Integer>");
    Command("Go")->Execute();
    EXPECT_EQ(Integer("R")->GetValue(), 0xA5);
}

TEST_F(Converter, HasTheModeOfTheNodeBehind) {
    Load(
        "<Converter Name='C'><FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom><pValue>R</pValue></Converter>"
        "<Integer Name='R'><Value>1</Value><ImposedAccessMode>RO</ImposedAccessMode></Integer>"
        "<Converter Name='Back'><FormulaFrom>TO</FormulaFrom><pValue>W</pValue></Converter>"
        "<Integer Name='W'><Value>1</Value></Integer>");
    EXPECT_EQ(Mode("C"), RO);
    EXPECT_EQ(Mode("Back"), RO);
}

TEST_F(Converter, AnErrorOfTheFormulaWritesNothing) {
    Load(
        "<Converter Name='C'><FormulaTo>1 / FROM</FormulaTo><FormulaFrom>1 / TO</FormulaFrom><pValue>R</pValue>"
        "</Converter><Float Name='R'><Value>2</Value></Float>");
    EXPECT_THROW(Float("C")->SetValue(0.0), OutOfRangeException);
    EXPECT_EQ(Float("R")->GetValue(), 2.0);
    Float("R")->SetValue(0.0);
    EXPECT_THROW(Float("C")->GetValue(), OutOfRangeException);
}

}  // namespace genapitest
