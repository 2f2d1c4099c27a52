/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Access modes: how those of the parts make up that of a node
 */

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class AccessMode : public NodeMapTest {
protected:
    static std::string Reg(const std::string& name, const std::string& mode, int address = 0) {
        return "<IntReg Name='" + name + "'><Address>" + std::to_string(address) + "</Address><Length>4</Length>" +
               "<AccessMode>" + mode + "</AccessMode><pPort>Device</pPort></IntReg>";
    }
    static std::string Flag(const std::string& name, int value) {
        return "<Integer Name='" + name + "'><Value>" + std::to_string(value) + "</Value></Integer>";
    }
};

TEST_F(AccessMode, OfARegisterIsItsOwnAndThePortsTogether) {
    const std::vector<std::tuple<std::string, EAccessMode, EAccessMode>> cases = {
        {"RW", RW, RW}, {"RO", RW, RO}, {"WO", RW, WO}, {"RW", RO, RO}, {"RW", WO, WO}, {"RO", WO, NA},
        {"WO", RO, NA}, {"RW", NA, NA}, {"RO", NA, NA}, {"RW", NI, NI}, {"RO", RO, RO}, {"WO", WO, WO}};
    for (const auto& [own, ports, expected] : cases) {
        port.mode = ports;
        Load(Reg("R", own));
        EXPECT_EQ(Mode("R"), expected) << own << " " << static_cast<int>(ports);
    }
}

TEST_F(AccessMode, FollowsThePort) {
    Load(Reg("R", "RW") + "<Integer Name='A'><pValue>R</pValue></Integer>");
    EXPECT_EQ(Mode("A"), RW);
    port.mode = RO;
    EXPECT_EQ(Mode("A"), RO);
    EXPECT_THROW(Integer("A")->SetValue(1), AccessException);
    port.mode = NA;
    EXPECT_EQ(Mode("A"), NA);
    EXPECT_THROW(Integer("A")->GetValue(), AccessException);
    port.mode = RW;
    EXPECT_EQ(Mode("A"), RW);
}

TEST_F(AccessMode, OfAnUnconnectedPortIsNotImplemented) {
    map._LoadXMLFromString(Describe(Reg("R", "RW")));
    EXPECT_EQ(Mode("R"), NI);
    EXPECT_THROW(Integer("R")->GetValue(), AccessException);
    ASSERT_TRUE(map._Connect(&port));
    EXPECT_EQ(Mode("R"), RW);
    ASSERT_TRUE(map._Connect(nullptr));
    EXPECT_EQ(Mode("R"), NI);
}

TEST_F(AccessMode, IsAskedOfThePortOnceHoweverOftenItWasConnected) {
    struct Curious final : IPort {
        EAccessMode GetAccessMode() const override {
            ++asked;
            return RW;
        }
        void Read(void*, std::int64_t, std::int64_t) override {}
        void Write(const void*, std::int64_t, std::int64_t) override {}
        mutable int asked = 0;
    } curious;
    Load(Reg("R", "RW"));
    const auto questions = [&] {
        EXPECT_TRUE(map._Connect(&curious));
        curious.asked = 0;
        EXPECT_EQ(Mode("R"), RW);
        return curious.asked;
    };
    const int once = questions();
    EXPECT_GT(once, 0);
    EXPECT_EQ(questions(), once);
    EXPECT_EQ(questions(), once);
}

TEST_F(AccessMode, IsThatOfTheNodeBehind) {
    Load(Reg("Ro", "RO") + Reg("Wo", "WO", 4) +
         "<Integer Name='A'><pValue>Ro</pValue></Integer>"
         "<Integer Name='B'><pValue>Wo</pValue></Integer><Float Name='C'><pValue>Ro</pValue></Float>"
         "<Boolean Name='D'><pValue>Ro</pValue></Boolean>"
         "<Enumeration Name='E'><EnumEntry Name='X'><Value>0</Value></EnumEntry><pValue>Wo</pValue></Enumeration>");
    EXPECT_EQ(Mode("A"), RO);
    EXPECT_EQ(Mode("B"), WO);
    EXPECT_EQ(Mode("C"), RO);
    EXPECT_EQ(Mode("D"), RO);
    EXPECT_EQ(Mode("E"), WO);
    EXPECT_THROW(Integer("B")->GetValue(), AccessException);
    EXPECT_THROW(Integer("A")->SetValue(1), AccessException);
    Integer("B")->SetValue(1);
}

