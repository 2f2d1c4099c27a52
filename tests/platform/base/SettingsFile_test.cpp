/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of settings as a file
 */
#include "base/SettingsFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace base;
using testing::HasSubstr;

std::string MessageOf(const std::string& text) {
    try {
        ParseSettings("f", text);
    } catch (const SettingsError& error) {
        return error.what();
    }
    return "no error";
}

TEST(SettingsFile, WritesSectionsForSelectors) {
    const std::vector<Setting> settings{{"Width", "8", {}, 0},
                                        {"LineSource", "Off", {{"LineSelector", "Line1"}}, 0},
                                        {"LineInverter", "true", {{"LineSelector", "Line1"}}, 0},
                                        {"A", "1", {{"B", "2"}, {"C", "3"}}, 0},
                                        {"Height", "4", {}, 0}};
    EXPECT_EQ(
        SettingsText("Settings", settings),
        "# Settings\nWidth=8\n\n[LineSelector=Line1]\nLineSource=Off\nLineInverter=true\n\n[B=2, C=3]\nA=1\n\n[]\n"
        "Height=4\n");
}

TEST(SettingsFile, ReadsWhatItWrote) {
    const std::vector<Setting> settings{{"Name", " a\\b\nc\x7F ", {}, 0},
                                        {"Empty", "", {}, 0},
                                        {"Equals", "a=b", {{"S", "1"}, {"T", "x"}}, 0},
                                        {"Last", "ü", {}, 0}};
    const std::vector<Setting> read = ParseSettings("f", SettingsText("x", settings));
    ASSERT_EQ(read.size(), settings.size());
    for (std::size_t index = 0; index < read.size(); ++index) {
        EXPECT_EQ(read[index].name, settings[index].name);
        EXPECT_EQ(read[index].text, settings[index].text);
        EXPECT_EQ(read[index].selectors, settings[index].selectors);
    }
}

TEST(SettingsFile, NeedsNoBlankBetweenSelectors) {
    const std::vector<Setting> read = ParseSettings("f", "[S=1,T=x]\nA=1\n[ S=2 ,]\nA=2");
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(read[0].selectors, (SelectorState{{"S", "1"}, {"T", "x"}}));
    EXPECT_EQ(read[1].selectors, (SelectorState{{"S", "2"}}));
}

TEST(SettingsFile, KeepsLineNumbersAndSkipsComments) {
    const std::vector<Setting> read = ParseSettings("f", "\xEF\xBB\xBF# x\r\n\r\n Width = 8 \r\n[ S = 1 ]\r\nHeight=4");
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(read[0].name, "Width");
    EXPECT_EQ(read[0].text, "8");
    EXPECT_EQ(read[0].line, 3U);
    EXPECT_EQ(read[1].line, 5U);
    EXPECT_EQ(read[1].selectors, (SelectorState{{"S", "1"}}));
}

TEST(SettingsFile, NamesFileAndLineOfAFault) {
    EXPECT_EQ(MessageOf("A=1\nB\n"), "f:2: 'B' is no NAME=VALUE");
    EXPECT_EQ(MessageOf("=1"), "f:1: '=1' is no NAME=VALUE");
    EXPECT_EQ(MessageOf("[S=1"), "f:1: ']' is missing");
    EXPECT_EQ(MessageOf("[S]"), "f:1: 'S' is no NAME=VALUE");
    for (const char* text : {"A=\\", "A=\\n", "A=\\x", "A=\\x1", "A=\\xZZ", "A=\\x1\\"})
        EXPECT_THAT(MessageOf(text), HasSubstr("after a backslash")) << text;
}

TEST(SettingsFile, CommentsCanNotBreakOut) {
    EXPECT_TRUE(ParseSettings("f", SettingsText("a\nWidth=1", {})).empty());
}

}  // namespace
