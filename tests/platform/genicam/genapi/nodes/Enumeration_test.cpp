/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Enumerations, Booleans, commands, strings, categories and registers
 */

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

namespace {
std::string Reg(const std::string& name, const std::string& mode = "RW") {
    return "<IntReg Name='" + name + "'><Address>0</Address><Length>4</Length><AccessMode>" + mode +
           "</AccessMode><pPort>Device</pPort></IntReg>";
}
std::string Entry(const std::string& name, int value, const std::string& more = "") {
    return "<EnumEntry Name='" + name + "'><Value>" + std::to_string(value) + "</Value>" + more + "</EnumEntry>";
}
}  // namespace

// --- Enumeration ---

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

// --- Boolean ---

class BooleanNode : public NodeMapTest {};

TEST_F(BooleanNode, IsOneOrZeroByDefault) {
    Load("<Boolean Name='B'><pValue>R</pValue></Boolean>" + Reg("R"));
    EXPECT_FALSE(Bool("B")->GetValue());
    Bool("B")->SetValue(true);
    EXPECT_EQ(port.Little(0, 4), 1U);
    EXPECT_TRUE((*Bool("B"))());
    *Bool("B") = false;
    EXPECT_EQ(port.Little(0, 4), 0U);
}

TEST_F(BooleanNode, HasItsOwnValuesForTrueAndFalse) {
    Load("<Boolean Name='B'><pValue>R</pValue><OnValue>0x80</OnValue><OffValue>0x7F</OffValue></Boolean>" + Reg("R"));
    Bool("B")->SetValue(true);
    EXPECT_EQ(port.Little(0, 4), 0x80U);
    Bool("B")->SetValue(false);
    EXPECT_EQ(port.Little(0, 4), 0x7FU);
    EXPECT_FALSE(Bool("B")->GetValue());
    Integer("R")->SetValue(3);
    EXPECT_THROW(Bool("B")->GetValue(), OutOfRangeException);
}

TEST_F(BooleanNode, SelectsItsValueByIndex) {
    Load(
        "<Boolean Name='B'><pIndex>I</pIndex><ValueIndexed Index='0'>0</ValueIndexed>"
        "<pValueIndexed Index='1'>R</pValueIndexed></Boolean><Integer Name='I'><Value>0</Value></Integer>" +
        Reg("R"));
    EXPECT_FALSE(Bool("B")->GetValue());
    Integer("I")->SetValue(1);
    Bool("B")->SetValue(true);
    EXPECT_EQ(port.Little(0, 4), 1U);
    Integer("I")->SetValue(0);
    EXPECT_FALSE(Bool("B")->GetValue());
}

TEST_F(BooleanNode, HasTexts) {
    Load("<Boolean Name='B'><Value>0</Value></Boolean>");
    EXPECT_EQ(Bool("B")->ToString(), "0");
    Bool("B")->FromString("true");
    EXPECT_EQ(Bool("B")->ToString(), "1");
    Bool("B")->FromString("0");
    EXPECT_FALSE(Bool("B")->GetValue());
    EXPECT_THROW(Bool("B")->FromString("maybe"), InvalidArgumentException);
}

TEST_F(BooleanNode, IsANumberForOthers) {
    Load(
        "<Boolean Name='B'><Value>40</Value><OnValue>40</OnValue><OffValue>3</OffValue></Boolean>"
        "<Integer Name='I'><pValue>B</pValue></Integer>"
        "<IntSwissKnife Name='S'><pVariable Name='X'>B</pVariable><Formula>X * 5</Formula></IntSwissKnife>");
    EXPECT_EQ(Integer("I")->GetValue(), 1);
    EXPECT_EQ(Integer("S")->GetValue(), 5);
    Integer("I")->SetValue(0);
    EXPECT_FALSE(Bool("B")->GetValue());
    EXPECT_EQ(Integer("S")->GetValue(), 0);
}

TEST_F(BooleanNode, WithOneValueForBothIsNotImplemented) {
    Load("<Boolean Name='B'><Value>1</Value><OnValue>1</OnValue><OffValue>1</OffValue></Boolean>");
    EXPECT_EQ(Mode("B"), NI);
}

// --- Command ---

class CommandNode : public NodeMapTest {};

TEST_F(CommandNode, WritesItsValue) {
    Load("<Command Name='C'><pValue>R</pValue><CommandValue>7</CommandValue></Command>" + Reg("R"));
    Command("C")->Execute();
    EXPECT_EQ(port.Little(0, 4), 7U);
    EXPECT_FALSE(Command("C")->IsDone());
    port.PutLittle(0, 0, 4);
    EXPECT_TRUE(Command("C")->IsDone());
}

