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

// --- Circles and depth ---

TEST_F(Loading, ACircleOfValuesThrowsWhenItIsUsed) {
    Load(
        "<Integer Name='A'><pValue>B</pValue></Integer><Integer Name='B'><pValue>C</pValue></Integer>"
        "<Integer Name='C'><pValue>A</pValue></Integer><Integer Name='D'><Value>1</Value></Integer>");
    EXPECT_THROW(Integer("B")->GetValue(), AccessException);
    EXPECT_EQ(Mode("A"), NI);
    EXPECT_EQ(Mode("B"), NI);
    EXPECT_EQ(Mode("C"), NI);
    EXPECT_EQ(Integer("D")->GetValue(), 1);
}

TEST_F(Loading, ANodeThatIsItsOwnValueOrBound) {
    Load(
        "<Integer Name='A'><pValue>A</pValue></Integer>"
        "<Integer Name='B'><Value>1</Value><pMax>B</pMax></Integer>"
        "<IntSwissKnife Name='S'><pVariable Name='X'>S</pVariable><Formula>X+1</Formula></IntSwissKnife>"
        "<IntReg Name='R'><pAddress>R</pAddress><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
        "</IntReg><Register Name='L'><Address>0</Address><pLength>LI</pLength><pPort>Device</pPort></Register>"
        "<IntSwissKnife Name='LI'><pVariable Name='X'>LI2</pVariable><Formula>X</Formula></IntSwissKnife>"
        "<Integer Name='LI2'><pValue>LI</pValue></Integer>");
    EXPECT_THROW(Integer("A")->GetValue(), AccessException);
    EXPECT_EQ(Integer("B")->GetMax(), 1);
    EXPECT_THROW(Integer("S")->GetValue(), AccessException);
    EXPECT_THROW(Integer("R")->GetValue(), AccessException);
    EXPECT_THROW(Bytes("L")->Get(nullptr, 1), AccessException);
}

TEST_F(Loading, BoundsThatReferToEachOtherAreNoCircle) {
    Load(
        "<Integer Name='Lo'><Value>2</Value><pMax>Hi</pMax></Integer>"
        "<Integer Name='Hi'><Value>8</Value><pMin>Lo</pMin></Integer>");
    EXPECT_EQ(Integer("Lo")->GetMax(), 8);
    EXPECT_EQ(Integer("Hi")->GetMin(), 2);
    Integer("Lo")->SetValue(8);
    EXPECT_THROW(Integer("Lo")->SetValue(9), OutOfRangeException);
}

TEST_F(Loading, BoundsInACircleThrow) {
    Load(
        "<IntSwissKnife Name='S'><pVariable Name='X.Max'>A</pVariable><Formula>X.Max</Formula></IntSwissKnife>"
        "<Integer Name='A'><Value>1</Value><pMax>S</pMax></Integer>");
    EXPECT_THROW(Integer("A")->GetMax(), GenericException);
}

TEST_F(Loading, AChainMayBeLong) {
    std::string nodes;
    for (int i = 0; i < 50000; ++i)
        nodes += "<Integer Name='N" + std::to_string(i) + "'><pValue>N" + std::to_string(i + 1) + "</pValue></Integer>";
    Load(nodes + "<Integer Name='N50000'><Value>1</Value></Integer>");
    EXPECT_EQ(Mode("N0"), RW);
    EXPECT_EQ(Integer("N0")->GetValue(), 1);
    EXPECT_EQ(Integer("N0")->GetMax(), INT64_MAX);
    Integer("N50000")->SetValue(2);
    EXPECT_EQ(Integer("N0")->GetValue(false, true), 2);
    Integer("N49950")->SetValue(3);
    EXPECT_EQ(Integer("N0")->GetValue(), 3);
    EXPECT_THROW(Integer("N0")->SetValue(4), LogicalErrorException);
    EXPECT_EQ(Integer("N50000")->GetValue(), 3);
}

TEST_F(Loading, AppearanceEndsInALongChainAndInACircle) {
    std::string nodes;
    for (int i = 0; i < 50000; ++i)
        nodes += "<Integer Name='N" + std::to_string(i) + "'><pValue>N" + std::to_string(i + 1) + "</pValue></Integer>";
    Load(nodes +
         "<Integer Name='N50000'><Value>1</Value><Unit>us</Unit></Integer>"
         "<Integer Name='A'><pValue>B</pValue></Integer><Integer Name='B'><pValue>A</pValue></Integer>");
    EXPECT_EQ(Integer("N49990")->GetUnit(), "us");
    EXPECT_EQ(Integer("N0")->GetRepresentation(), PureNumber);
    EXPECT_EQ(Integer("A")->GetUnit(), "");
}

TEST_F(Loading, StrangeNamesAreLookedUpQuickly) {
    std::string prefixes;
    for (int i = 0; i < 1000000; ++i)
        prefixes += "Std::";
    Load("<Integer Name='A'><pValue>EnumEntry_" + std::string(5000000, '_') + "</pValue></Integer>" +
         "<Integer Name='B'><pValue>" + prefixes + "</pValue></Integer>");
    EXPECT_EQ(Mode("A"), NI);
    EXPECT_EQ(Mode("B"), NI);
}

TEST_F(Loading, AStructureMayHaveVeryManyEntries) {
    std::string entries;
    for (int i = 0; i < 100000; ++i)
        entries +=
            "<StructEntry Name='E" + std::to_string(i) + "'><Bit>" + std::to_string(i % 32) + "</Bit></StructEntry>";
    Load(
        "<StructReg Comment='S'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort>" +
        entries + "</StructReg>");
    Integer("E77")->SetValue(1);
    int set = 0;
    for (int i = 0; i < 100000; ++i)
        set += static_cast<int>(Integer("E" + std::to_string(i))->GetValue());
    EXPECT_EQ(set, 3125);
}

// --- Size ---

TEST_F(Loading, AFileOf50MegabytesLoads) {
    std::string nodes;
    const std::string text(200, 'x');
    int count = 0;
    while (nodes.size() < 50U * 1024 * 1024) {
        const std::string number = std::to_string(count++);
        nodes += "<Integer Name='Feature" + number + "'><ToolTip>" + text + "</ToolTip><pValue>Register" + number +
                 "</pValue></Integer><IntReg Name='Register" + number + "'><Address>" + number +
                 "</Address><Length>1</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>\n";
    }
    Load(nodes);
    EXPECT_EQ(map._GetNodeMap()->GetNumNodes(), 2U * static_cast<unsigned>(count) + 1);
    EXPECT_EQ(Integer("Feature12345")->GetValue(), 0);
    EXPECT_EQ(Bytes("Register12345")->GetAddress(), 12345);
}

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
