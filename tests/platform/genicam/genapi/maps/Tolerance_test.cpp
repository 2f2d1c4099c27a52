/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Hostile and careless descriptions: what they cost and what is said about them
 */

#include <algorithm>

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class Tolerance : public NodeMapTest {
protected:
    std::size_t WarningBytes() const {
        std::size_t bytes = 0;
        for (const Warning& warning : map._GetWarnings())
            bytes += warning.Node.size() + warning.Message.size();
        return bytes;
    }
};

TEST_F(Tolerance, AKeyOfSomethingThatIsNoRegisterIsNotImplemented) {
    Load(
        "<Integer Name='R'><Value>1</Value><pPort>Device</pPort></Integer>"
        "<StructReg Name='S'><Address>0</Address><Length>4</Length><pPort>Device</pPort></StructReg>"
        "<TextDesc Name='T'><p1212Parser>R</p1212Parser><Key>1</Key></TextDesc>"
        "<IntKey Name='K'><p1212Parser>S</p1212Parser><Key>1</Key></IntKey>");
    EXPECT_EQ(Mode("T"), NI);
    EXPECT_EQ(Mode("K"), NI);
    EXPECT_THROW(String("T")->GetValue(), AccessException);
    EXPECT_THROW(String("T")->GetMaxLength(), AccessException);
    EXPECT_THROW(Integer("K")->GetValue(), AccessException);
}

// A name may be of any length, and every complaint about its node names it.
TEST_F(Tolerance, WarningsAboutALongNameAreShort) {
    const std::string name(200000, 'N');
    std::string nodes = "<Integer Name='" + name + "'><Value>1</Value>";
    for (int i = 0; i < 500; ++i)
        nodes += "<Unknown/><pSelected>" + std::to_string(i) + "</pSelected>";
    Load(nodes + "</Integer>");
    EXPECT_EQ(Warnings(wkUnknownElement), 500);
    EXPECT_EQ(Warnings(wkDanglingReference), 500);
    EXPECT_LT(WarningBytes(), 1000000U);
}

TEST_F(Tolerance, ReasonsAboutALongNameAreShort) {
    const std::string name(200000, 'N');
    Load("<StructReg Comment='S'><Address>0</Address><Length>4</Length><pPort>" + name +
         "</pPort><StructEntry Name='E'><Bit>0</Bit></StructEntry></StructReg>");
    try {
        Integer("E")->GetValue();
        FAIL();
    } catch (const AccessException& exception) {
        EXPECT_LT(std::string(exception.GetDescription()).size(), 2000U);
    }
}

// An entry of each reference is looked up: none of them may have to look at all others.
TEST_F(Tolerance, ReferencesToManyEntriesAreFoundQuickly) {
    constexpr int kCount = 20000;
    std::string nodes = "<Enumeration Name='E'>";
    for (int i = 0; i < kCount; ++i)
        nodes += "<EnumEntry Name='A" + std::to_string(i) + "'><Value>" + std::to_string(i) + "</Value></EnumEntry>";
    nodes +=
        "<Value>0</Value></Enumeration><IntSwissKnife Name='S'><Formula>LAST.Entry.A19999 + V19999</Formula>"
        "<pVariable Name='LAST'>E</pVariable>";
    for (int i = 0; i < kCount; ++i)
        nodes += "<pVariable Name='V" + std::to_string(i) + "'>EnumEntry_E_A" + std::to_string(i) + "</pVariable>";
    Load(nodes + "</IntSwissKnife>");
    EXPECT_TRUE(map._GetWarnings().empty());
    EXPECT_EQ(Integer("S")->GetValue(), 2 * (kCount - 1));
}

TEST_F(Tolerance, AFormulaMayNameEachOfManyEntries) {
    constexpr int kCount = 5000;
    std::string nodes = "<Enumeration Name='E'>";
    std::string formula = "0";
    for (int i = 0; i < kCount; ++i) {
        const std::string name = "A" + std::to_string(i);
        nodes += "<EnumEntry Name='" + name + "'><Value>" + std::to_string(i) + "</Value></EnumEntry>";
        formula += "+X.Entry." + name;
    }
    Load(nodes + "<Value>0</Value></Enumeration><IntSwissKnife Name='S'><pVariable Name='X'>E</pVariable><Formula>" +
         formula + "</Formula></IntSwissKnife>");
    EXPECT_EQ(Integer("S")->GetValue(), kCount * (kCount - 1) / 2);
}

