/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of values of features as text, on a node map without a camera
 */
#include "features/FeatureText.h"
#include "features/FeatureInput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "error/ExitCode.h"
#include "features/Assignments.h"
#include "features/FeatureWalk.h"
#include "tests/platform/genicam/genapi/Support.h"

namespace {

using namespace tools;
using testing::HasSubstr;

constexpr const char* kDescription = R"(<RegisterDescription ModelName="M" VendorName="V"
  StandardNameSpace="None" SchemaMajorVersion="1" SchemaMinorVersion="1" SchemaSubMinorVersion="0" MajorVersion="1"
  MinorVersion="0" SubMinorVersion="0" ProductGuid="p" VersionGuid="v" ToolTip="t"
  xmlns="http://www.genicam.org/GenApi/Version_1_1">
  <Category Name="Root"><pFeature>Group</pFeature><pFeature>Hidden</pFeature></Category>
  <Category Name="Group">
    <pFeature>Whole</pFeature><pFeature>Hex</pFeature><pFeature>Number</pFeature><pFeature>Switch</pFeature>
    <pFeature>Choice</pFeature><pFeature>Fixed</pFeature><pFeature>Limit</pFeature><pFeature>Root</pFeature>
  </Category>
  <Integer Name="Whole"><Value>16</Value><Min>-8</Min><pMax>Limit</pMax><Inc>4</Inc><Unit>px</Unit></Integer>
  <Integer Name="Limit"><Value>64</Value></Integer>
  <Integer Name="Hex"><Value>255</Value><Representation>HexNumber</Representation></Integer>
  <Float Name="Number"><Value>0.1</Value><Min>0</Min><Max>10.5</Max><Unit>us</Unit></Float>
  <Boolean Name="Switch"><Value>1</Value><OnValue>1</OnValue><OffValue>0</OffValue></Boolean>
  <Enumeration Name="Choice">
    <EnumEntry Name="Red"><Value>0</Value></EnumEntry><EnumEntry Name="Green"><Value>7</Value></EnumEntry>
    <EnumEntry Name="Blue"><pIsAvailable>Never</pIsAvailable><Value>2</Value></EnumEntry>
    <Value>0</Value>
  </Enumeration>
  <Integer Name="Never"><Value>0</Value></Integer>
  <Integer Name="Fixed"><ImposedAccessMode>RO</ImposedAccessMode><Value>3</Value></Integer>
  <Integer Name="Hidden"><Visibility>Guru</Visibility><Value>1</Value></Integer>
</RegisterDescription>)";

class FeatureText : public testing::Test {
protected:
    FeatureText() { m_map._LoadXMLFromString(kDescription); }
    GenApi::INodeMap& Map() { return *m_map._GetNodeMap(); }
    GenApi::INode& Node(const char* name) { return FindFeature(Map(), name); }
    std::string Get(const char* name) { return Vanto::ReadText(Node(name)); }
    /// The error and its hint, after checking everything that 'set' checks.
    std::string Refused(const std::vector<Assignment>& assignments) {
        try {
            Assignments steps(Map(), assignments);
            steps.Check();
            steps.Apply();
        } catch (const ToolError& error) {
            return std::string(error.what()) + "|" + error.Hint();
        }
        return "taken";
    }

private:
    GenApi::CNodeMapRef m_map;
};

TEST_F(FeatureText, ShowsValuesInJsonWithTheirTypes) {
    EXPECT_EQ(ToLine(ValueJson(Node("Whole"))), "16");
    EXPECT_EQ(ToLine(ValueJson(Node("Hex"))), "255");
    EXPECT_EQ(ToLine(ValueJson(Node("Number"))), "0.1");
    EXPECT_EQ(ToLine(ValueJson(Node("Switch"))), "true");
    EXPECT_EQ(ToLine(ValueJson(Node("Choice"))), "\"Red\"");
}

