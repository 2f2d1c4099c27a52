/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What all nodes have
 */

#include "NodeTexts.h"
#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class AnyNode : public NodeMapTest {};

TEST_F(AnyNode, HasPropertiesOfTheDescription) {
    Load(
        "<Integer Name='A' NameSpace='Standard'><ToolTip>T</ToolTip><Description>D &amp; E</Description>"
        "<DisplayName>N</DisplayName><DocuURL>http://x</DocuURL><IsDeprecated>Yes</IsDeprecated>"
        "<EventID>9001</EventID><Streamable>Yes</Streamable><pAlias>B</pAlias><pCastAlias>B</pCastAlias>"
        "<Value>1</Value></Integer><Float Name='B'><Value>1</Value></Float>");
    INode& node = *Node("A");
    EXPECT_EQ(node.GetToolTip(), "T");
    EXPECT_EQ(node.GetDescription(), "D & E");
    EXPECT_EQ(node.GetDisplayName(), "N");
    EXPECT_EQ(node.GetDocuURL(), "http://x");
    EXPECT_TRUE(node.IsDeprecated());
    EXPECT_TRUE(node.IsStreamable());
    EXPECT_EQ(node.GetEventID(), "9001");
    EXPECT_EQ(node.GetAlias(), Node("B"));
    EXPECT_EQ(node.GetCastAlias(), Node("B"));
    EXPECT_EQ(node.GetName(true), "Std::A");
    EXPECT_EQ(Node("B")->GetName(true), "Cust::B");
    EXPECT_EQ(node.GetDeviceName(), "Device");
    EXPECT_EQ(node.GetNodeMap(), map._GetNodeMap());
    EXPECT_EQ(node.GetPrincipalInterfaceType(), intfIInteger);
    EXPECT_EQ(Node("B")->GetAlias(), nullptr);
    EXPECT_EQ(node.GetPollingTime(), -1);
}

TEST_F(AnyNode, IsFoundWithItsNameSpace) {
    Load("<Integer Name='A' NameSpace='Standard'><Value>1</Value></Integer>");
    EXPECT_EQ(map._GetNode("Std::A"), Node("A"));
    EXPECT_EQ(map._GetNode("Cust::A"), nullptr);
    EXPECT_EQ(map._GetNode(""), nullptr);
    EXPECT_EQ(map._GetNode("a"), nullptr);
}

TEST_F(AnyNode, TellsTheElementsOfItsDescription) {
    Load(
        "<IntSwissKnife Name='S'><pVariable Name='X'>A</pVariable><pVariable Name='Y'>A</pVariable>"
        "<Formula>X+Y</Formula></IntSwissKnife><Integer Name='A'><Value>1</Value></Integer>");
    gcstring_vector names;
    Node("S")->GetPropertyNames(names);
    EXPECT_EQ(names, (gcstring_vector{"pVariable", "Formula"}));
    gcstring value;
    gcstring attribute;
    EXPECT_TRUE(Node("S")->GetProperty("pVariable", value, attribute));
    EXPECT_EQ(value, "A\tA");
    EXPECT_EQ(attribute, "X\tY");
    EXPECT_FALSE(Node("S")->GetProperty("Value", value, attribute));
}

TEST_F(AnyNode, KnowsItsNeighbours) {
    Load(
        "<Integer Name='A'><pValue>R</pValue><pMax>M</pMax><pInvalidator>I</pInvalidator></Integer>"
        "<Integer Name='M'><Value>100</Value></Integer><Integer Name='I'><Value>1</Value></Integer>" +
        Reg("R"));
    NodeList_t nodes;
    Node("A")->GetChildren(nodes, ctReadingChildren);
    EXPECT_EQ(nodes, (NodeList_t{Node("R"), Node("M")}));
    Node("A")->GetChildren(nodes, ctWritingChildren);
    EXPECT_EQ(nodes, NodeList_t{Node("R")});
    Node("A")->GetChildren(nodes, ctInvalidatingChildren);
    EXPECT_EQ(nodes, NodeList_t{Node("I")});
    Node("A")->GetChildren(nodes, ctTerminalNodes);
    EXPECT_EQ(nodes, NodeList_t{Node("R")});
    Node("I")->GetChildren(nodes, ctDependingNodes);
    EXPECT_EQ(nodes, NodeList_t{Node("A")});
    Node("M")->GetParents(nodes);
    EXPECT_EQ(nodes, NodeList_t{Node("A")});
    Node("M")->GetChildren(nodes, ctParentNodes);
    EXPECT_EQ(nodes, NodeList_t{Node("A")});
}

