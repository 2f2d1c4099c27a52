/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of values of features as people read and write them, on a node map without a camera
 */
#include "values/FeatureValueAccess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GenApi/GenApi.h"
#include "tests/platform/genicam/genapi/Support.h"
#include "values/AllowedText.h"

namespace {

using testing::HasSubstr;
using Vanto::FeatureValue;

constexpr const char* kDescription = R"(<RegisterDescription ModelName="M" VendorName="V"
  StandardNameSpace="None" SchemaMajorVersion="1" SchemaMinorVersion="1" SchemaSubMinorVersion="0" MajorVersion="1"
  MinorVersion="0" SubMinorVersion="0" ProductGuid="p" VersionGuid="v" ToolTip="t"
  xmlns="http://www.genicam.org/GenApi/Version_1_1">
  <Category Name="Root"><pFeature>Whole</pFeature></Category>
  <Integer Name="Whole"><Value>16</Value><Min>-8</Min><Max>64</Max><Inc>4</Inc><Unit>px</Unit></Integer>
  <Integer Name="Hex"><Value>255</Value><Min>0</Min><Max>4095</Max><Representation>HexNumber</Representation></Integer>
  <Integer Name="Address"><Value>0x7F000001</Value><Representation>IPV4Address</Representation></Integer>
  <Float Name="Number"><Value>0.1</Value><Min>0</Min><Max>10.5</Max><Unit>us</Unit></Float>
  <Float Name="Plain"><Value>1</Value></Float>
  <Boolean Name="Switch"><Value>1</Value><OnValue>1</OnValue><OffValue>0</OffValue></Boolean>
  <Enumeration Name="Choice">
    <EnumEntry Name="Red"><Value>0</Value></EnumEntry><EnumEntry Name="Green"><Value>7</Value></EnumEntry>
    <EnumEntry Name="Blue"><pIsAvailable>Never</pIsAvailable><Value>2</Value></EnumEntry>
    <EnumEntry Name="blue"><Value>3</Value></EnumEntry><EnumEntry Name="BLUE"><Value>4</Value></EnumEntry>
    <Value>0</Value>
  </Enumeration>
  <Integer Name="Never"><Value>0</Value></Integer>
  <Command Name="Go"><pValue>Never</pValue><CommandValue>1</CommandValue></Command>
</RegisterDescription>)";

class FeatureValues : public testing::Test {
protected:
    FeatureValues() { m_map._LoadXMLFromString(kDescription); }
    GenApi::INode& Node(const char* name) { return *m_map._GetNodeMap()->GetNode(name); }
    std::string AfterSetting(const char* name, const std::string& text) {
        Vanto::WriteValue(Node(name), text);
        return Vanto::ReadText(Node(name));
    }
    template <class Exception>
    void ExpectRefusal(const char* name, const FeatureValue& value, const char* text) {
        try {
            Vanto::WriteValue(Node(name), value);
            ADD_FAILURE() << name << " was set";
        } catch (const Exception& error) {
            EXPECT_THAT(error.GetDescription(), HasSubstr(text));
        }
    }

private:
    GenApi::CNodeMapRef m_map;
};

TEST_F(FeatureValues, AreShownWithAllTheirDigits) {
    EXPECT_EQ(Vanto::ReadText(Node("Whole")), "16");
    EXPECT_EQ(Vanto::ReadText(Node("Hex")), "0xFF");
    EXPECT_EQ(Vanto::ReadText(Node("Address")), "127.0.0.1");
    EXPECT_EQ(Vanto::ReadText(Node("Number")), "0.1");
    EXPECT_EQ(Vanto::ReadText(Node("Switch")), "true");
    EXPECT_EQ(Vanto::ReadText(Node("Choice")), "Red");
}

TEST_F(FeatureValues, AreSetAsPeopleTypeThem) {
    EXPECT_EQ(AfterSetting("Whole", "0x20 px"), "32");
    EXPECT_EQ(AfterSetting("Hex", " 0x10 "), "0x10");
    EXPECT_EQ(AfterSetting("Address", "10.0.0.1"), "10.0.0.1");
    EXPECT_EQ(AfterSetting("Number", "2.5us"), "2.5");
    EXPECT_EQ(AfterSetting("Switch", "off"), "false");
    EXPECT_EQ(AfterSetting("Choice", "green"), "Green");
    EXPECT_EQ(AfterSetting("Choice", "0"), "Red");
    EXPECT_EQ(AfterSetting("Choice", "BLUE"), "BLUE");
}

TEST_F(FeatureValues, OfOtherKindsAreRefused) {
    using GenICam::InvalidArgumentException;
    ExpectRefusal<InvalidArgumentException>("Whole", "12.5", "Whole is an integer in px, which '12.5' is not");
    ExpectRefusal<InvalidArgumentException>("Number", "x", "Number is a number in us, which 'x' is not");
    ExpectRefusal<InvalidArgumentException>("Plain", "2 ms", "Plain is a number without a unit, which '2 ms' is not");
    ExpectRefusal<InvalidArgumentException>("Switch", "maybe", "Switch is on or off, which 'maybe' is not");
    ExpectRefusal<InvalidArgumentException>("Choice", "Violet", "Choice has no entry 'Violet'");
    ExpectRefusal<InvalidArgumentException>("Choice", "bLuE", "Choice has no entry 'bLuE'");
    ExpectRefusal<InvalidArgumentException>("Choice", std::int64_t{9}, "Choice has no entry '9'");
    ExpectRefusal<InvalidArgumentException>("Choice", true, "Choice is set to one of its entries");
    ExpectRefusal<InvalidArgumentException>("Go", "1", "Go is a command, which is executed");
    ExpectRefusal<InvalidArgumentException>("Root", "1", "Root has no value");
    EXPECT_THROW(Vanto::ReadBytes(Node("Whole")), InvalidArgumentException);
}