TEST_F(AccessMode, CanBeImposedByTheDescription) {
    Load(Reg("R", "RW") +
         "<Integer Name='A'><ImposedAccessMode>RO</ImposedAccessMode><pValue>R</pValue></Integer>"
         "<Integer Name='B'><ImposedAccessMode>RW</ImposedAccessMode><pValue>A</pValue></Integer>"
         "<Integer Name='C'><ImposedAccessMode>WO</ImposedAccessMode><pValue>A</pValue></Integer>");
    EXPECT_EQ(Mode("A"), RO);
    EXPECT_EQ(Mode("B"), RO);
    EXPECT_EQ(Mode("C"), NA);
}

TEST_F(AccessMode, CanBeImposedAtRunTimeAndLifted) {
    Load(Reg("R", "RW") + "<Integer Name='A'><pValue>R</pValue></Integer>");
    for (const EAccessMode imposed : {RO, WO, NA, NI}) {
        Node("R")->ImposeAccessMode(imposed);
        EXPECT_EQ(Mode("A"), imposed);
    }
    Node("R")->ImposeAccessMode(RW);
    EXPECT_EQ(Mode("A"), RW);
    EXPECT_THROW(Node("R")->ImposeAccessMode(_CycleDetectAccesMode), InvalidArgumentException);
}

TEST_F(AccessMode, AnImposedModeNeverGivesMoreThanThereIs) {
    Load(Reg("R", "RO"));
    Node("R")->ImposeAccessMode(RW);
    EXPECT_EQ(Mode("R"), RO);
}

TEST_F(AccessMode, FollowsTheRules) {
    Load(
        "<Integer Name='A'><Value>1</Value><pIsImplemented>Impl</pIsImplemented><pIsAvailable>Avail</pIsAvailable>"
        "<pIsLocked>Lock</pIsLocked></Integer>" +
        Flag("Impl", 1) + Flag("Avail", 1) + Flag("Lock", 0));
    EXPECT_EQ(Mode("A"), RW);
    Integer("Lock")->SetValue(1);
    EXPECT_EQ(Mode("A"), RO);
    Integer("Avail")->SetValue(0);
    EXPECT_EQ(Mode("A"), NA);
    Integer("Impl")->SetValue(0);
    EXPECT_EQ(Mode("A"), NI);
    Integer("Avail")->SetValue(1);
    EXPECT_EQ(Mode("A"), NI);
}

TEST_F(AccessMode, ALockTakesWritingAway) {
    Load("<Integer Name='A'><pValue>R</pValue><pIsLocked>Lock</pIsLocked></Integer>" + Reg("R", "WO") +
         Flag("Lock", 1) + "<Integer Name='B'><pValue>A</pValue></Integer>");
    EXPECT_EQ(Mode("A"), NA);
    EXPECT_EQ(Mode("B"), NA);
    Integer("Lock")->SetValue(0);
    EXPECT_EQ(Mode("B"), WO);
}

TEST_F(AccessMode, IsCombinedAlongTheChain) {
    Load(
        "<Integer Name='A'><pValue>B</pValue></Integer>"
        "<Integer Name='B'><pValue>C</pValue><pIsAvailable>Avail</pIsAvailable></Integer>"
        "<Integer Name='C'><pValue>R</pValue><pIsLocked>Lock</pIsLocked></Integer>" +
        Reg("R", "RW") + Flag("Avail", 1) + Flag("Lock", 1));
    EXPECT_EQ(Mode("A"), RO);
    Integer("Avail")->SetValue(0);
    EXPECT_EQ(Mode("A"), NA);
    Integer("Avail")->SetValue(1);
    Integer("Lock")->SetValue(0);
    EXPECT_EQ(Mode("A"), RW);
}

