/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How much work one access is: no node is asked twice, however many ways lead to it
 */

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "AccessWork.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

namespace {

std::string ThreeWays(const std::string& name, const std::string& next) {
    return "<Integer Name='" + name + "'><pIsImplemented>" + next + "</pIsImplemented><pIsAvailable>" + next +
           "</pIsAvailable><pValue>" + next + "</pValue></Integer>";
}

std::string Twice(const std::string& name, const std::string& next) {
    return "<IntSwissKnife Name='" + name + "'><pVariable Name='A'>" + next + "</pVariable><pVariable Name='B'>" +
           next + "</pVariable><Formula>A + B</Formula></IntSwissKnife>";
}

std::string Pass(const std::string& name, const std::string& next) {
    return "<Integer Name='" + name + "'><pValue>" + next + "</pValue></Integer>";
}

}  // namespace

TEST_F(AccessWork, ThreeWaysToTheNextNodeAreAskedOnce) {
    Load(Chain(14, ThreeWays, Uncached("N14")));
    port.PutLittle(0, 7, 4);
    EXPECT_EQ(ReadsOf([&] { EXPECT_EQ(Integer("N0")->GetValue(), 7); }), 1);
    EXPECT_LE(ReadsOf([&] { EXPECT_EQ(Integer("N0")->GetValue(false, true), 7); }), 2);
    EXPECT_EQ(ReadsOf([&] { EXPECT_EQ(Mode("N0"), RW); }), 1);
    EXPECT_LE(ReadsOf([&] { Integer("N0")->SetValue(8); }), 2);
    EXPECT_EQ(port.Little(0, 4), 8U);
}

TEST_F(AccessWork, SixtyFormulasOverEachOtherEnd) {
    Load(Chain(60, Twice, Uncached("N60")));
    port.PutLittle(0, 3, 4);
    EXPECT_EQ(ReadsOf([&] { EXPECT_EQ(Integer("N0")->GetValue(), std::int64_t{3} << 60); }), 1);
    port.PutLittle(0, 1, 4);
    EXPECT_EQ(ReadsOf([&] { EXPECT_EQ(Integer("N0")->GetValue(false, true), std::int64_t{1} << 60); }), 1);
}

TEST_F(AccessWork, SixtyFormulasOverACachedRegisterEndWhenTheCacheIsPassedOver) {
    Load(Chain(60, Twice, "<IntReg Name='N60'><Address>0</Address><Length>4</Length><pPort>Device</pPort></IntReg>"));
    port.PutLittle(0, 1, 4);
    EXPECT_EQ(Integer("N0")->GetValue(), std::int64_t{1} << 60);
    port.PutLittle(0, 2, 4);
    EXPECT_EQ(ReadsOf([&] { EXPECT_EQ(Integer("N0")->GetValue(false, true), std::int64_t{2} << 60); }), 1);
}

TEST_F(AccessWork, RangesOfConvertersOverEachOtherEnd) {
    const auto converter = [](const std::string& name, const std::string& next) {
        return "<IntConverter Name='" + name + "'><FormulaTo>FROM - 1</FormulaTo><FormulaFrom>TO + 1</FormulaFrom>" +
               "<pValue>" + next + "</pValue></IntConverter>";
    };
    Load(Chain(60, converter, "<Integer Name='N60'><Value>5</Value><pMin>Least</pMin><Max>100</Max></Integer>") +
         Uncached("Least"));
    EXPECT_LE(ReadsOf([&] { EXPECT_EQ(Integer("N0")->GetMin(), 60); }), 1);
    EXPECT_EQ(Integer("N0")->GetMax(), 160);
    EXPECT_LE(ReadsOf([&] { Integer("N0")->SetValue(70); }), 2);
    EXPECT_EQ(Integer("N60")->GetValue(), 10);
}

// A device that refuses an address is asked once, too.
TEST_F(AccessWork, AnErrorIsMetOnce) {
    Load(Chain(30, ThreeWays, Uncached("N30", 0x20000)));
    EXPECT_EQ(ReadsOf([&] { EXPECT_EQ(Mode("N0"), NA); }), 1);
    EXPECT_EQ(ReadsOf([&] { EXPECT_THROW(Integer("N0")->GetValue(), AccessException); }), 1);
}

