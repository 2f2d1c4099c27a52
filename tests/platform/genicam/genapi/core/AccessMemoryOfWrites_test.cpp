/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How much work a write is, and every other question to a node: no more than the nodes that it reaches
 */

#include <functional>

#include "AccessWork.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

namespace {

std::string Element(const std::string& name, const std::string& text) {
    return "<" + name + ">" + text + "</" + name + ">";
}

/// A node that asks the next one in as many ways as there are: sixty of them over each other would never end if each
/// way were gone by itself.
std::string AllWays(const std::string& kind, const std::string& name, const std::string& next) {
    std::string node = "<" + kind + " Name='" + name + "'>";
    for (const char* reference : {"pIsImplemented", "pIsAvailable", "pValue", "pMin", "pMax"})
        node += Element(reference, std::string(reference) == "pMin" ? "Least" : next);
    return node + Element("pIsLocked", "Unlocked") + "</" + kind + ">";
}

std::string Integers(const std::string& name, const std::string& next) {
    return AllWays("Integer", name, next);
}

std::string Floats(const std::string& name, const std::string& next) {
    return AllWays("Float", name, next);
}

const std::string kRules = "<Integer Name='Least'><Value>0</Value></Integer>" + Uncached("Unlocked", 0x40);

}  // namespace

class WriteWork : public AccessWork {
protected:
    void LoadChain(const Maker& make) {
        Load(Chain(60, make, Uncached("N60")) + kRules);
        port.PutLittle(0, 7, 4);
    }
};

TEST_F(WriteWork, AWriteAsksEachRegisterAFewTimes) {
    for (const Maker& make : {Maker(Integers), Maker(Floats)}) {
        LoadChain(make);
        const CIntegerPtr integer = Node("N0");
        const CFloatPtr number = Node("N0");
        const int reads = ReadsOf([&] { integer.IsValid() ? integer->SetValue(5) : number->SetValue(5.0); });
        EXPECT_LE(reads, 4);
        EXPECT_EQ(port.Writes(), 1);
        EXPECT_EQ(port.Little(0, 4), 5U);
    }
}

TEST_F(WriteWork, ARefusedWriteAsksEachRegisterAFewTimes) {
    LoadChain(Integers);
    EXPECT_LE(ReadsOf([&] { EXPECT_THROW(Integer("N0")->SetValue(8), OutOfRangeException); }), 4);
    EXPECT_EQ(port.Writes(), 0);
    EXPECT_LE(ReadsOf([&] { EXPECT_THROW(Integer("N0")->FromString("-1"), OutOfRangeException); }), 4);
    port.PutLittle(0x40, 1, 4);
    EXPECT_LE(ReadsOf([&] { EXPECT_THROW(Integer("N0")->SetValue(5), AccessException); }), 4);
}

TEST_F(WriteWork, AWriteWithoutChecksAsksEachRegisterAFewTimes) {
    LoadChain(Integers);
    EXPECT_LE(ReadsOf([&] { Integer("N0")->SetValue(9, false); }), 4);
    EXPECT_EQ(port.Little(0, 4), 9U);
}

TEST_F(WriteWork, EveryQuestionAsksEachRegisterAFewTimes) {
    LoadChain(Integers);
    const CIntegerPtr node = Integer("N0");
    const CNodePtr plain = Node("N0");
    const std::vector<std::function<void()>> questions = {[&] { EXPECT_EQ(node->GetAccessMode(), RW); },
                                                          [&] { EXPECT_EQ(node->GetValue(), 7); },
                                                          [&] { EXPECT_EQ(node->GetValue(true, true), 7); },
                                                          [&] { EXPECT_EQ(node->GetMin(), 0); },
                                                          [&] { EXPECT_EQ(node->GetMax(), 7); },
                                                          [&] { EXPECT_EQ(node->GetInc(), 1); },
                                                          [&] { EXPECT_FALSE(node->IsValueCacheValid()); },
                                                          [&] { EXPECT_EQ(node->ToString(), "7"); },
                                                          [&] { EXPECT_EQ(node->ToString(true, true), "7"); },
                                                          [&] { EXPECT_EQ(node->GetUnit(), ""); },
                                                          [&] { EXPECT_EQ(node->GetRepresentation(), PureNumber); },
                                                          [&] { node->GetListOfValidValues(); },
                                                          [&] { EXPECT_EQ(plain->IsAccessModeCacheable(), No); },
                                                          [&] { plain->InvalidateNode(); },
                                                          [&] { map._InvalidateNodes(); },
                                                          [&] { map._Poll(1000); },
                                                          [&] { node->ImposeMax(100); },
                                                          [&] { plain->ImposeAccessMode(RW); }};
    for (std::size_t i = 0; i < questions.size(); ++i)
        EXPECT_LE(ReadsOf(questions[i]), 4) << i;
}