// Every kind with a numeric meaning may be a rule.
TEST_F(AccessMode, EveryKindOfNumberMayBeARule) {
    const std::vector<std::pair<std::string, std::string>> rules = {
        {"<Integer Name='On'><Value>2</Value></Integer>", "<Integer Name='Off'><Value>0</Value></Integer>"},
        {"<Boolean Name='On'><Value>1</Value></Boolean>", "<Boolean Name='Off'><Value>0</Value></Boolean>"},
        {"<Boolean Name='On'><Value>0</Value><OnValue>0</OnValue><OffValue>7</OffValue></Boolean>",
         "<Boolean Name='Off'><Value>7</Value><OnValue>0</OnValue><OffValue>7</OffValue></Boolean>"},
        {"<Float Name='On'><Value>0.25</Value></Float>", "<Float Name='Off'><Value>0.0</Value></Float>"},
        {"<IntSwissKnife Name='On'><Formula>2 &gt; 1</Formula></IntSwissKnife>",
         "<IntSwissKnife Name='Off'><Formula>2 &lt; 1</Formula></IntSwissKnife>"},
        {"<SwissKnife Name='On'><Formula>0.1</Formula></SwissKnife>",
         "<SwissKnife Name='Off'><Formula>0.0</Formula></SwissKnife>"},
        {"<Enumeration Name='On'><EnumEntry Name='X'><Value>3</Value></EnumEntry><Value>3</Value></Enumeration>",
         "<Enumeration Name='Off'><EnumEntry Name='X'><Value>0</Value></EnumEntry><Value>0</Value></Enumeration>"},
        {"<IntConverter Name='On'><FormulaTo>FROM</FormulaTo><FormulaFrom>TO+1</FormulaFrom><pValue>Zero</pValue>"
         "</IntConverter>",
         "<IntConverter Name='Off'><FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom><pValue>Zero</pValue>"
         "</IntConverter>"}};
    for (const auto& [on, off] : rules) {
        Load(on + off + Flag("Zero", 0) +
             "<Integer Name='A'><Value>1</Value><pIsAvailable>On</pIsAvailable></Integer>"
             "<Integer Name='B'><Value>1</Value><pIsAvailable>Off</pIsAvailable></Integer>"
             "<Integer Name='C'><Value>1</Value><pIsLocked>On</pIsLocked></Integer>"
             "<Integer Name='D'><Value>1</Value><pIsLocked>Off</pIsLocked></Integer>"
             "<Integer Name='E'><Value>1</Value><pIsImplemented>Off</pIsImplemented></Integer>");
        EXPECT_EQ(Mode("A"), RW) << on;
        EXPECT_EQ(Mode("B"), NA) << off;
        EXPECT_EQ(Mode("C"), RO) << on;
        EXPECT_EQ(Mode("D"), RW) << off;
        EXPECT_EQ(Mode("E"), NI) << off;
    }
}

TEST_F(AccessMode, ARuleThatCannotBeEvaluatedMeansNotAvailable) {
    Load(
        "<Integer Name='A'><Value>1</Value><pIsAvailable>Bad</pIsAvailable></Integer>"
        "<Integer Name='B'><Value>1</Value><pIsImplemented>Bad</pIsImplemented></Integer>"
        "<Integer Name='C'><Value>1</Value><pIsLocked>Bad</pIsLocked></Integer>"
        "<IntSwissKnife Name='Bad'><pVariable Name='Z'>Zero</pVariable><Formula>1 / Z</Formula></IntSwissKnife>" +
        Flag("Zero", 0));
    EXPECT_EQ(Mode("A"), NA);
    EXPECT_EQ(Mode("B"), NA);
    EXPECT_EQ(Mode("C"), RO);
    Integer("Zero")->SetValue(1);
    EXPECT_EQ(Mode("A"), RW);
    EXPECT_EQ(Mode("B"), RW);
}

TEST_F(AccessMode, ALostDeviceMakesFeaturesNotAvailable) {
    Load(Reg("R", "RW") + "<Integer Name='A'><Value>1</Value><pIsAvailable>R</pIsAvailable></Integer>");
    port.failsNext = true;
    EXPECT_EQ(Mode("A"), NA);
    port.PutLittle(0, 1, 4);
    EXPECT_EQ(Mode("A"), RW);
}

TEST_F(AccessMode, TheErrorOfALostDeviceIsNotHidden) {
    Load(Reg("R", "RW") + "<Integer Name='A'><Value>1</Value><pIsAvailable>R</pIsAvailable></Integer>");
    port.failsNext = true;
    EXPECT_THROW(Integer("A")->GetValue(), TimeoutException);
}

TEST_F(AccessMode, ACircleOfRulesMakesItsNodesNotImplemented) {
    Load(
        "<Integer Name='A'><Value>1</Value><pIsAvailable>B</pIsAvailable></Integer>"
        "<Integer Name='B'><Value>1</Value><pIsAvailable>A</pIsAvailable></Integer>"
        "<Integer Name='C'><Value>1</Value></Integer>");
    EXPECT_EQ(Mode("A"), NI);
    EXPECT_EQ(Mode("B"), NI);
    EXPECT_EQ(Mode("C"), RW);
    EXPECT_EQ(Warnings(wkUnusableNode), 2);
    EXPECT_THROW(Integer("B")->GetValue(), AccessException);
}

TEST_F(AccessMode, TwoFeaturesMayLockEachOther) {
    Load(
        "<Integer Name='A'><Value>0</Value><pIsLocked>B</pIsLocked></Integer>"
        "<Integer Name='B'><Value>0</Value><pIsLocked>A</pIsLocked></Integer>");
    EXPECT_EQ(Mode("A"), RW);
    Integer("A")->SetValue(1);
    EXPECT_EQ(Mode("B"), RO);
    EXPECT_EQ(Mode("A"), RW);
}