TEST_F(AnyNode, SelectorsKnowWhatTheySelect) {
    Load(
        "<Integer Name='Sel'><Value>0</Value><pSelected>A</pSelected><pSelected>B</pSelected></Integer>"
        "<Integer Name='A'><Value>1</Value></Integer><Integer Name='B'><Value>1</Value></Integer>");
    FeatureList_t features;
    CSelectorPtr selector = Node("Sel");
    EXPECT_TRUE(selector->IsSelector());
    selector->GetSelectedFeatures(features);
    EXPECT_EQ(features.size(), 2U);
    CSelectorPtr selected = Node("A");
    EXPECT_FALSE(selected->IsSelector());
    selected->GetSelectingFeatures(features);
    ASSERT_EQ(features.size(), 1U);
    EXPECT_EQ(features[0]->GetNode(), Node("Sel"));
}

TEST_F(AnyNode, AnErrorNodeIsAskedAfterAWrite) {
    Load("<Integer Name='A'><pError>E</pError><pValue>R</pValue></Integer>" + Reg("R") + "<Enumeration Name='E'>" +
         Entry("Fine", 0) + Entry("TooHot", 4) +
         "<pValue>ER</pValue></Enumeration>"
         "<IntReg Name='ER'><Address>8</Address><Length>1</Length><AccessMode>RO</AccessMode><pPort>Device</pPort>"
         "</IntReg>");
    Integer("A")->SetValue(1);
    port.PutLittle(8, 4, 1);
    try {
        Integer("A")->SetValue(2);
        FAIL() << "no error";
    } catch (const RuntimeException& exception) {
        EXPECT_NE(std::string(exception.GetDescription()).find("TooHot"), std::string::npos);
    }
    Integer("A")->SetValue(3, false);
    EXPECT_EQ(port.Little(0, 4), 3U);
}

TEST_F(AnyNode, TheMapTellsAboutItself) {
    Load("<Integer Name='A'><Value>1</Value></Integer>");
    EXPECT_EQ(map._GetModelName(), "Model");
    EXPECT_EQ(map._GetVendorName(), "Vendor");
    EXPECT_EQ(map._GetToolTip(), "Tip");
    EXPECT_EQ(map._GetStandardNameSpace(), "None");
    EXPECT_EQ(map._GetProductGuid(), "P");
    EXPECT_EQ(map._GetVersionGuid(), "V");
    Version_t version;
    map._GetSchemaVersion(version);
    EXPECT_EQ(version, (Version_t{1, 1, 0}));
    map._GetDeviceVersion(version);
    EXPECT_EQ(version, (Version_t{1, 2, 3}));
    std::uint16_t build = 9;
    map._GetGenApiVersion(version, build);
    EXPECT_EQ(version, (Version_t{2, 3, 0}));
    NodeList_t nodes;
    map._GetNodes(nodes);
    EXPECT_EQ(nodes.size(), 2U);
    EXPECT_EQ(map._GetNodeMap()->GetNumNodes(), 2U);
    gcstring_vector versions;
    CNodeMapRef::_GetSupportedSchemaVersions(versions);
    EXPECT_EQ(versions, (gcstring_vector{"1.0", "1.1"}));
}

TEST_F(AnyNode, AMapThatIsNotLoadedSaysSo) {
    EXPECT_THROW(map._GetNode("A"), LogicalErrorException);
    EXPECT_EQ(map._GetNodeMap(), nullptr);
    EXPECT_EQ(map._GetDeviceName(), "Device");
}

TEST_F(AnyNode, StaysUsableAfterALoadThatFailed) {
    Load("<Integer Name='A'><Value>1</Value></Integer>");
    EXPECT_THROW(map._LoadXMLFromString("<nonsense"), RuntimeException);
    EXPECT_EQ(Integer("A")->GetValue(), 1);
}

TEST_F(AnyNode, HasEachParentOnce) {
    Load(
        "<Category Name='Root'><pFeature>A</pFeature><pFeature>A</pFeature></Category>"
        "<Integer Name='A'><Value>1</Value></Integer><Integer Name='B'><pValue>A</pValue><pMin>A</pMin></Integer>"
        "<Integer Name='C'><Value>1</Value><pSelected>A</pSelected><pInvalidator>A</pInvalidator></Integer>");
    NodeList_t parents;
    Node("A")->GetParents(parents);
    EXPECT_EQ(parents, (NodeList_t{Node("Root"), Node("B")}));
    FeatureList_t selecting;
    CSelectorPtr(Node("A"))->GetSelectingFeatures(selecting);
    ASSERT_EQ(selecting.size(), 1U);
    EXPECT_EQ(selecting[0]->GetNode(), Node("C"));
}

}  // namespace genapitest
