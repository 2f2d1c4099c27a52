/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of tables, of the output they go to and of small helpers beside them
 */
#include "output/Table.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>

#include "output/Progress.h"

namespace {

using namespace tools;

/// Output into files, which are no terminals.
class Printed : public testing::Test {
protected:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    using File = std::unique_ptr<std::FILE, Close>;

    static std::string TextOf(std::FILE* file) {
        std::fflush(file);
        std::rewind(file);
        std::string text(4096, '\0');
        text.resize(std::fread(text.data(), 1, text.size(), file));
        return text;
    }

    File m_out{std::tmpfile()};
    File m_err{std::tmpfile()};
    Output m_output{m_out.get(), m_err.get()};
};

TEST_F(Printed, TableAlignsColumns) {
    Table table({{"#", true}, {"Camera"}, {"Port"}});
    table.AddRow({"0", "Heron", "COM_Port#a"});
    table.AddRow({"10", "H", "COM_Port#b"});
    table.PrintTo(m_output);
    EXPECT_EQ(TextOf(m_out.get()),
              " #  Camera  Port\n"
              " 0  Heron   COM_Port#a\n"
              "10  H       COM_Port#b\n");
}

TEST_F(Printed, TableIsNotWidenedByAHugeValue) {
    Table table({KeyColumn("A"), {"B"}, {"C"}});
    table.AddRow({"x", std::string(2048, 'v'), "c"});
    table.AddRow({"y", "v", "c"});
    table.PrintTo(m_output);
    EXPECT_EQ(TextOf(m_out.get()), "A  B  C\nx  " + std::string(2048, 'v') + "  c\ny  v  c\n");
}

TEST_F(Printed, TableHasNoBlanksAtLineEnds) {
    Table table({{"A"}, {"B"}});
    table.AddRow({"long text"});
    table.PrintTo(m_output);
    EXPECT_EQ(TextOf(m_out.get()), "A          B\nlong text\n");
}

TEST_F(Printed, TableCountsCharactersNotBytes) {
    Table table({{"A"}, {"B"}});
    table.AddRow({"äöü", "x"});
    table.PrintTo(m_output);
    EXPECT_EQ(TextOf(m_out.get()), "A    B\näöü  x\n");
}

TEST_F(Printed, TableShowsControlCharacters) {
    Table table({{"A"}});
    table.AddRow({"\x1b[2J"});
    table.PrintTo(m_output);
    EXPECT_EQ(TextOf(m_out.get()), "A\n\\x1B[2J\n");
}

TEST_F(Printed, OutputHasNoColoursInAFile) {
    m_output.Line(m_output.Styled(Style::kBad, "x"));
    EXPECT_EQ(TextOf(m_out.get()), "x\n");
    EXPECT_EQ(m_output.Width(), 0);
}

TEST_F(Printed, ErrorGoesToStandardErrorWithItsHint) {
    m_output.Error("no camera", "plug one in");
    EXPECT_EQ(TextOf(m_err.get()), "error: no camera\nplug one in\n");
    EXPECT_EQ(TextOf(m_out.get()), "");
}

TEST_F(Printed, ProgressIsSilentWithoutATerminal) {
    { const Progress progress(m_output, "Waiting"); }
    EXPECT_EQ(TextOf(m_err.get()), "");
}

TEST(Output, TellsThatNothingCouldBeWritten) {
    std::FILE* full = std::fopen("/dev/full", "w");
    ASSERT_NE(full, nullptr);
    Output output(full, stderr);
    output.Line("x");
    EXPECT_FALSE(output.Flush());
    std::fclose(full);
}

TEST(DurationText, ShowsMilliseconds) {
    EXPECT_EQ(DurationText(std::chrono::milliseconds(999)), "999 ms");
}

TEST(DurationText, ShowsTenthsOfSeconds) {
    EXPECT_EQ(DurationText(std::chrono::milliseconds(12345)), "12.3 s");
}

TEST(DurationText, ShowsMinutes) {
    EXPECT_EQ(DurationText(std::chrono::milliseconds(125'000)), "2 min 05 s");
}

}  // namespace