TEST_F(AccessMode, OfAFormulaNeedsTheVariablesOfTheBranchThatCounts) {
    Load(
        "<IntSwissKnife Name='S'><pVariable Name='C'>Choice</pVariable><pVariable Name='X'>Gone</pVariable>"
        "<Formula>C = 1 ? X : 7</Formula></IntSwissKnife>" +
        Flag("Choice", 0) + Flag("Gone", 5));
    Node("Gone")->ImposeAccessMode(NA);
    EXPECT_EQ(Mode("S"), RO);
    EXPECT_EQ(Integer("S")->GetValue(), 7);
    Integer("Choice")->SetValue(1);
    EXPECT_EQ(Mode("S"), NA);
    EXPECT_THROW(Integer("S")->GetValue(), AccessException);
    Node("Gone")->ImposeAccessMode(RW);
    EXPECT_EQ(Integer("S")->GetValue(), 5);
}

TEST_F(AccessMode, OfAMovingRegisterNeedsItsIndex) {
    Load(
        "<IntReg Name='R'><Address>0</Address><pIndex Offset='4'>I</pIndex><Length>4</Length>"
        "<AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>" +
        Flag("I", 0));
    EXPECT_EQ(Mode("R"), RW);
    Node("I")->ImposeAccessMode(NA);
    EXPECT_EQ(Mode("R"), NA);
}

TEST_F(AccessMode, VisibilityIsTheStrictestOfAll) {
    Load(
        "<Integer Name='A'><Visibility>Guru</Visibility><Value>1</Value></Integer>"
        "<Integer Name='B'><Value>1</Value></Integer>");
    EXPECT_EQ(Node("A")->GetVisibility(), Guru);
    EXPECT_EQ(Node("B")->GetVisibility(), Beginner);
    Node("B")->ImposeVisibility(Invisible);
    EXPECT_EQ(Node("B")->GetVisibility(), Invisible);
    Node("A")->ImposeVisibility(Expert);
    EXPECT_EQ(Node("A")->GetVisibility(), Guru);
    EXPECT_TRUE(IsVisible(Expert, Guru));
    EXPECT_FALSE(IsVisible(Guru, Expert));
}

TEST_F(AccessMode, QuestionsUnderstandNullAndSmartPointers) {
    Load(Flag("A", 1));
    CIntegerPtr a = Node("A");
    CIntegerPtr none = map._GetNode("Nothing");
    EXPECT_TRUE(IsReadable(a) && IsWritable(a) && IsAvailable(a) && IsImplemented(a));
    EXPECT_FALSE(IsReadable(none) || IsWritable(none) || IsAvailable(none) || IsImplemented(none));
    EXPECT_TRUE(IsReadable(*a->GetNode()));
    EXPECT_THROW(none->GetValue(), LogicalErrorException);
}

TEST_F(AccessMode, VisibilityCanBeImposedByTheDescription) {
    Load(
        "<Integer Name='A'><Visibility>Expert</Visibility><ImposedVisibility>Guru</ImposedVisibility><Value>1</Value>"
        "</Integer><Integer Name='B'><Visibility>Invisible</Visibility><ImposedVisibility>Beginner</ImposedVisibility>"
        "<Value>1</Value></Integer>");
    EXPECT_EQ(Node("A")->GetVisibility(), Guru);
    EXPECT_EQ(Node("B")->GetVisibility(), Invisible);
    Node("A")->ImposeVisibility(Invisible);
    EXPECT_EQ(Node("A")->GetVisibility(), Invisible);
    Node("A")->ImposeVisibility(Beginner);
    EXPECT_EQ(Node("A")->GetVisibility(), Guru);
    EXPECT_THROW(Node("A")->ImposeVisibility(static_cast<EVisibility>(7)), InvalidArgumentException);
}

TEST_F(AccessMode, IsCacheableUnlessARuleIsNot) {
    const auto rule = [](const std::string& name, const std::string& caching) {
        return "<IntReg Name='" + name + "'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode>" +
               "<pPort>Device</pPort><Cachable>" + caching + "</Cachable></IntReg>";
    };
    Load(rule("Kept", "WriteThrough") + rule("Asked", "NoCache") +
         "<Integer Name='A'><pIsLocked>Kept</pIsLocked><Value>1</Value></Integer>"
         "<Integer Name='B'><pIsLocked>Asked</pIsLocked><Value>1</Value></Integer>"
         "<Integer Name='C'><pValue>B</pValue></Integer><Integer Name='D'><pValue>Asked</pValue></Integer>");
    EXPECT_EQ(Node("A")->IsAccessModeCacheable(), Yes);
    EXPECT_EQ(Node("B")->IsAccessModeCacheable(), No);
    EXPECT_EQ(Node("C")->IsAccessModeCacheable(), No);
    EXPECT_EQ(Node("D")->IsAccessModeCacheable(), Yes);
}

}  // namespace genapitest