TEST_F(FeatureValues, ThatAreNotAvailableAreOutOfRange) {
    ExpectRefusal<GenICam::OutOfRangeException>("Choice", "Blue", "Choice: entry 'Blue' is not available at present");
}

TEST_F(FeatureValues, AreParsedWithoutBeingSet) {
    EXPECT_EQ(Vanto::ParseValue(Node("Whole"), "1000"), FeatureValue(std::int64_t{1000}));
    EXPECT_EQ(Vanto::ParseValue(Node("Number"), "1 ms"), FeatureValue(1000.0));
    EXPECT_EQ(Vanto::ParseValue(Node("Choice"), "green"), FeatureValue(std::int64_t{7}));
    EXPECT_EQ(Vanto::ReadText(Node("Whole")), "16");
}

TEST_F(FeatureValues, HaveRanges) {
    EXPECT_EQ(Vanto::RangeText(Node("Whole")), "-8 .. 64 step 4 px");
    EXPECT_EQ(Vanto::RangeText(Node("Hex")), "0x0 .. 0xFFF");
    EXPECT_EQ(Vanto::RangeText(Node("Number")), "0 .. 10.5 us");
    EXPECT_EQ(Vanto::RangeText(Node("Choice")), "Red, Green, blue, BLUE");
    EXPECT_EQ(Vanto::RangeText(Node("Switch")), "on or off");
    EXPECT_EQ(Vanto::RangeText(Node("Go")), "");
    EXPECT_EQ(Vanto::AllowedText(nullptr), "");
}

// Four bytes hold no more than their own digits, whatever a calculation behind them makes of them.
TEST(FeatureValuesOfRegisters, HaveAsManyDigitsAsTheirBytes) {
    genapitest::MemoryPort memory(16);
    GenApi::CNodeMapRef map;
    map._LoadXMLFromString(genapitest::Describe(R"(<Category Name="Root"/>
        <FloatReg Name="Four"><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
          <Endianess>LittleEndian</Endianess></FloatReg>
        <FloatReg Name="Eight"><Address>8</Address><Length>8</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
          <Endianess>LittleEndian</Endianess></FloatReg>
        <Float Name="OfFour"><pValue>Four</pValue></Float><Float Name="OfEight"><pValue>Eight</pValue></Float>
        <Converter Name="Tenth"><FormulaTo>FROM * 10</FormulaTo><FormulaFrom>TO / 10</FormulaFrom><pValue>Four</pValue>
        </Converter>)")
                               .c_str());
    map._Connect(&memory);
    const auto text = [&map](const char* name) { return Vanto::ReadText(*map._GetNode(name)); };
    GenApi::CFloatPtr(map._GetNode("Four"))->SetValue(41.9);
    GenApi::CFloatPtr(map._GetNode("Eight"))->SetValue(41.900001525878906);
    EXPECT_EQ(text("Four"), "41.9");
    EXPECT_EQ(text("OfFour"), "41.9");
    EXPECT_EQ(text("Tenth"), "4.19000015258789");
    EXPECT_EQ(text("Eight"), "41.900001525878906");
    EXPECT_EQ(text("OfEight"), "41.900001525878906");
    GenApi::CFloatPtr(map._GetNode("Eight"))->SetValue(0.30000000000000004);
    EXPECT_EQ(text("Eight"), "0.30000000000000004");
}

TEST(FeatureValuesOfRegisters, AreAsManyBytesAsTheRegisterHasAtPresent) {
    genapitest::MemoryPort memory(16);
    GenApi::CNodeMapRef map;
    map._LoadXMLFromString(genapitest::Describe(R"(<Category Name="Root"/>
        <Register Name="Bytes"><Address>0</Address><pLength>Length</pLength><AccessMode>RW</AccessMode>
          <pPort>Device</pPort></Register><Integer Name="Length"><Value>3</Value></Integer>)")
                               .c_str());
    map._Connect(&memory);
    memory.PutText(0, "abc");
    EXPECT_EQ(Vanto::ReadBytes(*map._GetNode("Bytes")), (Vanto::FeatureBytes{'a', 'b', 'c'}));
    GenApi::CIntegerPtr(map._GetNode("Length"))->SetValue(1);
    EXPECT_EQ(Vanto::ReadBytes(*map._GetNode("Bytes")), Vanto::FeatureBytes{'a'});
    for (const std::int64_t none : {0, -1}) {
        GenApi::CIntegerPtr(map._GetNode("Length"))->SetValue(none);
        EXPECT_THROW(Vanto::ReadBytes(*map._GetNode("Bytes")), GenICam::OutOfRangeException) << none;
    }
}

}  // namespace