TEST_F(Tolerance, EntriesAreFoundWhereverTheUnderscoresStand) {
    Load(
        "<Enumeration Name='A_B'><EnumEntry Name='C_D'><Value>1</Value></EnumEntry><Value>1</Value></Enumeration>"
        "<Enumeration Name='A'><EnumEntry Name='B'><Value>2</Value></EnumEntry><Value>2</Value></Enumeration>");
    EXPECT_EQ(CEnumEntryPtr(Node("EnumEntry_A_B_C_D"))->GetValue(), 1);
    EXPECT_EQ(CEnumEntryPtr(Node("EnumEntry_A_B"))->GetValue(), 2);
    EXPECT_EQ(CEnumEntryPtr(Node("Cust::EnumEntry_A_B"))->GetValue(), 2);
    EXPECT_EQ(map._GetNode("EnumEntry_A_B_"), nullptr);
    EXPECT_EQ(map._GetNode("EnumEntry_"), nullptr);
}

TEST_F(Tolerance, BlanksAroundNamesAndValuesAreToldOnceEach) {
    Load(
        "<Category Name='Root'><pFeature> A </pFeature></Category><Integer Name=' A '><Value> 1 </Value>"
        "<ToolTip> Some text </ToolTip></Integer><String Name='S'><Value> text </Value></String>");
    EXPECT_EQ(Integer("A")->GetValue(), 1);
    const WarningList_t warnings = map._GetWarnings();
    ASSERT_EQ(warnings.size(), 3U);
    EXPECT_EQ(warnings[0].Message, "pFeature has blanks around it");
    EXPECT_EQ(warnings[1].Message, "The name has blanks around it");
    EXPECT_EQ(warnings[2].Message, "Value has blanks around it");
    for (const Warning& warning : warnings)
        EXPECT_GT(warning.Column, 1U);
}

TEST_F(Tolerance, ElementsInTheWrongPlaceAreTold) {
    Load(
        "<Integer Name='B'><Formula>1+1</Formula><Symbolic>x</Symbolic><Value>1</Value></Integer>"
        "<Float Name='C'><Value>1</Value><pFeature>B</pFeature><Bit>1</Bit></Float>"
        "<IntSwissKnife Name='S'><Formula>1</Formula><Address>0</Address></IntSwissKnife>");
    EXPECT_EQ(Warnings(wkUnknownElement), 5);
    EXPECT_EQ(map._GetWarnings()[0].Message, "Formula has no meaning in Integer");
    EXPECT_EQ(Integer("B")->GetValue(), 1);
}

// Also where the same element was right in the node before, or in a node of another kind.
TEST_F(Tolerance, EveryElementOfWordsIsLookedAtInEveryNode) {
    struct Words {
        const char* kind;
        const char* element;
        const char* right;
    };
    for (const auto& [kind, element, right] : std::initializer_list<Words>{{"IntReg", "AccessMode", "RO"},
                                                                           {"Integer", "ImposedAccessMode", "RO"},
                                                                           {"IntReg", "Cachable", "NoCache"},
                                                                           {"IntReg", "Endianess", "BigEndian"},
                                                                           {"IntReg", "Sign", "Signed"},
                                                                           {"Integer", "Visibility", "Guru"},
                                                                           {"Integer", "ImposedVisibility", "Guru"},
                                                                           {"Integer", "Representation", "Linear"},
                                                                           {"Float", "DisplayNotation", "Fixed"},
                                                                           {"Converter", "Slope", "Varying"},
                                                                           {"Integer", "Streamable", "Yes"},
                                                                           {"Integer", "IsDeprecated", "No"},
                                                                           {"Converter", "IsLinear", "Yes"},
                                                                           {"EnumEntry", "IsSelfClearing", "No"},
                                                                           {"Port", "SwapEndianess", "Yes"},
                                                                           {"Port", "CacheChunkData", "No"}}) {
        std::string nodes;
        const std::vector<std::string> words = {right, "wrong", right, "wrong"};
        for (std::size_t i = 0; i < words.size(); ++i)
            nodes += std::string("<") + kind + " Name='N" + std::to_string(i) + "'><" + element + ">" + words[i] +
                     "</" + element + "></" + kind + ">";
        Load(std::string(kind) == "EnumEntry" ? "<Enumeration Name='E'>" + nodes + "</Enumeration>" : nodes);
        EXPECT_EQ(Warnings(wkBadValue), 2) << element;
    }
}

TEST_F(Tolerance, WordsThatDoNotExistAreTold) {
    Load(
        "<IntReg Name='A'><Visibility>Begginer</Visibility><Address>0</Address><Length>4</Length>"
        "<AccessMode>rw</AccessMode><pPort>Device</pPort><Cachable>Yes</Cachable><Sign>signed</Sign>"
        "<Endianess>Big</Endianess><Representation>Hex</Representation><Streamable>maybe</Streamable></IntReg>"
        "<Converter Name='C'><FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom><pValue>A</pValue>"
        "<Slope>Up</Slope><DisplayNotation>Short</DisplayNotation></Converter>");
    EXPECT_EQ(Warnings(wkBadValue), 9);
    EXPECT_EQ(map._GetWarnings()[1].Message, "AccessMode 'rw' is not known");
}

}  // namespace genapitest
