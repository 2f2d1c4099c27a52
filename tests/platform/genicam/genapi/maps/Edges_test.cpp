/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Ends of ranges, halves, and what is announced: where small mistakes hide
 */

#include <cfloat>

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class Edges : public NodeMapTest {
protected:
    static std::string Reg(const std::string& kind, int length, const std::string& more = "") {
        return "<" + kind + " Name='R'><Address>0</Address><Length>" + std::to_string(length) +
               "</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>" + more + "</" + kind + ">";
    }
};

TEST_F(Edges, ImposedLimitsAreAnnounced) {
    Load(
        "<Integer Name='I'><Value>5</Value></Integer><Float Name='F'><Value>5</Value></Float>"
        "<Integer Name='User'><pValue>I</pValue></Integer>");
    CallCounter counter;
    for (const char* name : {"I", "F", "User"})
        Register(Node(name), counter, &CallCounter::Called);
    Integer("I")->ImposeMin(1);
    EXPECT_EQ(counter.names, (std::vector<std::string>{"I", "User"}));
    Integer("I")->ImposeMax(9);
    EXPECT_EQ(counter.calls, 4);
    Float("F")->ImposeMin(1.0);
    Float("F")->ImposeMax(9.0);
    EXPECT_EQ(counter.calls, 6);
}

TEST_F(Edges, ImposedLimitsCountAfterTheyWereAskedFor) {
    Load(
        "<Integer Name='I'><Value>5</Value><Min>0</Min><Max>10</Max></Integer><Float "
        "Name='F'><pValue>I</pValue></Float>");
    EXPECT_EQ(Float("F")->GetMax(), 10.0);
    Integer("I")->ImposeMax(7);
    Integer("I")->ImposeMin(2);
    EXPECT_EQ(Float("F")->GetMax(), 7.0);
    EXPECT_EQ(Float("F")->GetMin(), 2.0);
    EXPECT_THROW(Integer("I")->SetValue(8), OutOfRangeException);
    Integer("I")->ImposeMax(20);
    EXPECT_EQ(Integer("I")->GetMax(), 10);
}

TEST_F(Edges, RangesOfRegistersOfEightBytes) {
    Load(Reg("IntReg", 8));
    EXPECT_EQ(Integer("R")->GetMin(), 0);
    EXPECT_EQ(Integer("R")->GetMax(), INT64_MAX);
    EXPECT_THROW(Integer("R")->SetValue(-1), OutOfRangeException);
    Integer("R")->SetValue(-1, false);
    EXPECT_EQ(port.Little(0, 8), UINT64_MAX);
    Load(Reg("IntReg", 8, "<Sign>Signed</Sign>"));
    EXPECT_EQ(Integer("R")->GetMin(), INT64_MIN);
    EXPECT_EQ(Integer("R")->GetMax(), INT64_MAX);
    Integer("R")->SetValue(INT64_MIN);
    EXPECT_EQ(port.Little(0, 8), std::uint64_t{1} << 63);
}

TEST_F(Edges, RangesOfFields) {
    Load(Reg("MaskedIntReg", 4, "<LSB>4</LSB><MSB>7</MSB>"));
    EXPECT_EQ(Integer("R")->GetMin(), 0);
    EXPECT_EQ(Integer("R")->GetMax(), 15);
    Integer("R")->SetValue(15);
    EXPECT_THROW(Integer("R")->SetValue(16, false), OutOfRangeException);
    Load(Reg("MaskedIntReg", 4, "<LSB>4</LSB><MSB>7</MSB><Sign>Signed</Sign>"));
    EXPECT_EQ(Integer("R")->GetMin(), -8);
    EXPECT_EQ(Integer("R")->GetMax(), 7);
    Integer("R")->SetValue(-8);
    EXPECT_THROW(Integer("R")->SetValue(-9, false), OutOfRangeException);
    EXPECT_THROW(Integer("R")->SetValue(8, false), OutOfRangeException);
    EXPECT_EQ(Integer("R")->GetValue(), -8);
}

TEST_F(Edges, BitsOfARegister) {
    Load(Reg("MaskedIntReg", 8, "<LSB>0</LSB><MSB>63</MSB>"));
    Integer("R")->SetValue(-1, false);
    EXPECT_EQ(port.Little(0, 8), UINT64_MAX);
    Load(Reg("MaskedIntReg", 8, "<Bit>63</Bit>"));
    EXPECT_EQ(Integer("R")->GetMax(), 1);
    Load(Reg("MaskedIntReg", 8, "<Bit>64</Bit>"));
    EXPECT_EQ(Mode("R"), NI);
    Load(Reg("MaskedIntReg", 1, "<Bit>8</Bit>"));
    EXPECT_THROW(Integer("R")->GetValue(), OutOfRangeException);
    Load(Reg("IntReg", 9));
    EXPECT_THROW(Integer("R")->GetValue(), OutOfRangeException);
}

TEST_F(Edges, FloatsOfFourBytes) {
    Load(Reg("FloatReg", 4));
    const double largest = static_cast<double>(FLT_MAX);
    EXPECT_EQ(Float("R")->GetMax(), largest);
    EXPECT_EQ(Float("R")->GetMin(), -largest);
    for (const double value : {largest, -largest}) {
        Float("R")->SetValue(value);
        EXPECT_EQ(Float("R")->GetValue(), value);
        EXPECT_THROW(Float("R")->SetValue(value * 1.5, false), OutOfRangeException);
    }
    Load(Reg("FloatReg", 8));
    EXPECT_EQ(Float("R")->GetMax(), DBL_MAX);
    EXPECT_EQ(Float("R")->GetMin(), -DBL_MAX);
}

