/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Enumerations and their entries
 */

#include "NodeTexts.h"
#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class EnumerationNode : public NodeMapTest {};

TEST_F(EnumerationNode, HasNamesForValues) {
    Load("<Enumeration Name='E'>" + Entry("Off", 0) + Entry("On", 1) + "<pValue>R</pValue></Enumeration>" + Reg("R"));
    EXPECT_EQ(Enumeration("E")->ToString(), "Off");
    Enumeration("E")->FromString("On");
    EXPECT_EQ(port.Little(0, 4), 1U);
    EXPECT_EQ(Enumeration("E")->GetIntValue(), 1);
    EXPECT_EQ(**Enumeration("E"), "On");
    *Enumeration("E") = "Off";
    EXPECT_EQ(Enumeration("E")->GetIntValue(), 0);
    Enumeration("E")->SetIntValue(1);
    EXPECT_EQ(Enumeration("E")->GetCurrentEntry()->GetSymbolic(), "On");
}

TEST_F(EnumerationNode, HoldsAConstant) {
    Load("<Enumeration Name='E'>" + Entry("A", 5) + Entry("B", 6) + "<Value>6</Value></Enumeration>");
    EXPECT_EQ(Enumeration("E")->ToString(), "B");
    Enumeration("E")->FromString("A");
    EXPECT_EQ(Enumeration("E")->GetIntValue(), 5);
}

TEST_F(EnumerationNode, RefusesWhatIsNoEntry) {
    Load("<Enumeration Name='E'>" + Entry("A", 5) + "<Value>5</Value></Enumeration>");
    EXPECT_THROW(Enumeration("E")->FromString("C"), InvalidArgumentException);
    EXPECT_THROW(Enumeration("E")->SetIntValue(7), OutOfRangeException);
    Enumeration("E")->SetIntValue(7, false);
    EXPECT_EQ(Enumeration("E")->GetIntValue(), 7);
    EXPECT_THROW(Enumeration("E")->ToString(), OutOfRangeException);
    EXPECT_THROW(Enumeration("E")->GetIntValue(true), OutOfRangeException);
    EXPECT_EQ(Enumeration("E")->GetCurrentEntry(), nullptr);
}

TEST_F(EnumerationNode, ListsItsEntries) {
    Load("<Enumeration Name='E'>" + Entry("B", 2) + Entry("A", 1) + "<Value>1</Value></Enumeration>");
    NodeList_t entries;
    Enumeration("E")->GetEntries(entries);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(CEnumEntryPtr(entries[0])->GetSymbolic(), "B");
    EXPECT_EQ(CEnumEntryPtr(entries[0])->GetValue(), 2);
    EXPECT_EQ(Enumeration("E")->GetEntryByName("A")->GetValue(), 1);
    EXPECT_EQ(Enumeration("E")->GetEntry(2)->GetSymbolic(), "B");
    EXPECT_EQ(Enumeration("E")->GetEntryByName("Z"), nullptr);
    EXPECT_EQ(Enumeration("E")->GetEntry(9), nullptr);
}

TEST_F(EnumerationNode, OffersOnlyEntriesThatAreAvailable) {
    Load("<Enumeration Name='E'>" + Entry("A", 1) + Entry("B", 2, "<pIsAvailable>F</pIsAvailable>") +
         Entry("C", 3, "<pIsImplemented>F</pIsImplemented>") +
         "<Value>1</Value></Enumeration><Integer Name='F'><Value>0</Value></Integer>");
    StringList_t symbolics;
    Enumeration("E")->GetSymbolics(symbolics);
    EXPECT_EQ(symbolics, StringList_t{"A"});
    EXPECT_THROW(Enumeration("E")->SetIntValue(2), AccessException);
    EXPECT_THROW(Enumeration("E")->FromString("C"), AccessException);
    Integer("F")->SetValue(1);
    Enumeration("E")->GetSymbolics(symbolics);
    EXPECT_EQ(symbolics, (StringList_t{"A", "B", "C"}));
    Enumeration("E")->SetIntValue(2);
}

// The first entry that is available has the value: the standard forbids two, cameras have them.
TEST_F(EnumerationNode, OfTwoEntriesOfOneValueTheAvailableOneCounts) {
    Load("<Enumeration Name='E'>" + Entry("Old", 1, "<pIsAvailable>F</pIsAvailable>") + Entry("New", 1) +
         "<Value>1</Value></Enumeration><Integer Name='F'><Value>0</Value></Integer>");
    EXPECT_EQ(Enumeration("E")->ToString(), "New");
    Integer("F")->SetValue(1);
    EXPECT_EQ(Enumeration("E")->ToString(), "Old");
}

TEST_F(EnumerationNode, EntriesHaveNumericValuesAndSymbols) {
    Load("<Enumeration Name='E'>" + Entry("x", 1, "<Symbolic>Nice</Symbolic><NumericValue>2.5</NumericValue>") +
         Entry("0.75", 2) + Entry("Word", 3, "<IsSelfClearing>Yes</IsSelfClearing>") +
         "<Value>1</Value></Enumeration>");
    EXPECT_EQ(Enumeration("E")->ToString(), "Nice");
    EXPECT_EQ(Enumeration("E")->GetEntry(1)->GetNumericValue(), 2.5);
    EXPECT_EQ(Enumeration("E")->GetEntry(2)->GetNumericValue(), 0.75);
    EXPECT_EQ(Enumeration("E")->GetEntry(3)->GetNumericValue(), 3.0);
    EXPECT_TRUE(Enumeration("E")->GetEntry(3)->IsSelfClearing());
    EXPECT_FALSE(Enumeration("E")->GetEntry(2)->IsSelfClearing());
}

TEST_F(EnumerationNode, EntriesAreNodesOfTheMap) {
    Load("<Enumeration Name='Pixel_Format'>" + Entry("Mono_8", 1) +
         "<Value>1</Value></Enumeration>"
         "<IntSwissKnife Name='S'><pVariable Name='M'>EnumEntry_Pixel_Format_Mono_8</pVariable>"
         "<Formula>M + 10</Formula></IntSwissKnife>");
    CEnumEntryPtr entry = Node("EnumEntry_Pixel_Format_Mono_8");
    EXPECT_EQ(entry->GetValue(), 1);
    EXPECT_EQ(entry->GetNode()->GetName(), "EnumEntry_Pixel_Format_Mono_8");
    EXPECT_EQ(map._GetNode("EnumEntry_Pixel_Format_Mono"), nullptr);
    EXPECT_EQ(map._GetNode("EnumEntry_"), nullptr);
    EXPECT_EQ(Integer("S")->GetValue(), 11);
    EXPECT_THROW(entry->FromString("x"), AccessException);
}

TEST_F(EnumerationNode, AThousandEntriesAreFound) {
    std::string entries;
    for (int i = 0; i < 1000; ++i)
        entries += Entry("E" + std::to_string(i), 999 - i);
    Load("<Enumeration Name='E'>" + entries + "<Value>0</Value></Enumeration>");
    for (int i = 0; i < 1000; i += 37) {
        Enumeration("E")->SetIntValue(i);
        EXPECT_EQ(Enumeration("E")->ToString().str(), "E" + std::to_string(999 - i));
    }
}

}  // namespace genapitest
