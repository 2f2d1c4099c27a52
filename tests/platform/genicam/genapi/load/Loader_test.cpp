/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Loading: what faulty texts are forgiven, what is refused
 */

#include "LoadingFixture.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

// --- Tolerance: one warning each, with its place ---

TEST_F(Loading, AFaultlessFileHasNoWarnings) {
    Load(
        "<Group Comment='G'><Integer Name='A' NameSpace='Custom'><Extension><Any>x</Any></Extension><Value>3</Value>"
        "</Integer></Group>");
    EXPECT_TRUE(map._GetWarnings().empty()) << FirstWarning();
}

TEST_F(Loading, ForgivesBlanksAroundNamesAndValues) {
    Load(
        "<Integer Name=' A\n'>\n  <Value>\t 3\n </Value>\n<Representation> HexNumber </Representation></Integer>"
        "<Integer Name='B'><pValue>\n      A\n   </pValue></Integer>"
        "<IntSwissKnife Name='S'><pVariable Name=' X '> A </pVariable><Formula>\n X\n + 1 </Formula></IntSwissKnife>");
    EXPECT_EQ(Integer("A")->GetValue(), 3);
    EXPECT_EQ(Integer("B")->GetValue(), 3);
    EXPECT_EQ(Integer("S")->GetValue(), 4);
    EXPECT_EQ(Integer("A")->GetRepresentation(), HexNumber);
}

TEST_F(Loading, ForgivesALineBeforeTheDeclaration) {
    for (const char* before : {"\n", "  \n\t", "XML follows:\r\n", "File 1.2 > 1.1\n"}) {
        map._LoadXMLFromString((before + Describe("")).c_str());
        EXPECT_NE(map._GetNode("Device"), nullptr);
        EXPECT_EQ(FirstWarning(), "1,1 There is text before the XML declaration");
    }
}

TEST_F(Loading, ForgivesAByteOrderMark) {
    map._LoadXMLFromString(("\xEF\xBB\xBF" + Describe("")).c_str());
    EXPECT_TRUE(map._GetWarnings().empty());
}

TEST_F(Loading, ForgivesOtherNameSpaces) {
    map._LoadXMLFromString("<RegisterDescription SchemaMajorVersion='1' SchemaMinorVersion='0'/>");
    EXPECT_EQ(FirstWarning(), "1,2 RegisterDescription has no name space");
    map._LoadXMLFromString("<RegisterDescription SchemaMajorVersion='1' SchemaMinorVersion='0' xmlns='urn:x'/>");
    EXPECT_EQ(FirstWarning(), "1,2 RegisterDescription has the name space 'urn:x'");
    map._LoadXMLFromString(
        "<g:RegisterDescription SchemaMajorVersion='1' SchemaMinorVersion='1' "
        "xmlns:g='http://www.genicam.org/GenApi/Version_1_1'><g:Integer Name='A'><g:Value>2</g:Value></g:Integer>"
        "</g:RegisterDescription>");
    EXPECT_TRUE(map._GetWarnings().empty()) << FirstWarning();
    EXPECT_EQ(Integer("A")->GetValue(), 2);
}

TEST_F(Loading, ForgivesAMissingSchemaVersion) {
    map._LoadXMLFromString(
        "<RegisterDescription SchemaVersion='1.1' xmlns='http://www.genicam.org/GenApi/Version_1_1'/>");
    Version_t version;
    map._GetSchemaVersion(version);
    EXPECT_EQ(version, (Version_t{1, 1, 0}));
    EXPECT_EQ(map._GetWarnings().size(), 2U);
    EXPECT_EQ(Warnings(wkUnknownAttribute), 1);
}

TEST_F(Loading, ForgivesLatin1InUtf8) {
    Load("<Integer Name='A'><Unit>\xB5s</Unit><ToolTip>\xC2\xB5s \xE9</ToolTip><Value>3</Value></Integer>");
    EXPECT_EQ(Integer("A")->GetUnit(), "\xC2\xB5s");
    EXPECT_EQ(Node("A")->GetToolTip(), "\xC2\xB5s \xC3\xA9");
    EXPECT_EQ(Warnings(wkSyntax), 2);
    EXPECT_EQ(FirstWarning(), "3,25 A character is not UTF-8; it is taken as Latin-1");
}