TEST_F(CommandNode, ThatCannotBeReadBackIsDoneAtOnce) {
    Load("<Command Name='C'><pValue>R</pValue><CommandValue>7</CommandValue></Command>" + Reg("R", "WO"));
    Command("C")->Execute();
    EXPECT_TRUE(Command("C")->IsDone());
    EXPECT_EQ(port.Reads(), 0);
}

TEST_F(CommandNode, RunsAlthoughTheDeviceReportsAnError) {
    Load("<Command Name='C'><pError>E</pError><pValue>R</pValue><CommandValue>7</CommandValue></Command>" + Reg("R") +
         "<Integer Name='E'><Value>3</Value></Integer>");
    CallCounter counter;
    Register(Node("C"), counter, &CallCounter::Called);
    EXPECT_THROW(Command("C")->Execute(), RuntimeException);
    EXPECT_EQ(counter.calls, 1);
    port.PutLittle(0, 0, 4);
    EXPECT_TRUE(Command("C")->IsDone());
    EXPECT_EQ(counter.calls, 2);
}

TEST_F(CommandNode, TakesItsValueFromANode) {
    Load("<Command Name='C'><pValue>R</pValue><pCommandValue>V</pCommandValue></Command>" + Reg("R") +
         "<Integer Name='V'><Value>9</Value></Integer>");
    Command("C")->Execute();
    EXPECT_EQ(port.Little(0, 4), 9U);
}

TEST_F(CommandNode, OfAConstantIsDoneAtOnce) {
    Load("<Command Name='C'><Value>0</Value><CommandValue>1</CommandValue></Command>");
    Command("C")->Execute();
    EXPECT_TRUE(Command("C")->IsDone());
}

TEST_F(CommandNode, CannotBeExecutedWhenItsRegisterIsReadOnly) {
    Load("<Command Name='C'><pValue>R</pValue><CommandValue>7</CommandValue></Command>" + Reg("R", "RO"));
    EXPECT_EQ(Mode("C"), RO);
    EXPECT_THROW(Command("C")->Execute(), AccessException);
    EXPECT_TRUE(Command("C")->IsDone());
}

TEST_F(CommandNode, HasTheModeOfTheRegisterBehind) {
    const std::string command = "<Command Name='C'><pValue>R</pValue><CommandValue>7</CommandValue>";
    Load(command + "</Command>" + Reg("R"));
    EXPECT_EQ(Mode("C"), RW);
    Load(command + "</Command>" + Reg("R", "WO"));
    EXPECT_EQ(Mode("C"), WO);
    Load(command + "<pIsLocked>L</pIsLocked></Command><Integer Name='L'><Value>1</Value></Integer>" + Reg("R"));
    EXPECT_EQ(Mode("C"), RO);
    EXPECT_THROW(Command("C")->Execute(), AccessException);
    EXPECT_TRUE(Command("C")->IsDone());
}

// 0 is what a register shows that has nothing to do.
TEST_F(CommandNode, OfValueZeroIsDoneAtOnce) {
    Load("<Command Name='C'><pValue>R</pValue><CommandValue>0</CommandValue></Command>" + Reg("R"));
    port.PutLittle(0, 5, 4);
    Command("C")->Execute();
    EXPECT_EQ(port.Little(0, 4), 0U);
    EXPECT_TRUE(Command("C")->IsDone());
}

TEST_F(CommandNode, AnnouncesItselfWhenItStartsAndWhenItIsDone) {
    Load("<Command Name='C'><pValue>R</pValue><CommandValue>7</CommandValue></Command>" + Reg("R"));
    CallCounter counter;
    Register(Node("C"), counter, &CallCounter::Called);
    Command("C")->Execute();
    EXPECT_EQ(counter.calls, 1);
    EXPECT_FALSE(Command("C")->IsDone());
    EXPECT_EQ(counter.calls, 1);
    port.PutLittle(0, 0, 4);
    EXPECT_TRUE(Command("C")->IsDone());
    EXPECT_TRUE(Command("C")->IsDone());
    EXPECT_EQ(counter.calls, 2);
}

TEST_F(CommandNode, HasTexts) {
    Load("<Command Name='C'><pValue>R</pValue><CommandValue>7</CommandValue></Command>" + Reg("R"));
    EXPECT_EQ(Command("C")->ToString(), "1");
    Command("C")->FromString("0");
    EXPECT_EQ(port.Writes(), 0);
    Command("C")->FromString("1");
    EXPECT_EQ(Command("C")->ToString(), "0");
    EXPECT_THROW(Command("C")->FromString("go"), InvalidArgumentException);
}