TEST_F(Edges, HalvesAreRoundedAwayFromZero) {
    EXPECT_EQ(EvaluateFloat("ROUND(0.5)"), 1.0);
    EXPECT_EQ(EvaluateFloat("ROUND(1.5)"), 2.0);
    EXPECT_EQ(EvaluateFloat("ROUND(2.5)"), 3.0);
    EXPECT_EQ(EvaluateFloat("ROUND(-0.5)"), -1.0);
    EXPECT_EQ(EvaluateFloat("ROUND(-2.5)"), -3.0);
    EXPECT_EQ(EvaluateFloat("ROUND(0.25, 1)"), 0.3);
    EXPECT_EQ(EvaluateFloat("ROUND(-0.25, 1)"), -0.3);
    EXPECT_EQ(EvaluateFloat("ROUND(25, 0-1)"), 30.0);
    EXPECT_EQ(EvaluateFloat("TRUNC(-1.5)"), -1.0);
    EXPECT_EQ(EvaluateFloat("FLOOR(-1.5)"), -2.0);
    EXPECT_EQ(EvaluateFloat("CEIL(-1.5)"), -1.0);
}

TEST_F(Edges, FloatsWrittenToIntegersAreRoundedAwayFromZero) {
    Load("<Float Name='F'><pValue>I</pValue></Float><Integer Name='I'><Value>0</Value></Integer>");
    for (const auto& [written, held] : {std::pair(2.5, 3), std::pair(-2.5, -3), std::pair(0.49, 0)}) {
        Float("F")->SetValue(written);
        EXPECT_EQ(Integer("I")->GetValue(), held);
    }
}

// Minimum and value lie more than 2^63 apart.
TEST_F(Edges, IncrementsReachOverTheWholeRange) {
    Load("<Integer Name='I'><Value>0</Value><Inc>3</Inc></Integer>");
    constexpr std::int64_t last = INT64_MAX;  // a third of all 2^64 - 1 steps of one
    Integer("I")->SetValue(last);
    EXPECT_THROW(Integer("I")->SetValue(last - 1), OutOfRangeException);
    EXPECT_THROW(Integer("I")->SetValue(last - 2), OutOfRangeException);
    Integer("I")->SetValue(last - 3);
    Integer("I")->SetValue(INT64_MIN);
    EXPECT_THROW(Integer("I")->SetValue(INT64_MIN + 1), OutOfRangeException);
}

TEST_F(Edges, ShiftsAndBitsOfFormulas) {
    EXPECT_EQ(Evaluate("1 << 63"), INT64_MIN);
    EXPECT_THROW(Evaluate("1 << 64"), OutOfRangeException);
    EXPECT_THROW(Evaluate("1 >> (0 - 1)"), OutOfRangeException);
    EXPECT_EQ(Evaluate("(0 - 8) >> 1"), -4);
    EXPECT_EQ(Evaluate("0x7FFFFFFFFFFFFFFF + 0"), INT64_MAX);
    EXPECT_THROW(Evaluate("0x7FFFFFFFFFFFFFFF + 1"), OutOfRangeException);
    EXPECT_THROW(Evaluate("0 - 0x7FFFFFFFFFFFFFFF - 2"), OutOfRangeException);
    EXPECT_THROW(Evaluate("0x4000000000000000 * 2"), OutOfRangeException);
    EXPECT_EQ(Evaluate("(0 - 7) % 4"), -3);
    EXPECT_EQ(Evaluate("(0 - 7) / 4"), -1);
    EXPECT_EQ(Evaluate("(0 - 1) ** 3"), -1);
    EXPECT_EQ(Evaluate("2 ** 62"), std::int64_t{1} << 62);
    EXPECT_THROW(Evaluate("2 ** 63"), OutOfRangeException);
    EXPECT_EQ(Evaluate("SGN(0 - 5) + SGN(0) * 10 + SGN(5) * 100"), 99);
}

TEST_F(Edges, ComparisonsAtTheirEnds) {
    EXPECT_EQ(Evaluate("(2 < 2) + (2 <= 2) * 2 + (2 > 2) * 4 + (2 >= 2) * 8 + (2 = 2) * 16 + (2 <> 2) * 32"), 26);
    EXPECT_EQ(Evaluate("(1 < 2) + (1 <= 2) * 2 + (1 > 2) * 4 + (1 >= 2) * 8 + (1 = 2) * 16 + (1 <> 2) * 32"), 35);
    EXPECT_EQ(EvaluateFloat("(2.5 < 2.5) + (2.5 <= 2.5) * 2 + (2.5 > 2.5) * 4 + (2.5 >= 2.5) * 8"), 10.0);
}

// Both ends of what a register's length may be.
TEST_F(Edges, LengthsOfRegisters) {
    for (const auto& [length, mode] : {std::pair("1", RW), std::pair("16777216", RW), std::pair("16777217", NI),
                                       std::pair("0", NI), std::pair("-1", NI)}) {
        Load("<Register Name='R'><Address>0</Address><Length>" + std::string(length) +
             "</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></Register>");
        EXPECT_EQ(Mode("R"), mode) << length;
    }
}

TEST_F(Edges, APollingTimeIsOverWhenItIsReached) {
    Load(
        "<IntReg Name='R'><Address>0</Address><Length>4</Length><pPort>Device</pPort><PollingTime>100</PollingTime>"
        "</IntReg>");
    Integer("R")->GetValue();
    map._Poll(99);
    EXPECT_TRUE(Integer("R")->IsValueCacheValid());
    map._Poll(1);
    EXPECT_FALSE(Integer("R")->IsValueCacheValid());
    Integer("R")->GetValue();
    map._Poll(99);
    EXPECT_TRUE(Integer("R")->IsValueCacheValid());
}

}  // namespace genapitest