TEST_F(Loading, ReadsDeclaredLatin1) {
    std::string xml = Describe("<Integer Name='A'><Unit>\xB5s</Unit><Value>3</Value></Integer>");
    xml.replace(xml.find("UTF-8"), 5, "ISO-8859-1");
    map._LoadXMLFromString(xml.c_str());
    EXPECT_EQ(Integer("A")->GetUnit(), "\xC2\xB5s");
    EXPECT_TRUE(map._GetWarnings().empty());
}

TEST_F(Loading, ReadsUtf16) {
    std::string xml = Describe("<Integer Name='A'><Unit>\x01s</Unit><Value>3</Value></Integer>");
    xml.replace(xml.find("UTF-8"), 5, "UTF-16");
    for (const bool isBigEndian : {false, true}) {
        std::string wide = isBigEndian ? "\xFE\xFF" : "\xFF\xFE";
        for (const char character : xml) {
            // U+20AC in the place of the byte 1.
            const char high = character == '\x01' ? '\x20' : '\0';
            const char low = character == '\x01' ? '\xAC' : character;
            wide += isBigEndian ? high : low;
            wide += isBigEndian ? low : high;
        }
        map._LoadXMLFromString(gcstring(wide.data(), wide.size()));
        EXPECT_EQ(Integer("A")->GetUnit(), "\xE2\x82\xACs");
    }
}

TEST_F(Loading, ForgivesAnUnescapedAmpersand) {
    Load(
        "<IntSwissKnife Name='A'><ToolTip>this & that &unknown; &amp; &#65;&#x42;</ToolTip>\n"
        "<Formula>6 & 3</Formula></IntSwissKnife>");
    EXPECT_EQ(Integer("A")->GetValue(), 2);
    EXPECT_EQ(Node("A")->GetToolTip(), "this & that &unknown; & AB");
    EXPECT_EQ(Warnings(wkSyntax), 3);
    EXPECT_EQ(FirstWarning(), "3,39 '&' is not part of a reference");
}

TEST_F(Loading, ForgivesUnknownElementsAndAttributes) {
    Load(
        "<Integer Name='A' Colour='red'>\n<Taste>sweet</Taste><Value Weight='2'>3</Value></Integer>\n"
        "<Gadget Name='G'><Value>1</Value></Gadget>");
    EXPECT_EQ(Integer("A")->GetValue(), 3);
    EXPECT_EQ(map._GetNode("G"), nullptr);
    EXPECT_EQ(Warnings(wkUnknownAttribute), 2);
    EXPECT_EQ(Warnings(wkUnknownElement), 2);
    EXPECT_EQ(FirstWarning(), "3,19 Integer has an unknown attribute Colour");
}

TEST_F(Loading, OfTwoAttributesOfOneNameTheFirstCounts) {
    Load(
        "<Integer Name='A' NameSpace='Standard' Name='B'><Value>1</Value></Integer>"
        "<IntSwissKnife Name='K'><pVariable Name='X' Name='Y'>A</pVariable><Formula>X</Formula></IntSwissKnife>\n"
        "<Group Comment='a' Comment='b'></Group>");
    EXPECT_EQ(Integer("K")->GetValue(), 1);
    EXPECT_EQ(map._GetNode("B"), nullptr);
    EXPECT_EQ(Warnings(wkSyntax), 3);
    EXPECT_EQ(FirstWarning(), "3,40 Integer has two attributes Name");
}

TEST_F(Loading, OfTwoAttributesOfTheRootTheFirstCounts) {
    map._LoadXMLFromString(
        "<RegisterDescription ModelName='A' ModelName='B' SchemaMajorVersion='1' "
        "xmlns='http://www.genicam.org/GenApi/Version_1_1'/>");
    EXPECT_EQ(map._GetModelName(), "A");
    EXPECT_EQ(FirstWarning(), "1,36 RegisterDescription has two attributes ModelName");
}

