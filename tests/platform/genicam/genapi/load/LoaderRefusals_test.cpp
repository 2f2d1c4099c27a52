/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Loading: what is refused, with file, line and column
 */

#include "LoadingFixture.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

TEST_F(Loading, RefusesWhatIsNoDescription) {
    EXPECT_EQ(Refusal("").substr(0, 12), "Device(1,1):");
    EXPECT_EQ(Refusal("   \n  ").substr(0, 7), "Device(");
    EXPECT_EQ(Refusal("This is no XML at all.").substr(0, 7), "Device(");
    EXPECT_EQ(Refusal("\n<html></html>").substr(0, 12), "Device(2,2):");
    EXPECT_NE(Refusal("<html></html>").find("html"), std::string::npos);
    EXPECT_EQ(Refusal("<!-- only a comment -->").substr(0, 7), "Device(");
}

TEST_F(Loading, RefusesEveryTruncatedFile) {
    const std::string xml = Describe("<Integer Name='A'><Value>3</Value></Integer>");
    for (std::size_t length = 0; length + 3 < xml.size(); ++length)
        ASSERT_EQ(Refusal(xml.substr(0, length)).substr(0, 7), "Device(") << length;
}

TEST_F(Loading, NamesThePlaceOfAFault) {
    EXPECT_EQ(Refusal(Describe("<Integer Name='A'>\n  <Value>3</Wrong>\n</Integer>")).substr(0, 9), "Device(4,");
    EXPECT_EQ(Refusal(Describe("\n\n<Integer Name=>")).substr(0, 9), "Device(5,");
}

TEST_F(Loading, RefusesANewerSchema) {
    EXPECT_NE(Refusal("<RegisterDescription SchemaMajorVersion='2' SchemaMinorVersion='0' "
                      "xmlns='http://www.genicam.org/GenApi/Version_1_1'/>")
                  .find("Schema version 2.0"),
              std::string::npos);
    EXPECT_EQ(Refusal("<RegisterDescription SchemaMajorVersion='1' SchemaMinorVersion='9' "
                      "xmlns='http://www.genicam.org/GenApi/Version_1_1'/>"),
              "loaded");
    EXPECT_EQ(Warnings(wkNameSpace), 1);
}

TEST_F(Loading, RefusesEntityBombs) {
    const std::string bomb =
        "<?xml version='1.0'?>\n<!DOCTYPE RegisterDescription [\n<!ENTITY a 'aaaaaaaaaa'>\n"
        "<!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;'>\n]>\n"
        "<RegisterDescription SchemaMajorVersion='1' SchemaMinorVersion='1'><Integer Name='A'><ToolTip>&b;</ToolTip>"
        "</Integer></RegisterDescription>";
    EXPECT_EQ(Refusal(bomb).substr(0, 9), "Device(2,");
    EXPECT_NE(Refusal(bomb).find("Entities"), std::string::npos);
}

TEST_F(Loading, NeverFetchesAnything) {
    const std::string secret = File("secret.txt", "secret");
    const std::string xml = "<!DOCTYPE r SYSTEM 'file://" + secret + "'>" + Describe("").substr(39);
    EXPECT_EQ(Refusal(xml), "loaded");
    EXPECT_EQ(Warnings(wkSyntax), 1);
    EXPECT_EQ(
        Refusal("<!DOCTYPE r [<!ENTITY x SYSTEM 'file://" + secret + "'>]>" + Describe("").substr(39)).substr(0, 7),
        "Device(");
}

TEST_F(Loading, RefusesGroupsWithoutEnd) {
    std::string open;
    std::string close;
    for (int i = 0; i < 100000; ++i) {
        open += "<Group>";
        close += "</Group>";
    }
    EXPECT_EQ(Refusal(Describe(open + close)).substr(0, 7), "Device(");
}

TEST_F(Loading, SurvivesElementsNestedWithoutEnd) {
    std::string open;
    std::string close;
    for (int i = 0; i < 200000; ++i) {
        open += "<x>";
        close += "</x>";
    }
    EXPECT_EQ(Refusal(Describe("<Integer Name='A'>" + open + close + "<Value>1</Value></Integer>")), "loaded");
    EXPECT_EQ(Integer("A")->GetValue(), 1);
}

TEST_F(Loading, SurvivesChangedBytes) {
    const std::string xml = Describe(
        "<Category Name='Root'><pFeature>A</pFeature></Category><Integer Name='A'><pValue>R</pValue></Integer>"
        "<IntReg Name='R'><Address>0x10</Address><Length>4</Length><pPort>Device</pPort></IntReg>"
        "<IntSwissKnife Name='S'><pVariable Name='X'>A</pVariable><Formula>X &gt; 1</Formula></IntSwissKnife>");
    for (std::size_t at = 0; at < xml.size(); ++at) {
        std::string changed = xml;
        changed[at] = static_cast<char>(changed[at] ^ (1 << (at % 8)));
        if (Refusal(changed) != "loaded")
            continue;
        map._Connect(&port);
        NodeList_t nodes;
        map._GetNodes(nodes);
        for (INode* node : nodes)
            node->GetAccessMode();
    }
}

}  // namespace genapitest