TEST_F(CommandNode, WithoutACommandValueWritesOne) {
    Load("<Command Name='C'><pValue>R</pValue></Command>" + Reg("R"));
    Command("C")->Execute();
    EXPECT_EQ(port.Little(0, 4), 1U);
    EXPECT_FALSE(Command("C")->IsDone());
    EXPECT_EQ(Warnings(wkBadValue), 1);
}

// --- String and StringReg ---

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

// --- Register ---

class RegisterNode : public NodeMapTest {};

TEST_F(RegisterNode, HoldsBytes) {
    Load(
        "<Register Name='R'><Address>0x20</Address><Length>5</Length><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort></Register>");
    port.Put(0x20, {1, 2, 3, 4, 255});
    EXPECT_EQ(Bytes("R")->ToString(), "0x01020304ff");
    Bytes("R")->FromString("0x0A0b0C0d0E");
    EXPECT_EQ(port.Big(0x20, 5), 0x0A0B0C0D0EU);
    EXPECT_THROW(Bytes("R")->FromString("0x0A0b0C0d"), OutOfRangeException);
    EXPECT_THROW(Bytes("R")->FromString("0x0A0b0C0d0"), InvalidArgumentException);
    EXPECT_THROW(Bytes("R")->FromString("hello worl"), InvalidArgumentException);
    EXPECT_EQ(Node("R")->GetPrincipalInterfaceType(), intfIRegister);
}

TEST_F(RegisterNode, FeatureLocksAndSmartFeaturesAreRegisters) {
    for (const char* kind : {"AdvFeatureLock", "SmartFeature"}) {
        Load(std::string("<") + kind +
             " Name='R'><FeatureID>0x0030533B73C3</FeatureID><Timeout>0</Timeout>"
             "<Address>0x20</Address><Length>8</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></" +
             kind + ">");
        Bytes("R")->FromString("0x0030533b73c3f000");
        EXPECT_EQ(port.Big(0x20, 8), 0x0030533B73C3F000U) << kind;
        gcstring value;
        gcstring attribute;
        EXPECT_TRUE(Node("R")->GetProperty("FeatureID", value, attribute));
        EXPECT_EQ(value, "0x0030533B73C3");
        EXPECT_TRUE(map._GetWarnings().empty());
    }
}

TEST_F(RegisterNode, TextAndNumberRegistersHaveTheInterface) {
    Load(
        "<StringReg Name='S'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
        "</StringReg><FloatReg Name='F'><Address>4</Address><Length>8</Length><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort></FloatReg>");
    const std::uint8_t text[4] = {'a', 'b', 0, 'c'};
    Bytes("S")->Set(text, 4);
    EXPECT_EQ(String("S")->GetValue(), "ab");
    EXPECT_EQ(Bytes("F")->GetAddress(), 4);
    EXPECT_EQ(Bytes("F")->GetLength(), 8);
    EXPECT_TRUE(String("S")->IsValueCacheValid());
}

TEST_F(RegisterNode, TakesItsLengthFromANode) {
    Load(
        "<Register Name='R'><Address>0</Address><pLength>L</pLength><AccessMode>RO</AccessMode>"
        "<pPort>Device</pPort></Register><Integer Name='L'><Value>3</Value></Integer>");
    EXPECT_EQ(Bytes("R")->GetLength(), 3);
    Integer("L")->SetValue(6);
    EXPECT_EQ(Bytes("R")->GetLength(), 6);
    EXPECT_EQ(Bytes("R")->ToString(), "0x000000000000");
}

// Lengths come from cameras: nothing is allocated for one that no register has.
TEST_F(RegisterNode, RefusesLengthsThatNoRegisterHas) {
    Load(
        "<StringReg Name='R'><Address>0</Address><pLength>L</pLength><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort></StringReg><Integer Name='L'><Value>3400000000</Value></Integer>"
        "<Register Name='Huge'><Address>0</Address><Length>0xFFFFFFFFFF</Length><AccessMode>RO</AccessMode>"
        "<pPort>Device</pPort></Register>");
    EXPECT_THROW(String("R")->GetValue(), OutOfRangeException);
    EXPECT_THROW(String("R")->SetValue("x"), OutOfRangeException);
    for (const std::int64_t length : {std::int64_t{0}, std::int64_t{-1}, INT64_MAX, INT64_MIN}) {
        Integer("L")->SetValue(length);
        EXPECT_THROW(String("R")->GetValue(), OutOfRangeException);
    }
    EXPECT_EQ(Mode("Huge"), NI);
    EXPECT_EQ(port.accesses.size(), 0U);
}