TEST_F(Loading, ListsOnlyWhatHasAName) {
    Load(
        "<StructReg Comment='S'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
        "<IntSwissKnife><Formula>8</Formula></IntSwissKnife><StructEntry Name='E'><Bit>0</Bit></StructEntry>"
        "</StructReg>");
    NodeList_t nodes;
    map._GetNodes(nodes);
    EXPECT_EQ(nodes, (NodeList_t{Node("E"), Node("Device")}));
    EXPECT_EQ(map._GetNodeMap()->GetNumNodes(), 2U);
}

TEST_F(Loading, ForgivesReferencesToNothing) {
    Load("<Integer Name='A'><pValue>Nothing</pValue></Integer>\n<Integer Name='B'><Value>3</Value></Integer>");
    EXPECT_EQ(Mode("A"), NI);
    EXPECT_EQ(Integer("B")->GetValue(), 3);
    EXPECT_EQ(map._GetWarnings().size(), 1U);
    EXPECT_EQ(FirstWarning(), "3,27 Integer 'A' (line 3): pValue refers to 'Nothing', which does not exist");
    try {
        Integer("A")->GetValue();
        FAIL() << "read";
    } catch (const AccessException& exception) {
        EXPECT_NE(std::string(exception.GetDescription()).find("'Nothing'"), std::string::npos);
    }
}

TEST_F(Loading, ALinkToNothingIsLeftOut) {
    Load(
        "<Integer Name='A'><Value>1</Value><pInvalidator>Nothing</pInvalidator><pSelected>Nothing</pSelected>"
        "<pAlias>Nothing</pAlias></Integer>");
    EXPECT_EQ(Mode("A"), RW);
    EXPECT_EQ(Warnings(wkDanglingReference), 3);
}

TEST_F(Loading, ReferencesOfEveryRuleMustExist) {
    for (const char* element : {"pIsImplemented", "pIsAvailable", "pIsLocked", "pMin", "pMax", "pInc", "pValueCopy"}) {
        Load("<Integer Name='A'><Value>1</Value><" + std::string(element) + ">Nothing</" + element + "></Integer>");
        EXPECT_EQ(Mode("A"), NI) << element;
        EXPECT_EQ(map._GetWarnings().size(), 1U) << element;
    }
}

TEST_F(Loading, AReferenceOfTheWrongKindMakesItsNodeNotImplemented) {
    for (const char* element : {"pValue", "pMin", "pIndex", "pValueCopy"}) {
        Load("<Integer Name='A'><Value>1</Value><" + std::string(element) + ">C</" + element +
             "></Integer><Category Name='C'/>");
        EXPECT_EQ(Mode("A"), NI) << element;
        EXPECT_EQ(Warnings(wkUnusableNode), 1) << element;
    }
}

TEST_F(Loading, KeepsTheFirstOfTwoNodesOfOneName) {
    Load("<Integer Name='A'><Value>1</Value></Integer>\n<Integer Name='A'><Value>2</Value></Integer>");
    EXPECT_EQ(Integer("A")->GetValue(), 1);
    EXPECT_EQ(FirstWarning(), "4,2 There is already a node 'A'");
    EXPECT_EQ(map._GetNodeMap()->GetNumNodes(), 2U);
}

TEST_F(Loading, LeavesOutNodesWithoutAName) {
    Load("<Integer><Value>1</Value></Integer>");
    EXPECT_EQ(map._GetNodeMap()->GetNumNodes(), 1U);
    EXPECT_EQ(Warnings(wkBadValue), 1);
}

TEST_F(Loading, ReadsCommentsAndSectionsWithinTexts) {
    Load("<IntSwissKnife Name='A'><Formula>1 <!-- one -->+<![CDATA[ (6 & 3) ]]> + 10</Formula></IntSwissKnife>");
    EXPECT_EQ(Integer("A")->GetValue(), 13);
}