TEST_F(AccessWork, TheNextAccessAsksAgain) {
    Load(Pass("A", "R") + Uncached("R"));
    for (const unsigned value : {1U, 2U, 3U}) {
        port.PutLittle(0, value, 4);
        EXPECT_EQ(Integer("A")->GetValue(), value);
    }
}

TEST_F(AccessWork, ListsOfACategoryAskOnceForAllFeatures) {
    std::string category = "<Category Name='Root'>";
    std::string features;
    for (int i = 0; i < 20; ++i) {
        const std::string name = "F" + std::to_string(i);
        category += "<pFeature>" + name + "</pFeature>";
        features += "<Integer Name='" + name + "'><pIsImplemented>R</pIsImplemented><Value>1</Value></Integer>";
    }
    Load(category + "</Category>" + features + Uncached("R"));
    port.PutLittle(0, 1, 4);
    FeatureList_t list;
    EXPECT_EQ(ReadsOf([&] { Category("Root")->GetFeatures(list); }), 1);
    EXPECT_EQ(list.size(), 20U);
}

// --- Changes within an access ---

TEST_F(AccessWork, ACopyIsCheckedWithWhatWasWrittenBefore) {
    for (const char* caching : {"WriteThrough", "NoCache"}) {
        Load(
            "<Integer Name='A'><pValue>First</pValue><pValueCopy>Second</pValueCopy></Integer>"
            "<IntReg Name='First'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode>"
            "<pPort>Device</pPort><Cachable>" +
            std::string(caching) +
            "</Cachable></IntReg><Integer Name='Second'><Value>0</Value><pMax>Rest</pMax></Integer>"
            "<IntSwissKnife Name='Rest'><pVariable Name='F'>First</pVariable><Formula>100 - F</Formula>"
            "</IntSwissKnife>");
        port.PutLittle(0, 0, 4);
        EXPECT_THROW(Integer("A")->SetValue(60), OutOfRangeException) << caching;
        Integer("A")->SetValue(40);
        EXPECT_EQ(Integer("Second")->GetValue(), 40) << caching;
    }
}

TEST_F(AccessWork, CopiesOfCopiesMayMeet) {
    Load(
        "<Integer Name='A'><pValue>B</pValue><pValueCopy>C</pValueCopy></Integer>"
        "<Integer Name='B'><pValue>R</pValue></Integer><Integer Name='C'><pValue>R</pValue></Integer>" +
        Uncached("R"));
    Integer("A")->SetValue(5);
    EXPECT_EQ(port.Little(0, 4), 5U);
    EXPECT_EQ(port.Writes(), 2);
}

TEST_F(AccessWork, CopiesOfCopiesEnd) {
    const auto copy = [](const std::string& name, const std::string& next) {
        return "<Integer Name='" + name + "'><pValue>" + next + "</pValue><pValueCopy>" + next +
               "</pValueCopy></Integer>";
    };
    Load(Chain(40, copy, Uncached("N40")));
    EXPECT_THROW(Integer("N0")->SetValue(5), LogicalErrorException);
    EXPECT_LE(port.Writes(), 32);
    Integer("N38")->SetValue(6);
    EXPECT_EQ(port.Little(0, 4), 6U);
}

// --- Depth ---

