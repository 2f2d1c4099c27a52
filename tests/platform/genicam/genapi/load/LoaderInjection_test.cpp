/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Fragments that are injected into a description
 */

#include "LoadingFixture.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class Injection : public Loading {};

TEST_F(Injection, AnInjectedNodeReplacesOneOfItsName) {
    map._LoadXMLFromStringInject(
        Describe(
            "<Integer Name='A'><pValue>B</pValue></Integer><Integer Name='B'><Value>1</Value><Max>9</Max></Integer>")
            .c_str(),
        Describe("<Integer Name='B'><Value>2</Value></Integer>", false).c_str());
    EXPECT_EQ(Integer("A")->GetValue(), 2);
    EXPECT_EQ(Integer("B")->GetMax(), INT64_MAX);
    EXPECT_EQ(map._GetNodeMap()->GetNumNodes(), 3U);
    EXPECT_TRUE(map._GetWarnings().empty()) << FirstWarning();
}

TEST_F(Injection, AnInjectedNodeMayBeNewAndOfAnotherKind) {
    map._LoadXMLFromStringInject(
        Describe("<Category Name='Root'><pFeature>A</pFeature></Category><Integer Name='A'><Value>1</Value></Integer>"
                 "<Enumeration Name='E'><EnumEntry Name='X'><Value>0</Value></EnumEntry><Value>0</Value></Enumeration>")
            .c_str(),
        Describe("<Category Name='Root'><pFeature>A</pFeature><pFeature>New</pFeature></Category>"
                 "<Float Name='New'><Value>0.5</Value></Float><Float Name='E'><Value>1.5</Value></Float>",
                 false)
            .c_str());
    EXPECT_EQ(Float("New")->GetValue(), 0.5);
    EXPECT_EQ(Float("E")->GetValue(), 1.5);
    EXPECT_EQ(map._GetNode("EnumEntry_E_X"), nullptr);
    FeatureList_t features;
    Category("Root")->GetFeatures(features);
    EXPECT_EQ(features.size(), 2U);
    EXPECT_EQ(map._GetNodeMap()->GetNumNodes(), 5U);
}

TEST_F(Injection, AnInjectedFragmentNeedsNoRoot) {
    map._LoadXMLFromStringInject(
        Describe("<Integer Name='A'><Value>1</Value></Integer>").c_str(),
        "<Integer Name='A'><Value>5</Value></Integer>\n<Integer Name='B'><Value>6</Value></Integer>");
    EXPECT_EQ(Integer("A")->GetValue(), 5);
    EXPECT_EQ(Integer("B")->GetValue(), 6);
}

TEST_F(Injection, MergePrioritiesDecide) {
    map._LoadXMLFromStringInject(
        Describe("<Integer Name='A' MergePriority='1'><Value>1</Value></Integer>"
                 "<Integer Name='B'><Value>1</Value></Integer>")
            .c_str(),
        Describe("<Integer Name='A'><Value>2</Value></Integer><Integer Name='B' MergePriority='-1'><Value>2</Value>"
                 "</Integer>",
                 false)
            .c_str());
    EXPECT_EQ(Integer("A")->GetValue(), 1);
    EXPECT_EQ(Integer("B")->GetValue(), 1);
}

TEST_F(Injection, WhatIsInjectedDoesNotChangeWhatTheMapSaysAboutItself) {
    std::string other = Describe("", false);
    other.replace(other.find("\"Model\""), 7, "\"Other\"");
    map._LoadXMLFromStringInject(Describe("").c_str(), other.c_str());
    EXPECT_EQ(map._GetModelName(), "Model");
}

TEST_F(Injection, WarningsNameTheFileThatTheyAreAbout) {
    const std::string target = File("target.xml", Describe("<Integer Name='A'><pValue>Nothing</pValue></Integer>"));
    const std::string injected = File("injected.xml", "<Gadget/>\n<Integer Name='B'><pMax>Nothing</pMax></Integer>");
    map._LoadXMLFromFileInject(target.c_str(), injected.c_str());
    EXPECT_EQ(Mode("B"), NI);
    const WarningList_t warnings = map._GetWarnings();
    ASSERT_EQ(warnings.size(), 3U);
    EXPECT_EQ(warnings[0].File, injected);
    EXPECT_EQ(warnings[1].File, target);
    EXPECT_EQ(warnings[2].File, injected);
    EXPECT_EQ(warnings[2].Line, 2U);
    EXPECT_EQ(warnings[2].Column, 25U);
}

TEST_F(Injection, InjectsFromFiles) {
    map._LoadXMLFromFileInject(File("t.xml", Describe("<Integer Name='A'><Value>1</Value></Integer>")).c_str(),
                               File("i.xml", Describe("<Integer Name='A'><Value>2</Value></Integer>", false)).c_str());
    EXPECT_EQ(Integer("A")->GetValue(), 2);
    EXPECT_THROW(map._LoadXMLFromFileInject(Missing("a.xml").c_str(), Missing("b.xml").c_str()), RuntimeException);
    EXPECT_THROW(map._LoadXMLFromStringInject(Describe("").c_str(), "<Integer"), RuntimeException);
}

TEST_F(Injection, OfTwoInjectedNodesOfOneNameTheFirstCounts) {
    map._LoadXMLFromStringInject(
        Describe("<Integer Name='A'><Value>1</Value></Integer>").c_str(),
        "<Integer Name='A'><Value>2</Value></Integer><Integer Name='A'><Value>3</Value></Integer>");
    EXPECT_EQ(Integer("A")->GetValue(), 2);
    EXPECT_EQ(Warnings(wkDuplicateName), 1);
}

// What lies within a replaced node goes with it.
TEST_F(Injection, NodesWithinAReplacedNodeAreGone) {
    map._LoadXMLFromStringInject(
        Describe("<ConfRom Name='Rom'><Address>0</Address><Length>64</Length><pPort>Device</pPort>"
                 "<IntKey Name='Key'>1</IntKey><IntSwissKnife Name='At'><Formula>0</Formula></IntSwissKnife></ConfRom>"
                 "<Integer Name='User'><pValue>Key</pValue></Integer>")
            .c_str(),
        "<Integer Name='Rom'><Value>1</Value></Integer>");
    EXPECT_EQ(map._GetNode("Key"), nullptr);
    EXPECT_EQ(map._GetNode("At"), nullptr);
    EXPECT_EQ(Mode("User"), NI);
    EXPECT_EQ(Warnings(wkDanglingReference), 1);
}

TEST_F(Injection, ANameWithinAReplacedNodeIsFree) {
    map._LoadXMLFromStringInject(
        Describe("<ConfRom Name='Rom'><Address>0</Address><Length>64</Length><pPort>Device</pPort>"
                 "<IntKey Name='Key'><Key>1</Key></IntKey></ConfRom>")
            .c_str(),
        "<Integer Name='Rom'><Value>1</Value></Integer><Integer Name='Key'><Value>7</Value></Integer>");
    EXPECT_EQ(Integer("Key")->GetValue(), 7);
}

}  // namespace genapitest
