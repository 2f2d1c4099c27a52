/* SPDX-License-Identifier: Apache-2.0 */
#include "vanto/LogRules.h"

#include <gtest/gtest.h>

#include "vanto/TraceLog.h"

namespace {

using namespace Vanto::tracelog;

TEST(LogRules, AreOffWithoutEntries) {
    EXPECT_EQ(LogRules().ThresholdOf("any"), kOff);
    EXPECT_EQ(LogRules(" , ,").ThresholdOf("any"), kOff);
    EXPECT_TRUE(LogRules(" , ,").GetBadEntries().empty());
}

TEST(LogRules, TheFirstMatchDecides) {
    const LogRules rules("Vanto.CLSer.*:debug,Vanto.*:off,*:warning");
    EXPECT_EQ(rules.ThresholdOf("Vanto.CLSer.Port"), kDebug);
    EXPECT_EQ(rules.ThresholdOf("Vanto.Other"), kOff);
    EXPECT_EQ(rules.ThresholdOf("vanto.base.TL"), kWarning);
}

TEST(LogRules, KnowEveryLevel) {
    const LogRules rules("a:error,b:warning,c:info,d:debug,e:trace,f:off,g:DEBUG");
    EXPECT_EQ(rules.ThresholdOf("a"), 256u);
    EXPECT_EQ(rules.ThresholdOf("b"), 128u);
    EXPECT_EQ(rules.ThresholdOf("c"), 64u);
    EXPECT_EQ(rules.ThresholdOf("d"), 32u);
    EXPECT_EQ(rules.ThresholdOf("e"), 16u);
    EXPECT_EQ(rules.ThresholdOf("f"), kOff);
    EXPECT_EQ(rules.ThresholdOf("g"), kDebug);
    EXPECT_EQ(rules.ThresholdOf("h"), kOff);
}

TEST(LogRules, TakeALevelAloneForEveryCategory) {
    EXPECT_EQ(LogRules("info").ThresholdOf("any"), kInfo);
}

TEST(LogRules, TakeTheLevelBehindTheLastColon) {
    const LogRules rules("My:Category:debug,info:trace");
    EXPECT_TRUE(rules.GetBadEntries().empty());
    EXPECT_EQ(rules.ThresholdOf("My:Category"), kDebug);
    EXPECT_EQ(rules.ThresholdOf("info"), kTrace);
    EXPECT_EQ(rules.ThresholdOf("My"), kOff);
}

TEST(LogRules, TakeLevelsInAnyCase) {
    EXPECT_EQ(LogRules("a:WarNing").ThresholdOf("a"), kWarning);
    EXPECT_EQ(LogRules("a:OFF").ThresholdOf("a"), kOff);
}

TEST(LogRules, IgnoreBlanksAroundTheParts) {
    const LogRules rules("  a : debug ,\tb:info\n");
    EXPECT_EQ(rules.ThresholdOf("a"), kDebug);
    EXPECT_EQ(rules.ThresholdOf("b"), kInfo);
}

TEST(LogRules, SetBadEntriesAsideAndUseTheOthers) {
    const LogRules rules("a:loud,:debug,nonsense,b:,*:info");
    EXPECT_EQ(rules.GetBadEntries(), (std::vector<std::string>{"a:loud", ":debug", "nonsense", "b:"}));
    EXPECT_EQ(rules.ThresholdOf("a"), kInfo);
}

TEST(LogRules, MatchWildcards) {
    EXPECT_EQ(LogRules("*:info").ThresholdOf(""), kInfo);
    EXPECT_EQ(LogRules("a?c:info").ThresholdOf("abc"), kInfo);
    EXPECT_EQ(LogRules("a?c:info").ThresholdOf("ac"), kOff);
    EXPECT_EQ(LogRules("*.TL:info").ThresholdOf("Vanto.CLSer.TL"), kInfo);
    EXPECT_EQ(LogRules("*a*b*:info").ThresholdOf("xxaxxbxx"), kInfo);
    EXPECT_EQ(LogRules("*a*b*:info").ThresholdOf("xxbxxaxx"), kOff);
    EXPECT_EQ(LogRules("Vanto:info").ThresholdOf("vanto"), kOff);
}

TEST(LogRules, APatternOfManyStarsEnds) {
    const std::string pattern(std::string(200, '*') + "b");
    EXPECT_EQ(LogRules(pattern + ":info").ThresholdOf(std::string(5000, 'a')), kOff);
}

TEST(GetLevelName, NamesTheLevelsAndWhatLiesBetween) {
    EXPECT_STREQ(GetLevelName(kError), "error");
    EXPECT_STREQ(GetLevelName(kWarning), "warning");
    EXPECT_STREQ(GetLevelName(kInfo), "info");
    EXPECT_STREQ(GetLevelName(kDebug), "debug");
    EXPECT_STREQ(GetLevelName(kTrace), "trace");
    EXPECT_STREQ(GetLevelName(200), "warning");
    EXPECT_STREQ(GetLevelName(1), "trace");
}

}  // namespace
