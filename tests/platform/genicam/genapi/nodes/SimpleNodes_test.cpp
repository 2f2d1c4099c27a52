/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Strings, categories and plain nodes
 */

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class StringNode : public NodeMapTest {};

TEST_F(StringNode, HoldsAText) {
    Load("<String Name='S'><Value> Hello  World! </Value></String>");
    EXPECT_EQ(String("S")->GetValue(), "Hello  World!");
    String("S")->SetValue("Other");
    EXPECT_EQ(String("S")->ToString(), "Other");
    EXPECT_EQ(String("S")->GetMaxLength(), INT64_MAX);
}

TEST_F(StringNode, ReadsTheTextOfARegister) {
    Load(
        "<String Name='S'><pValue>R</pValue></String><StringReg Name='R'><Address>0x10</Address><Length>8</Length>"
        "<AccessMode>RW</AccessMode><pPort>Device</pPort></StringReg>");
    port.PutText(0x10, "Camera");
    EXPECT_EQ(String("S")->GetValue(), "Camera");
    EXPECT_EQ(String("S")->GetMaxLength(), 8);
    String("S")->SetValue("abc");
    EXPECT_EQ(port.Big(0x10, 8), 0x6162630000000000U);
    EXPECT_EQ(*(*String("R")), "abc");
    String("R")->SetValue("12345678");
    EXPECT_EQ(String("S")->GetValue(), "12345678");
    EXPECT_THROW(String("S")->SetValue("123456789"), OutOfRangeException);
}

TEST_F(StringNode, OfANumberIsNotImplemented) {
    Load("<String Name='S'><pValue>I</pValue></String><Integer Name='I'><Value>1</Value></Integer>");
    EXPECT_EQ(Mode("S"), NI);
    EXPECT_EQ(String("S")->IsValueCacheValid(), false);
}

TEST_F(StringNode, AnEmptyTextIsAText) {
    Load("<String Name='S'><Value></Value></String>");
    EXPECT_EQ(Mode("S"), RW);
    EXPECT_EQ(String("S")->GetValue(), "");
}

class CategoryNode : public NodeMapTest {};

TEST_F(CategoryNode, ListsWhatIsImplemented) {
    Load(
        "<Category Name='Root'><pFeature>A</pFeature><pFeature>B</pFeature><pFeature>Nothing</pFeature>"
        "<pFeature>Sub</pFeature></Category><Integer Name='A'><Value>1</Value></Integer>"
        "<Integer Name='B'><Value>1</Value><pIsImplemented>F</pIsImplemented></Integer>"
        "<Integer Name='F'><Value>0</Value></Integer><Category Name='Sub'><DisplayName>Below</DisplayName></Category>");
    FeatureList_t features;
    Category("Root")->GetFeatures(features);
    ASSERT_EQ(features.size(), 2U);
    EXPECT_EQ(features[0]->GetNode()->GetName(), "A");
    EXPECT_EQ(features[1]->ToString(), "Below");
    EXPECT_TRUE(Node("A")->IsFeature());
    EXPECT_FALSE(Node("F")->IsFeature());
    EXPECT_FALSE(Node("Root")->IsFeature());
    Integer("F")->SetValue(1);
    Category("Root")->GetFeatures(features);
    EXPECT_EQ(features.size(), 3U);
    EXPECT_EQ(Warnings(wkDanglingReference), 1);
    EXPECT_EQ(Mode("Root"), RO);
    EXPECT_THROW(Category("Root")->FromString("x"), AccessException);
}

TEST_F(CategoryNode, MakesFeaturesOnlyBelowRoot) {
    Load(
        "<Category Name='Root'><pFeature>Sub</pFeature></Category>"
        "<Category Name='Sub'><pFeature>Deep</pFeature><pFeature>Root</pFeature></Category>"
        "<Category Name='Debug'><pFeature>Hidden</pFeature></Category>"
        "<Integer Name='Deep'><Value>1</Value></Integer><Integer Name='Hidden'><Value>1</Value></Integer>");
    EXPECT_TRUE(Node("Sub")->IsFeature());
    EXPECT_TRUE(Node("Deep")->IsFeature());
    EXPECT_TRUE(Node("Root")->IsFeature());
    EXPECT_FALSE(Node("Debug")->IsFeature());
    EXPECT_FALSE(Node("Hidden")->IsFeature());
}

TEST_F(CategoryNode, MayHaveRules) {
    Load("<Category Name='C'><pIsAvailable>F</pIsAvailable></Category><Integer Name='F'><Value>0</Value></Integer>");
    EXPECT_EQ(Mode("C"), NA);
}

TEST_F(CategoryNode, PlainNodesHaveTextsOnly) {
    Load("<Node Name='N'><ToolTip>tip</ToolTip></Node>");
    EXPECT_EQ(Node("N")->GetToolTip(), "tip");
    EXPECT_FALSE(CValuePtr(Node("N")).IsValid());
    EXPECT_EQ(Node("N")->GetPrincipalInterfaceType(), intfIBase);
}

}  // namespace genapitest