TEST_F(RegisterNode, SumsAllPartsOfItsAddress) {
    Load(
        "<Register Name='R'><Address>0x100</Address><Address>0x20</Address><pAddress>P</pAddress>"
        "<IntSwissKnife Name='Inner'><pVariable Name='X'>P</pVariable><Formula>X * 3</Formula></IntSwissKnife>"
        "<pIndex Offset='0x10'>I</pIndex><pIndex pOffset='O'>I</pIndex><pIndex>I</pIndex><Length>8</Length>"
        "<AccessMode>RO</AccessMode><pPort>Device</pPort></Register>"
        "<Integer Name='P'><Value>1</Value></Integer><Integer Name='I'><Value>2</Value></Integer>"
        "<Integer Name='O'><Value>0x1000</Value></Integer>");
    EXPECT_EQ(Bytes("R")->GetAddress(), 0x100 + 0x20 + 1 + 3 + 2 * 0x10 + 2 * 0x1000 + 2 * 8);
    Integer("P")->SetValue(2);
    Integer("I")->SetValue(0);
    EXPECT_EQ(Bytes("R")->GetAddress(), 0x100 + 0x20 + 2 + 6);
    EXPECT_EQ(Integer("Inner")->GetValue(), 6);
}

TEST_F(RegisterNode, WithoutAPortIsNotImplemented) {
    Load(
        "<Register Name='A'><Address>0</Address><Length>1</Length><AccessMode>RO</AccessMode></Register>"
        "<Register Name='B'><Address>0</Address><Length>1</Length><AccessMode>RO</AccessMode><pPort>Nowhere</pPort>"
        "</Register><Register Name='C'><Address>0</Address><Length>1</Length><AccessMode>RO</AccessMode>"
        "<pPort>I</pPort></Register><Integer Name='I'><Value>1</Value></Integer>");
    EXPECT_EQ(Mode("A"), NI);
    EXPECT_EQ(Mode("B"), NI);
    EXPECT_EQ(Mode("C"), NI);
    EXPECT_THROW(Bytes("A")->GetAddress(), AccessException);
    EXPECT_EQ(Integer("I")->GetValue(), 1);
}

// --- Category and plain nodes ---

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

// --- What all nodes have ---

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

// --- IEEE 1212 ---

class ConfigurationRom : public NodeMapTest {
protected:
    void LoadRom() {
        Load(
            "<ConfRom Name='Rom'><Address>0x400</Address><Length>64</Length><AccessMode>RO</AccessMode>"
            "<pPort>Device</pPort><IntKey Name='Vendor'>0x03</IntKey></ConfRom>"
            "<TextDesc Name='Model'><p1212Parser>Rom</p1212Parser><Key>0x81</Key></TextDesc>"
            "<IntKey Name='Spec'><p1212Parser>Rom</p1212Parser><Key>0x12</Key></IntKey>"
            "<IntKey Name='Missing'><p1212Parser>Rom</p1212Parser><Key>0x17</Key></IntKey>");
        // Bus information block of one quadlet, then the root directory: immediate 0x03, leaf 0x81, directory 0xD1.
        port.PutBig(0x400, 0x01000000, 4);
        port.PutBig(0x404, 0, 4);
        port.PutBig(0x408, 0x00030000, 4);
        port.PutBig(0x40C, 0x03ABCDEF, 4);
        port.PutBig(0x410, 0x81000004, 4);
        port.PutBig(0x414, 0xD1000001, 4);
        port.PutBig(0x418, 0x00010000, 4);
        port.PutBig(0x41C, 0x1200A02D, 4);
        port.PutBig(0x420, 0x00040000, 4);
        port.PutText(0x42C, "CAM-7");
    }
};

TEST_F(ConfigurationRom, HasIntegersByKey) {
    LoadRom();
    EXPECT_EQ(Integer("Spec")->GetValue(), 0xA02D);
    EXPECT_EQ(Mode("Spec"), RO);
}

TEST_F(ConfigurationRom, HasTextsByKey) {
    LoadRom();
    EXPECT_EQ(String("Model")->GetValue(), "CAM-7");
    EXPECT_EQ(String("Model")->GetMaxLength(), 64);
}

TEST_F(ConfigurationRom, MissesAKeyWithAnException) {
    LoadRom();
    EXPECT_THROW(Integer("Missing")->GetValue(), OutOfRangeException);
}

TEST_F(ConfigurationRom, SurvivesNonsense) {
    LoadRom();
    for (unsigned seed = 1; seed < 200; ++seed) {
        for (int i = 0; i < 64; i += 4)
            port.PutBig(0x400 + i, seed * 2654435761U * static_cast<unsigned>(i + 1), 4);
        map._InvalidateNodes();
        try {
            String("Model")->GetValue();
        } catch (const OutOfRangeException&) {
            continue;
        }
    }
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