TEST_F(AccessWork, AnyChainMayBeLong) {
    const auto address = [](const std::string& name, const std::string& next) {
        return "<IntReg Name='" + name + "'><pAddress>" + next + "</pAddress><Length>4</Length><pPort>Device</pPort>" +
               "<Cachable>NoCache</Cachable></IntReg>";
    };
    const auto chosen = [](const std::string& name, const std::string& next) {
        return "<IntSwissKnife Name='" + name + "'><pVariable Name='A'>" + next +
               "</pVariable><Formula>(1 = 1) ? A : 0</Formula></IntSwissKnife>";
    };
    struct Case {
        std::function<std::string(const std::string&, const std::string&)> make;
        int length;
        unsigned value;
    };
    for (const auto& [make, length, value] :
         {Case{Pass, 100000, 7}, Case{ThreeWays, 100000, 7}, Case{address, 20000, 0}, Case{chosen, 20000, 7}}) {
        Load(Chain(length, make, Uncached("N" + std::to_string(length))));
        port.PutLittle(0, value, 4);
        EXPECT_EQ(Integer("N0")->GetValue(), value);
        EXPECT_LE(port.Reads(), 2 * length);
    }
}

TEST_F(AccessWork, AChainOfRulesMayBeLong) {
    const auto ruled = [](const std::string& name, const std::string& next) {
        return "<Integer Name='" + name + "'><pIsImplemented>" + next + "</pIsImplemented><Value>1</Value></Integer>";
    };
    Load(Chain(100000, ruled, Uncached("N100000")));
    for (const unsigned value : {1U, 0U}) {
        port.PutLittle(0, value, 4);
        EXPECT_EQ(Mode("N99999"), value != 0 ? RW : NI);
        EXPECT_EQ(Mode("N0"), value != 0 ? RW : NA);  // whose rule can't be read itself
    }
}

TEST_F(AccessWork, TheErrorAtTheEndOfALongChainIsTold) {
    Load(Chain(1000, Pass, Uncached("N1000", 0x20000)));
    EXPECT_THROW(Integer("N0")->GetValue(), OutOfRangeException);
    EXPECT_EQ(port.Reads(), 1);
    Load(Chain(1000, ThreeWays, Uncached("N1000")));
    port.failsNext = true;
    EXPECT_THROW(Integer("N0")->GetValue(), TimeoutException);
}

TEST_F(AccessWork, ALongCircleIsFound) {
    Load(Chain(100000, Pass, Pass("N100000", "N0")) + Pass("Before", "N77"));
    EXPECT_EQ(Mode("Before"), NI);
    EXPECT_EQ(Mode("N99999"), NI);
    EXPECT_THROW(Integer("N5")->GetValue(), AccessException);
}

TEST_F(AccessWork, ALongCircleOfFormulasIsFound) {
    const auto chosen = [](const std::string& name, const std::string& next) {
        return "<IntSwissKnife Name='" + name + "'><pVariable Name='A'>" + next +
               "</pVariable><Formula>(1 = 1) ? A : 0</Formula></IntSwissKnife>";
    };
    Load(Chain(1000, chosen, chosen("N1000", "N3")));
    EXPECT_THROW(Integer("N0")->GetValue(), AccessException);
    EXPECT_EQ(Mode("N1000"), NI);
    EXPECT_EQ(Mode("N500"), NI);
}

// --- Ports that use the node map themselves ---

namespace {

/// Asks a node for its value whenever it is read, and counts up.
class CuriousPort final : public IPort {
public:
    EAccessMode GetAccessMode() const override { return RW; }
    void Read(void* buffer, std::int64_t address, std::int64_t length) override {
        if (address == 0 && other.IsValid())
            seen.push_back(other->GetValue());
        std::fill_n(static_cast<std::uint8_t*>(buffer), length, ++m_count);
    }
    void Write(const void*, std::int64_t, std::int64_t) override {}

    CIntegerPtr other;
    std::vector<std::int64_t> seen;

private:
    std::uint8_t m_count = 0;
};

}  // namespace

TEST_F(AccessWork, APortThatAsksTheMapGetsAnAnswerOfItsOwn) {
    CuriousPort curious;
    Load(Chain(500, ThreeWays, Uncached("N500")) + Uncached("Other", 0x10));
    map._Connect(&curious);
    curious.other = Node("Other");
    Integer("Other")->GetValue();
    Integer("N0")->GetValue();
    Integer("N0")->GetValue();
    ASSERT_GE(curious.seen.size(), 2U);
    EXPECT_NE(curious.seen.front(), curious.seen.back());
}

}  // namespace genapitest
