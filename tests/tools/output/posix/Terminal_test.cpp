/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what is printed where there is a terminal
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "../PseudoTerminal.h"
#include "output/Progress.h"
#include "output/Table.h"
#include "system/Environment.h"

namespace {

using namespace tools;
using testing::HasSubstr;
using tools_test::PseudoTerminal;

class OnTerminal : public testing::Test {
protected:
    OnTerminal() {
        SetEnvironment("TERM", "xterm");
        UnsetEnvironment("NO_COLOR");
    }
    ~OnTerminal() override { UnsetEnvironment("NO_COLOR"); }

    PseudoTerminal m_terminal{30};
};

TEST_F(OnTerminal, StylesAreShown) {
    Output output(m_terminal.Stream(), m_terminal.Stream());
    output.Print(output.Styled(Style::kBad, "x"));
    EXPECT_EQ(m_terminal.Text(), "\033[31mx\033[0m");
}

TEST_F(OnTerminal, NoColorSwitchesStylesOff) {
    SetEnvironment("NO_COLOR", "1");
    Output output(m_terminal.Stream(), m_terminal.Stream());
    output.Print(output.Styled(Style::kBad, "x"));
    EXPECT_EQ(m_terminal.Text(), "x");
}

TEST_F(OnTerminal, AnEmptyNoColorMeansNothing) {
    SetEnvironment("NO_COLOR", "");
    const Output output(m_terminal.Stream(), m_terminal.Stream());
    EXPECT_NE(output.Styled(Style::kBad, "x"), "x");
}

TEST_F(OnTerminal, ADumbTerminalGetsNoStyles) {
    SetEnvironment("TERM", "dumb");
    const Output output(m_terminal.Stream(), m_terminal.Stream());
    EXPECT_EQ(output.Styled(Style::kBad, "x"), "x");
}

TEST_F(OnTerminal, TablesKeepToTheWidth) {
    SetEnvironment("NO_COLOR", "1");
    Output output(m_terminal.Stream(), m_terminal.Stream());
    Table table({{"#"}, {"A"}, {"B"}});
    table.AddRow({"1", std::string(40, 'a'), "short"});
    table.PrintTo(output);
    EXPECT_EQ(m_terminal.Text(),
              "#  A                     B\n"
              "1  aaaaaaaaaaaaaaaaaaa…  short\n");
}

TEST_F(OnTerminal, TablesKeepNamesWhole) {
    SetEnvironment("NO_COLOR", "1");
    Output output(m_terminal.Stream(), m_terminal.Stream());
    Table table({KeyColumn("Name"), {"Value"}, {"Takes"}});
    table.AddRow({"ANameOfMoreThanTwentyLetters", "1234567890", "one, two, three, four, five, six, seven"});
    table.AddRow({"Short", "2", "all"});
    table.PrintTo(output);
    EXPECT_EQ(m_terminal.Text(),
              "Name        Value     Takes\n"
              "ANameOfMoreThanTwentyLetters\n"
              "            1234567…  one,\n"
              "                      two,\n"
              "                      three, …\n"
              "Short       2         all\n");
}

TEST_F(OnTerminal, MessagesAreWrapped) {
    SetEnvironment("NO_COLOR", "1");
    Output output(m_terminal.Stream(), m_terminal.Stream());
    output.Warn("the camera does not answer any more");
    EXPECT_EQ(m_terminal.Text(), "warning: the camera does not\nanswer any more\n");
}

TEST_F(OnTerminal, ProgressShowsWhatAndForHowLongAndGoesAway) {
    Output output(m_terminal.Stream(), m_terminal.Stream());
    std::string text;
    {
        const Progress progress(output, "Waiting");
        text = m_terminal.Text();
    }
    EXPECT_THAT(text, HasSubstr("\r| Waiting ("));
    EXPECT_THAT(m_terminal.Text(), testing::EndsWith("\r\033[K"));
}

}  // namespace