TEST_F(FeatureText, SaysWhatIsWrongWithAValue) {
    EXPECT_EQ(Refused({{"Whole", "68"}}), "Whole: 68 is too large|Whole takes -8 .. 64 step 4 px.");
    EXPECT_THAT(Refused({{"Whole", "-12"}}), HasSubstr("too small"));
    EXPECT_THAT(Refused({{"Whole", "-7"}}), HasSubstr("between two steps"));
    EXPECT_THAT(Refused({{"Whole", "12.5"}}),
                HasSubstr("is an integer in px, which '12.5' is not|Whole takes -8 .. 64"));
    EXPECT_THAT(Refused({{"Number", "11"}}), HasSubstr("too large"));
    EXPECT_THAT(Refused({{"Number", "x"}}), HasSubstr("is a number in us, which 'x' is not"));
    EXPECT_THAT(Refused({{"Switch", "maybe"}}), HasSubstr("is on or off, which 'maybe' is not"));
    EXPECT_THAT(Refused({{"Choice", "Gren"}}), HasSubstr("did you mean 'Green'?"));
    EXPECT_THAT(Refused({{"Choice", "Violet"}}), HasSubstr("Choice takes Red, Green."));
    EXPECT_THAT(Refused({{"Choice", "Blue"}}),
                HasSubstr("entry 'Blue' is not available at present|Choice takes Red, Green."));
    EXPECT_THAT(Refused({{"Fixed", "4"}}), HasSubstr("only be read"));
    EXPECT_THAT(Refused({{"Group", "4"}}), HasSubstr("has no value"));
    EXPECT_THAT(Refused({{"Wole", "4"}}), HasSubstr("did you mean 'Whole'?"));
}

TEST_F(FeatureText, ChecksAllBeforeTheFirstWrite) {
    EXPECT_NE(Refused({{"Hex", "1"}, {"Number", "11"}}), "taken");
    EXPECT_EQ(Get("Hex"), "0xFF");
}

TEST_F(FeatureText, LooksAtLimitsThatAnEarlierOneMovesWhenItsTurnComes) {
    EXPECT_EQ(Refused({{"Limit", "128"}, {"Whole", "100"}}), "taken");
    EXPECT_EQ(Get("Whole"), "100");
}

TEST_F(FeatureText, LooksAtLimitsThatAnEarlierOneMovesThroughItsRegister) {
    genapitest::MemoryPort memory(4);
    memory.PutLittle(0, 64, 4);
    GenApi::CNodeMapRef map;
    map._LoadXMLFromString(genapitest::Describe(R"(
        <Category Name="Root"><pFeature>Front</pFeature><pFeature>Bound</pFeature></Category>
        <Integer Name="Front"><pValue>Behind</pValue></Integer><Integer Name="Limit"><pValue>Behind</pValue></Integer>
        <IntReg Name="Behind"><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
        </IntReg><Integer Name="Bound"><Value>1</Value><pMax>Limit</pMax></Integer>)")
                               .c_str());
    map._Connect(&memory);
    Assignments steps(*map._GetNodeMap(), {{"Front", "128"}, {"Bound", "100"}});
    steps.Check();
    steps.Apply();
    EXPECT_EQ(Vanto::ReadText(FindFeature(*map._GetNodeMap(), "Bound")), "100");
}

TEST_F(FeatureText, PutsBackWhatWasSetBeforeARefusal) {
    EXPECT_EQ(Refused({{"Limit", "32"}, {"Whole", "64"}}),
              "Whole: 64 is too large|Whole takes -8 .. 32 step 4 px.\nNothing was changed.");
    EXPECT_EQ(Get("Limit"), "64");
}

TEST_F(FeatureText, WalksWhatIsVisibleOnce) {
    std::vector<std::string> names;
    WalkFeatures(Map(), GenApi::Beginner,
                 [&](GenApi::INode& node, std::size_t) { names.push_back(node.GetName().str()); });
    EXPECT_THAT(names,
                testing::ElementsAre("Group", "Whole", "Hex", "Number", "Switch", "Choice", "Fixed", "Limit", "Root"));
    EXPECT_EQ(AllFeatures(Map()).size(), 8U);
}

TEST(ParseAssignment, SplitsAtTheFirstEqualsSign) {
    const Assignment parsed = ParseAssignment("DeviceUserID=a=b");
    EXPECT_EQ(parsed.name, "DeviceUserID");
    EXPECT_EQ(parsed.text, "a=b");
    EXPECT_EQ(ParseAssignment("A=").text, "");
    EXPECT_THROW(ParseAssignment("A"), ToolError);
    EXPECT_THROW(ParseAssignment("=1"), ToolError);
}

TEST(VisibilityFromWord, TakesAnyCase) {
    EXPECT_EQ(VisibilityFromWord("Expert"), GenApi::Expert);
    EXPECT_EQ(VisibilityFromWord("INVISIBLE"), GenApi::Invisible);
    EXPECT_THROW(VisibilityFromWord("master"), ToolError);
}

}  // namespace
