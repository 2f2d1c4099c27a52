/* SPDX-License-Identifier: Apache-2.0 */
// What VANTO_LOG and VANTO_LOG_FILE make of a program that logs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <iterator>
#include <sstream>
#include <utility>

#include "../TestSupport.h"

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

std::string ReadAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    std::erase(text, '\r');  // ends of lines on Windows
    return text;
}

class LogEnvironment : public testing::Test {
protected:
    // What the program prints with these variables; nothing may appear on its standard output.
    std::string Run(const char* log, const std::string& file = "", const std::string& argument = "") const {
        const ScopedVariable logVariable("VANTO_LOG", log != nullptr ? log : "");
        const ScopedVariable fileVariable("VANTO_LOG_FILE", file);
        if (log == nullptr)
            os::UnsetEnvironment("VANTO_LOG");
        if (file.empty())
            os::UnsetEnvironment("VANTO_LOG_FILE");
        std::string command = "\"" + Native(LOG_PROBE) + "\" " + argument + " >\"" + (m_folder / "out") + "\" 2>\"" +
                              (m_folder / "err") + "\"";
        // The command interpreter of Windows takes away the outer pair of quotes.
        if (os::kPathSeparator == '\\')
            command = "\"" + command + "\"";
        EXPECT_EQ(std::system(command.c_str()), 0);
        EXPECT_EQ(ReadAll(m_folder / "out"), "");
        return ReadAll(m_folder / "err");
    }
    TemporaryFolder m_folder;
};

TEST_F(LogEnvironment, PrintsNothingWhenVantoLogIsNotSet) {
    EXPECT_EQ(Run(nullptr), "");
    EXPECT_EQ(Run(""), "");
    EXPECT_EQ(Run(nullptr, m_folder / "log"), "");
    EXPECT_FALSE(std::filesystem::exists(m_folder / "log"));
}

TEST_F(LogEnvironment, PrintsTimeLevelCategoryThreadAndText) {
    EXPECT_THAT(Run("*:error"), MatchesRegex("....-..-.. ..:..:..\\..+ error   .Probe.One. .+ one error 1\n"));
}

TEST_F(LogEnvironment, FollowsTheRulesOfEachCategory) {
    const std::string printed = Run("*.Two:trace,*:error");
    EXPECT_THAT(printed, HasSubstr("one error 1"));
    EXPECT_THAT(printed, Not(HasSubstr("one debug")));
    EXPECT_THAT(printed, HasSubstr("trace   [Probe.Two]"));
}

// The name of the level as it stands in the line of each of them.
TEST_F(LogEnvironment, NamesEachLevel) {
    const std::string printed = Run("*.Levels:trace", "", "levels");
    const std::pair<int, const char*> expected[] = {
        {257, "error  "}, {256, "error  "}, {255, "warning"}, {128, "warning"}, {127, "info   "},
        {64, "info   "},  {63, "debug  "},  {32, "debug  "},  {31, "trace  "},  {16, "trace  "}};
    std::istringstream lines(printed);
    for (const auto& [level, name] : expected) {
        std::string line;
        std::getline(lines, line);
        EXPECT_THAT(line, HasSubstr(std::string(" ") + name + " [Probe.Levels]")) << level;
        EXPECT_THAT(line, testing::EndsWith("level " + std::to_string(level)));
    }
}

TEST_F(LogEnvironment, EscapesControlCharacters) {
    const std::string printed = Run("*.Two:warning");
    EXPECT_THAT(printed, HasSubstr("two warning 'line\\nforged\\x1b[31m {} %n'\n"));
    EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 1);
}

TEST_F(LogEnvironment, ReportsABadEntryOnceAndGoesOn) {
    const std::string printed = Run("loud,*:error");
    EXPECT_THAT(printed, HasSubstr("Entry 'loud' of VANTO_LOG is ignored: write pattern:level, where level is error, "
                                   "warning, info, debug, trace or off\n"));
    EXPECT_THAT(printed, HasSubstr("one error 1"));
    EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 2);
}

TEST_F(LogEnvironment, WritesToAFileAsWell) {
    const std::string file = m_folder / "log";
    const std::string printed = Run("trace", file);
    EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 4);
    const auto withoutTimes = [](const std::string& text) { return text.substr(text.find("error")); };
    EXPECT_THAT(withoutTimes(ReadAll(file)).substr(0, 18), withoutTimes(printed).substr(0, 18));
    Run("trace", file);
    const std::string twice = ReadAll(file);
    EXPECT_EQ(std::count(twice.begin(), twice.end(), '\n'), 8);
}

#ifndef _WIN32
// The log file was opened in its place, and got each line twice.
TEST_F(LogEnvironment, PrintsIntoNoFileInThePlaceOfStandardError) {
    const std::string file = m_folder / "log";
    const ScopedVariable logVariable("VANTO_LOG", "trace");
    const ScopedVariable fileVariable("VANTO_LOG_FILE", file);
    EXPECT_EQ(std::system(("\"" + Native(LOG_PROBE) + "\" 2>&-").c_str()), 0);
    const std::string printed = ReadAll(file);
    EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 4);
}
#endif

TEST_F(LogEnvironment, SaysSoWhenTheFileCantBeWritten) {
    EXPECT_THAT(Run("*:error", m_folder.Path()),
                HasSubstr("VANTO_LOG_FILE '" + m_folder.Path() + "' can't be written: "));
}

}  // namespace