TEST_F(Loading, SendsWarningsToTheSink) {
    std::vector<std::string> told;
    SetWarningSink(
        [&told](const Warning& warning) { told.push_back(warning.File.str() + ": " + warning.Message.str()); });
    const std::string file = File("sink.xml", Describe("<Gadget/>"));
    map._LoadXMLFromFile(file.c_str());
    SetWarningSink({});
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0], file + ": Unknown element Gadget");
    map._LoadXMLFromFile(file.c_str());
    EXPECT_EQ(told.size(), 1U);
}

TEST_F(Loading, ASinkThatThrowsDoesNotKeepAFileFromLoading) {
    SetWarningSink([](const Warning&) { throw std::runtime_error("full"); });
    Load("<Gadget/>");
    SetWarningSink({});
    EXPECT_EQ(map._GetWarnings().size(), 1U);
}

TEST_F(Loading, BoundsTheNumberOfWarnings) {
    std::string nodes;
    for (int i = 0; i < 20000; ++i)
        nodes += "<Gadget/>\n";
    Load(nodes);
    const WarningList_t warnings = map._GetWarnings();
    ASSERT_EQ(warnings.size(), 10001U);
    EXPECT_EQ(warnings.back().Message, "There are more warnings; they are not listed");
    EXPECT_EQ(warnings.back().Line, 0U);
}

TEST_F(Loading, BoundsTheNumberOfWarningsAboutUnusableNodes) {
    std::string nodes;
    for (int i = 0; i < 11000; ++i)
        nodes += "<Integer Name='N" + std::to_string(i) + "'><pValue>N" + std::to_string((i + 1) % 11000) +
                 "</pValue></Integer>";
    Load(nodes);
    EXPECT_EQ(Mode("N0"), NI);
    const WarningList_t warnings = map._GetWarnings();
    ASSERT_EQ(warnings.size(), 10001U);
    EXPECT_EQ(warnings.back().Kind, wkSyntax);
    EXPECT_EQ(warnings.back().Line, 0U);
    EXPECT_EQ(warnings.back().File, "Device");
}

// --- Refusals: one exception with file, line and column ---

// --- Circles and depth ---

TEST_F(Loading, AnUnusableNodeHasAPlace) {
    Load("\n  <Integer Name='A'><Value>x</Value></Integer>");
    EXPECT_EQ(Mode("A"), NI);
    EXPECT_EQ(FirstWarning(), "4,4 Integer 'A' (line 4): not implemented: Value 'x' is no number");
}

// Whoever uses a node that its description makes unusable is told which one, where, and why.
TEST_F(Loading, AnUnusableNodeNamesItselfItsLineAndTheReason) {
    const std::vector<std::pair<std::string, std::string>> nodes = {
        {"<Integer Name='A'><pValue>B</pValue></Integer><Integer Name='B'><pValue>A</pValue></Integer>", "circle"},
        {"<IntSwissKnife Name='A'><Formula>1 +</Formula></IntSwissKnife>", "does not parse"},
        {"<IntReg Name='A'><Address>0</Address><Length>4</Length></IntReg>", "has no port"},
        {"<IntReg Name='A'><Address>0</Address><Length>4</Length><pPort>None</pPort></IntReg>", "does not exist"},
        {"<IntReg Name='A'><Address>0</Address><Length>4</Length><pPort>C</pPort></IntReg><Category Name='C'/>",
         "which is no port"},
        {"<Integer Name='A'><pValue>C</pValue></Integer><Category Name='C'/>", "which has no number"}};
    for (const auto& [xml, reason] : nodes) {
        Load("\n" + xml);
        try {
            Integer("A")->GetValue();
            ADD_FAILURE() << xml;
        } catch (const GenericException& exception) {
            EXPECT_NE(std::string(exception.GetDescription()).find("'A' (line 4)"), std::string::npos)
                << exception.GetDescription();
            EXPECT_NE(std::string(exception.GetDescription()).find(reason), std::string::npos)
                << exception.GetDescription();
        }
    }
}

}  // namespace genapitest
