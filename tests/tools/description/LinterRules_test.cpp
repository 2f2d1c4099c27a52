/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the linter's rules: each has an example in the page about them, which is what these tests check
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "Describe.h"
#include "description/Linter.h"
#include "description/rules/Rules.h"

namespace {

using namespace tools;

std::string TextOf(const std::filesystem::path& path) {
    std::stringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

/// A description around some nodes; Root holds the feature A or, where there is one, the category AA.
std::string DescribeExample(const std::string& nodes) {
    const bool hasCategory = nodes.find("\"AA\"") != std::string::npos;
    return tools_test::Describe(nodes, hasCategory ? "<pFeature>AA</pFeature>" : "<pFeature>A</pFeature>");
}

/// The examples of docs/linter.md by the names of their rules.
std::map<std::string, std::string> Examples() {
    const std::string page = TextOf(VANTO_LINTER_PAGE);
    std::map<std::string, std::string> examples;
    for (std::size_t at = page.find("\n### "); at != std::string::npos; at = page.find("\n### ", at + 1)) {
        const std::size_t nameEnd = page.find('\n', at + 5);
        const std::string section = page.substr(nameEnd, page.find("\n### ", nameEnd) - nameEnd);
        const std::size_t begin = section.find("```xml\n");
        const std::size_t end = section.find("\n```", begin + 7);
        examples[page.substr(at + 5, nameEnd - at - 5)] =
            begin == std::string::npos ? "" : section.substr(begin + 7, end - begin - 7);
    }
    return examples;
}

std::vector<std::string> RulesIn(const Findings& findings) {
    std::vector<std::string> rules;
    for (const Finding& finding : findings)
        rules.push_back(finding.rule);
    return rules;
}

TEST(LinterRules, AreAllExplainedAndNoOthers) {
    std::vector<std::string> explained;
    for (const auto& [rule, example] : Examples())
        explained.push_back(rule);
    std::vector<std::string> known;
    for (const Rule& rule : AllRules())
        known.emplace_back(rule.id);
    EXPECT_THAT(explained, testing::UnorderedElementsAreArray(known));
}

TEST(LinterRules, FindTheFaultOfTheirExampleAndNoOther) {
    for (const auto& [rule, example] : Examples()) {
        if (example.empty() || rule == "no-root")
            continue;
        const Findings findings = LintDescription(DescribeExample(example));
        std::vector<std::string> rules = RulesIn(findings);
        EXPECT_THAT(rules, testing::Contains(rule)) << rule;
        if (rule == "missing-standard-feature" || rule == "standard-name-other-type" || rule == "standard-name-custom")
            std::erase(rules, "missing-standard-feature");
        std::erase(rules, rule);
        EXPECT_THAT(rules, testing::IsEmpty()) << rule << ": " << findings[0].text;
    }
}

TEST(LinterRules, GiveEachFindingTheirLevel) {
    for (const auto& [rule, example] : Examples()) {
        for (const Finding& finding : LintDescription(DescribeExample(example)))
            EXPECT_EQ(finding.severity, RuleOf(finding.rule).severity) << finding.text;
    }
}

// Whatever finds it: an editor that goes there stands on the element.
TEST(LinterRules, PointAtTheBracketThatOpensAnElement) {
    for (const auto& [rule, example] : Examples()) {
        const std::string text = DescribeExample(example);
        std::vector<std::string> lines{""};
        std::stringstream stream(text);
        for (std::string line; std::getline(stream, line);)
            lines.push_back(line);
        for (const Finding& finding : LintDescription(text)) {
            if (finding.place.line == 0)
                continue;  // about the whole file
            ASSERT_LT(finding.place.line, lines.size()) << finding.text;
            ASSERT_LE(finding.place.column, lines[finding.place.line].size()) << finding.text;
            ASSERT_GE(finding.place.column, 1U) << finding.text;
            EXPECT_EQ(lines[finding.place.line][finding.place.column - 1], '<') << finding.text;
        }
    }
}

TEST(LinterRules, SayOnceHowManyHelpersServeNothing) {
    std::string nodes = "<Integer Name=\"A\"><Value>1</Value></Integer>";
    for (int i = 0; i < 155; ++i)
        nodes += "<IntSwissKnife Name=\"Helper" + std::to_string(i) + "\"><Formula>1</Formula></IntSwissKnife>\n";
    const Findings findings = LintDescription(DescribeExample(nodes));
    ASSERT_EQ(RulesIn(findings), std::vector<std::string>{"unreachable-helpers"});
    EXPECT_THAT(findings[0].text, testing::StartsWith("155 helper nodes can't be reached and serve nothing: "));
}

// How long it takes is measured by tools_bench; here it ends, and tells of the circle once. The engine complains about
// each node in it, which is left out, and more than it keeps.
TEST(LinterRules, ManageAHundredThousandNodesInAChainAndInACircle) {
    constexpr int kNodes = 100'000;
    for (const bool isCircle : {false, true}) {
        std::string nodes = "<Integer Name=\"A\"><pValue>N0</pValue></Integer>\n";
        for (int i = 0; i < kNodes; ++i)
            nodes += "<Integer Name=\"N" + std::to_string(i) + "\"><pValue>N" + std::to_string(i + 1) +
                     "</pValue></Integer>\n";
        nodes += "<Integer Name=\"N" + std::to_string(kNodes) + "\">" +
                 (isCircle ? "<pValue>N0</pValue>" : "<Value>1</Value>") + "</Integer>";
        using Rules = std::vector<std::string>;
        EXPECT_EQ(RulesIn(LintDescription(DescribeExample(nodes))),
                  (isCircle ? Rules{"circle", "questionable"} : Rules()));
    }
}

std::string Many(const std::string& mode) {
    std::string nodes =
        "<Integer Name=\"A\"><pValue>N0</pValue></Integer><IntReg Name=\"R\"><Address>0</Address><Length>4</Length>"
        "<AccessMode>RO</AccessMode><pPort>Device</pPort><Cachable>" +
        mode + "</Cachable><Sign>Unsigned</Sign><Endianess>BigEndian</Endianess></IntReg>";
    for (int node = 0; node < 1100; ++node)
        nodes += "<Integer Name=\"N" + std::to_string(node) + "\"><pValue>" +
                 (node == 1099 ? std::string("R") : "N" + std::to_string(node + 1)) + "</pValue></Integer>";
    return DescribeExample(nodes);
}

TEST(LinterRules, FindAnUncachedRegisterBelowManyNodes) {
    EXPECT_EQ(RulesIn(LintDescription(Many("NoCache"))), std::vector<std::string>{"uncached-below-many"});
    EXPECT_TRUE(LintDescription(Many("WriteThrough")).empty());
}

TEST(LinterRules, TakeBothWaysOfBitsWhereTheyAreRight) {
    const std::string field =
        "<MaskedIntReg Name=\"A\"><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort><LSB>LOW</LSB><MSB>HIGH</MSB><Sign>Unsigned</Sign>"
        "<Endianess>ORDEREndian</Endianess></MaskedIntReg>";
    const auto with = [&](const char* low, const char* high, const char* order) {
        std::string text = field;
        text.replace(text.find("LOW"), 3, low);
        text.replace(text.find("HIGH"), 4, high);
        text.replace(text.find("ORDER"), 5, order);
        return LintDescription(DescribeExample(text)).Errors();
    };
    EXPECT_EQ(with("31", "24", "Big"), 0U);
    EXPECT_EQ(with("0", "7", "Little"), 0U);
    EXPECT_EQ(with("5", "5", "Big"), 0U);
    EXPECT_GT(with("32", "24", "Big"), 0U);
}

TEST(LinterRules, KnowTheEndsOfRegisters) {
    const auto warnings = [](const char* sign, const char* minimum, const char* maximum) {
        return LintDescription(
                   DescribeExample(std::string("<Integer Name=\"A\"><pValue>R</pValue><Min>") + minimum +
                                   "</Min><Max>" + maximum +
                                   "</Max></Integer><IntReg Name=\"R\"><Address>0</Address><Length>8</Length>"
                                   "<AccessMode>RW</AccessMode><pPort>Device</pPort><Sign>" +
                                   sign + "</Sign><Endianess>BigEndian</Endianess></IntReg>"))
            .Warnings();
    };
    EXPECT_EQ(warnings("Unsigned", "0", "9223372036854775807"), 0U);
    EXPECT_EQ(warnings("Signed", "-9223372036854775808", "9223372036854775807"), 0U);
    EXPECT_EQ(warnings("Unsigned", "-1", "5"), 1U);
}

TEST(LinterRules, DoNotTakeOtherNumbersForADivisionByZero) {
    for (const char* const formula : {"X / 0.5", "X / 0x10", "X / 10", "X % 2", "X / (0.1)"}) {
        const Findings findings = LintDescription(
            DescribeExample(std::string("<SwissKnife Name=\"A\"><pVariable Name=\"X\">B</pVariable><Formula>") +
                            formula + "</Formula></SwissKnife><Integer Name=\"B\"><Value>1</Value></Integer>"));
        EXPECT_EQ(findings.Errors(), 0U) << formula;
    }
}

struct RealFile {
    const char* name;
    std::map<std::string, int> found;  // each of these was looked at, and is true
};

class RealDescriptions : public testing::TestWithParam<RealFile> {};

TEST_P(RealDescriptions, RaiseNoFalseAlarm) {
    const std::filesystem::path file = std::filesystem::path(VANTO_TEST_DESCRIPTIONS) / GetParam().name;
    if (!std::filesystem::exists(file))
        GTEST_SKIP() << file << " is not there";
    std::map<std::string, int> found;
    for (const std::string& rule : RulesIn(LintDescription(ReadDescriptionText(file))))
        ++found[rule];
    EXPECT_EQ(found, GetParam().found);
}

INSTANTIATE_TEST_SUITE_P(
    Files, RealDescriptions,
    testing::Values(RealFile{"aravis_fakecamera.xml", {{"unreachable-feature", 2}, {"unreachable-helpers", 1}}},
                    RealFile{"aravis_testgenicam.xml",
                             {{"missing-endianess", 4},
                              {"unknown-access-mode", 4},
                              {"unreachable-feature", 22},
                              {"unreachable-helpers", 1},
                              {"unusable-node", 4}}},
                    RealFile{"firstlight_cred2.xml",
                             {{"category-circle", 1},
                              {"command-without-value", 5},
                              {"duplicate-name", 1},
                              {"missing-endianess", 45},
                              {"missing-standard-feature", 4},
                              {"questionable", 4}}},
                    RealFile{"imperx_b1020.xml",
                             {{"standard-name-other-type", 2}, {"unreachable-feature", 8}, {"unreachable-helpers", 1}}},
                    RealFile{"pco_1600.xml", {{"unreachable-helpers", 1}}},
                    RealFile{"vieworks_vnp604.xml", {{"standard-name-other-type", 2}, {"unreachable-helpers", 1}}}),
    [](const testing::TestParamInfo<RealFile>& file) {
        return std::string(file.param.name, std::string(file.param.name).find('.'));
    });

}  // namespace