TEST_F(WriteWork, EntriesOverOneRuleAskForItOnce) {
    std::string entries;
    for (int i = 0; i < 20; ++i)
        entries += "<EnumEntry Name='E" + std::to_string(i) + "'><pIsImplemented>N0</pIsImplemented><pIsAvailable>N0" +
                   "</pIsAvailable>" + Element("Value", std::to_string(i % 10)) + "</EnumEntry>";
    Load("<Enumeration Name='E'>" + entries + "<pValue>R</pValue></Enumeration>" + Uncached("R", 0x80) +
         Chain(60, Integers, Uncached("N60")) + kRules);
    port.PutLittle(0, 7, 4);
    const CEnumerationPtr node = Enumeration("E");
    StringList_t symbolics;
    NodeList_t list;
    EXPECT_LE(ReadsOf([&] { node->GetSymbolics(symbolics); }), 4);
    EXPECT_EQ(symbolics.size(), 20U);
    EXPECT_LE(ReadsOf([&] { node->GetEntries(list); }), 4);
    EXPECT_LE(ReadsOf([&] { EXPECT_EQ(node->ToString(), "E0"); }), 4);
    EXPECT_LE(ReadsOf([&] { EXPECT_NE(node->GetCurrentEntry(), nullptr); }), 4);
    EXPECT_LE(ReadsOf([&] { node->FromString("E13"); }), 6);
    EXPECT_LE(ReadsOf([&] { node->SetIntValue(4); }), 6);
    EXPECT_EQ(port.Little(0x80, 4), 4U);
}

TEST_F(WriteWork, ACommandAsksEachRegisterAFewTimes) {
    Load(
        "<Command Name='C'><pIsImplemented>N0</pIsImplemented><pIsAvailable>N0</pIsAvailable><pValue>N0</pValue>"
        "<CommandValue>3</CommandValue></Command>" +
        Chain(60, Integers, Uncached("N60")) + kRules);
    port.PutLittle(0, 7, 4);
    EXPECT_LE(ReadsOf([&] { Command("C")->Execute(); }), 6);
    EXPECT_EQ(port.Little(0, 4), 3U);
    EXPECT_LE(ReadsOf([&] { EXPECT_FALSE(Command("C")->IsDone()); }), 4);
}

// What a write changes is found out in one walk, however many ways lead through it.
TEST_F(WriteWork, AChangeVisitsEachNodeAFewTimes) {
    const auto cached = [](const std::string& name) {
        return "<IntReg Name='" + name + "'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode>" +
               "<pPort>Device</pPort></IntReg>";
    };
    const auto selecting = [](const std::string& name, const std::string& next) {
        return "<IntSwissKnife Name='" + name + "'><pInvalidator>" + next + "</pInvalidator><pVariable Name='A'>" +
               next + "</pVariable><pVariable Name='B'>" + next +
               "</pVariable><Formula>A + B</Formula></IntSwissKnife>";
    };
    Load(Chain(60, selecting, cached("N60")));
    CallCounter counter;
    Register(Node("N0"), counter, &CallCounter::Called, cbPostInsideLock);
    for (const int value : {1, 2, 3}) {
        Integer("N60")->SetValue(value);
        EXPECT_EQ(Integer("N0")->GetValue(), std::int64_t{value} << 60);
    }
    EXPECT_EQ(counter.calls, 3);
    Node("N60")->InvalidateNode();
    EXPECT_EQ(counter.calls, 4);
}

// Each copy is checked with what the copies before it changed, so a chain behind the checks is gone through for each of
// them: a few times that is right, for a million copies it would be for ever.
TEST_F(WriteWork, CopiesOverALongChainEnd) {
    constexpr int kCopies = 20000;
    const auto pass = [](const std::string& name, const std::string& next) {
        return "<Integer Name='" + name + "'>" + Element("pValue", next) + "</Integer>";
    };
    const auto describe = [&](int copies, int length) {
        std::string nodes = "<Integer Name='A'><pValue>C0</pValue>";
        for (int i = 1; i < copies; ++i)
            nodes += Element("pValueCopy", "C" + std::to_string(i));
        nodes += "</Integer>";
        for (int i = 0; i < copies; ++i)
            nodes += "<Integer Name='C" + std::to_string(i) + "'><Value>0</Value><pMax>N0</pMax></Integer>";
        return nodes + Chain(length, pass, Uncached("N" + std::to_string(length)));
    };
    Load(describe(50, 100));
    port.PutLittle(0, 1000, 4);
    EXPECT_LE(ReadsOf([&] { Integer("A")->SetValue(5); }), 200);
    EXPECT_EQ(Integer("C49")->GetValue(), 5);
    Load(describe(kCopies, kCopies));
    EXPECT_THROW(Integer("A")->SetValue(5), LogicalErrorException);
    EXPECT_EQ(Integer("N0")->GetValue(), 1000);
}

}  // namespace genapitest
