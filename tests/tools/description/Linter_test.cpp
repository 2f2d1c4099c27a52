/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of finding what is wrong with a camera description
 */
#include "description/Linter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "Describe.h"

namespace {

using namespace tools;
using testing::HasSubstr;
using tools_test::Describe;

constexpr const char* kGoodA = "<Integer Name=\"A\"><Value>1</Value></Integer>";

TEST(Linter, FindsNothingWrongWithAGoodDescription) {
    const Findings findings = LintDescription(Describe(kGoodA));
    EXPECT_TRUE(findings.empty()) << findings[0].text;
}

TEST(Linter, FindsADanglingReferenceAndSuggestsAName) {
    const Findings findings = LintDescription(
        Describe("<Integer Name=\"A\">\n  <pValue>ARge</pValue>\n</Integer>\n<IntReg Name=\"AReg\"><Address>0</Address>"
                 "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort><Sign>Unsigned</Sign>"
                 "<Endianess>BigEndian</Endianess></IntReg>"));
    ASSERT_GE(findings.size(), 1U);
    EXPECT_EQ(findings[0].severity, Severity::kError);
    EXPECT_EQ(findings[0].place.line, 5U);
    EXPECT_EQ(findings[0].place.column, 3U);
    EXPECT_EQ(findings[0].text, "pValue of Integer 'A' refers to 'ARge', which does not exist");
    EXPECT_EQ(findings[0].hint, "did you mean 'AReg'?");
}

TEST(Linter, FindsAnUnknownElementWithItsLine) {
    const Findings findings =
        LintDescription(Describe("<Integer Name=\"A\">\n<Value>1</Value>\n<Colour>red</Colour></Integer>"));
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].severity, Severity::kWarning);
    EXPECT_EQ(findings[0].place.line, 6U);
    EXPECT_THAT(findings[0].text, HasSubstr("Colour"));
}

TEST(Linter, FindsAnUnreachableFeature) {
    const Findings findings =
        LintDescription(Describe(std::string(kGoodA) + "\n<Integer Name=\"B\"><pValue>C</pValue></Integer>\n"
                                                       "<Integer Name=\"C\"><Value>1</Value></Integer>"));
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].severity, Severity::kWarning);
    EXPECT_EQ(findings[0].place.line, 5U);
    EXPECT_EQ(findings[0].text, "Integer 'B' can't be reached: the category Root does not lead to it");
}

TEST(Linter, FindsThatThereIsNoRoot) {
    std::string text = Describe(kGoodA);
    text.replace(text.find("\"Root\""), 6, "\"Roof\"");
    const Findings findings = LintDescription(text);
    EXPECT_TRUE(std::any_of(findings.begin(), findings.end(), [](const Finding& finding) {
        return finding.text == "there is no category 'Root', so no feature can be reached";
    }));
}

TEST(Linter, FindsACircleOfValues) {
    const DescriptionModel model(Describe(
        "<Integer Name=\"A\"><pValue>B</pValue></Integer>\n<Integer Name=\"B\"><pIsAvailable>C</pIsAvailable>"
        "<Value>1</Value></Integer>\n<IntSwissKnife Name=\"C\"><pVariable Name=\"X\">A</pVariable><Formula>X</Formula>"
        "</IntSwissKnife>"));
    const std::vector<Finding> findings = FindCycles(model);
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].text, "a value or access rule depends on itself: A -> B -> C -> A");
    EXPECT_EQ(findings[0].place.line, 4U);
}

TEST(Linter, AllowsLimitsThatDependOnEachOther) {
    const DescriptionModel model(
        Describe("<Integer Name=\"A\"><Value>1</Value><pMax>B</pMax></Integer>\n"
                 "<Integer Name=\"B\"><Value>1</Value><pMax>A</pMax></Integer>"));
    EXPECT_TRUE(FindCycles(model).empty());
}

TEST(Linter, FindsACategoryThatHoldsItself) {
    const DescriptionModel model(Describe("<Category Name=\"A\"><pFeature>Root</pFeature></Category>"));
    const std::vector<Finding> findings = FindCycles(model);
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].text, "a category holds itself: Root -> A -> Root");
}

TEST(Linter, ManagesAVeryLongChain) {
    std::string nodes = kGoodA;
    for (int node = 0; node < 100'000; ++node)
        nodes += "<Integer Name=\"N" + std::to_string(node) + "\"><pValue>N" + std::to_string(node + 1) +
                 "</pValue></Integer>";
    const DescriptionModel model(Describe(nodes + "<Integer Name=\"N100000\"><pValue>N0</pValue></Integer>"));
    EXPECT_EQ(FindCycles(model).size(), 1U);
}

TEST(Linter, ReportsWhatIsNoXmlWithItsPlace) {
    const Findings findings = LintDescription("<RegisterDescription>\n<Integer");
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_TRUE(findings.HasErrors());
    EXPECT_THAT(findings[0].text, HasSubstr("line 2"));
}

TEST(Linter, ReportsWhatIsNoDescription) {
    EXPECT_THAT(LintDescription("<html/>")[0].text, HasSubstr("'html', not RegisterDescription"));
}

/// A register whose address is a formula within it.
std::string Moving(const std::string& formula) {
    return "<IntReg Name=\"A\"><Address>0</Address>\n" + formula +
           "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort><Sign>Unsigned</Sign>"
           "<Endianess>BigEndian</Endianess></IntReg>";
}

std::string TextsOf(const Findings& findings) {
    std::string texts;
    for (const Finding& finding : findings)
        texts += std::to_string(finding.place.line) + ": " + finding.text + "\n";
    return texts;
}

TEST(Linter, FindsADanglingReferenceInTheFormulaOfAnAddress) {
    const Findings findings = LintDescription(Describe(
        Moving("<IntSwissKnife><pVariable Name=\"X\">Nowhere</pVariable><Formula>X</Formula></IntSwissKnife>")));
    EXPECT_THAT(TextsOf(findings), HasSubstr("5: pVariable of IntSwissKnife (line 5) refers to 'Nowhere'"));
}

TEST(Linter, FindsACircleThroughTheFormulaOfAnAddress) {
    const DescriptionModel model(
        Describe(Moving("<IntSwissKnife><pVariable Name=\"X\">A</pVariable><Formula>X</Formula></IntSwissKnife>")));
    const std::vector<Finding> findings = FindCycles(model);
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].text, "a value or access rule depends on itself: A -> IntSwissKnife (line 5) -> A");
}

TEST(Linter, ReachesWhatOnlyTheFormulaOfAnAddressUses) {
    const Findings findings = LintDescription(Describe(
        Moving(
            "<IntSwissKnife Name=\"Inner\"><pVariable Name=\"X\">B</pVariable><Formula>X</Formula></IntSwissKnife>") +
        "<Integer Name=\"B\"><Value>1</Value></Integer>"));
    EXPECT_EQ(TextsOf(findings), "");
}

TEST(Linter, KnowsEntriesByTheNameOfTheirEnumeration) {
    const Findings findings = LintDescription(
        Describe("<IntSwissKnife Name=\"A\"><pVariable Name=\"M\">EnumEntry_E_Mono</pVariable><Formula>M</Formula>"
                 "</IntSwissKnife><Enumeration Name=\"E\"><EnumEntry Name=\"Mono\"><Value>1</Value></EnumEntry>"
                 "<Value>1</Value></Enumeration>",
                 "<pFeature>A</pFeature><pFeature>E</pFeature>"));
    EXPECT_EQ(TextsOf(findings), "");
}

TEST(Linter, TellsADanglingReferenceOfAStructureOnce) {
    for (const std::string reference : {"<pInvalidator>Nowhere</pInvalidator>", "<pAddress>Nowhere</pAddress>"}) {
        const Findings findings = LintDescription(
            Describe("<StructReg Comment=\"s\"><Address>0</Address>" + reference +
                         "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
                         "<Endianess>BigEndian</Endianess><StructEntry Name=\"A\"><Bit>1</Bit></StructEntry>"
                         "<StructEntry Name=\"B\"><Bit>2</Bit></StructEntry></StructReg>",
                     "<pFeature>A</pFeature><pFeature>B</pFeature>"));
        EXPECT_EQ(findings.size(), 1U) << TextsOf(findings);
    }
}

TEST(Linter, KnowsTheKeysOfAConfigurationRom) {
    const Findings findings =
        LintDescription(Describe("<ConfRom Name=\"Rom\"><Address>0</Address><Length>64</Length><pPort>Device</pPort>"
                                 "<IntKey Name=\"A\">1</IntKey><TextDesc Name=\"T\"><Key>2</Key></TextDesc></ConfRom>",
                                 "<pFeature>A</pFeature><pFeature>T</pFeature>"));
    EXPECT_THAT(TextsOf(findings), testing::Not(HasSubstr("does not exist")));
    EXPECT_THAT(TextsOf(findings), testing::Not(HasSubstr("can't be reached")));
}

}  // namespace
