/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of vanto-cl describe with the description of a simulated camera and with broken ones
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>

#include "PlayedCameras.h"
#include "system/Folders.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using tools_test::RunResult;
using tools_test::RunVantoCl;

class Describe : public testing::Test {
protected:
    std::string File() const { return (m_folder.Path() / "camera.xml").string(); }
    void Fetch() const {
        const RunResult run = tools_test::PlayedCameras().Run({"xml", "0", "-o", File()});
        ASSERT_EQ(run.exitCode, 0) << run.err;
    }
    void Write(const std::string& text) const { std::ofstream(File()) << text; }

private:
    tools::TemporaryFolder m_folder;
};

TEST_F(Describe, PrintsTheFeatureTree) {
    Fetch();
    const RunResult run = RunVantoCl({"describe", File()});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, testing::ContainsRegex("\nImageFormatControl"));
    EXPECT_THAT(run.out, testing::ContainsRegex("\n  Width +Integer +RW +16 \\.\\. "));
    EXPECT_EQ(run.out, RunVantoCl({"describe", File(), "--tree"}).out);
}

TEST_F(Describe, PrintsJson) {
    Fetch();
    const RunResult run = RunVantoCl({"describe", File(), "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_FALSE(json::parse(run.out).at("Features").empty());
}

// Its clock has been a whole number from the beginning, where the convention has a Float.
TEST_F(Describe, FindsOneStrangeThingAboutTheSimulatedCamera) {
    Fetch();
    const RunResult run = RunVantoCl({"describe", File(), "--check"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.out, HasSubstr("DeviceClockFrequency is of type Float"));
    EXPECT_THAT(run.out, testing::EndsWith("camera.xml: 0 errors, 1 warning\n"));
}

TEST_F(Describe, ChecksAndPrintsJson) {
    Write("<RegisterDescription><Category Name=\"Root\">\n<pFeature>X</pFeature></Category></RegisterDescription>");
    const RunResult run = RunVantoCl({"describe", File(), "--check", "--json"});
    EXPECT_EQ(run.exitCode, 1);
    const json answer = json::parse(run.out);
    EXPECT_EQ(answer.at("Fine"), false);
    EXPECT_GE(answer.at("Errors"), 1);
}

constexpr const char* kTwoFaults =
    "<RegisterDescription SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\" "
    "xmlns=\"http://www.genicam.org/GenApi/Version_1_1\">"
    "<Category Name=\"Root\"><pFeature>X</pFeature></Category>\n"
    "<Integer Name=\"X\"><Value>1</Value><Min>9</Min><Max>5</Max><Unit>furlong</Unit></Integer></RegisterDescription>";

TEST_F(Describe, LeavesOutWhatIsBelowTheLevel) {
    Write(kTwoFaults);
    EXPECT_THAT(RunVantoCl({"describe", File(), "--check"}).out, HasSubstr("[unknown-unit]"));
    const RunResult run = RunVantoCl({"describe", File(), "--check", "--level", "error"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.out,
                HasSubstr(":2:35: error: the minimum 9 of Integer 'X' is above its maximum 5 [min-above-max]"));
    EXPECT_THAT(run.out, testing::Not(HasSubstr("furlong")));
}

TEST_F(Describe, PrintsAnnotationsOfAWorkflow) {
    Write(kTwoFaults);
    const RunResult run = RunVantoCl({"describe", File(), "--check", "--format", "github"});
    const std::string file = std::regex_replace(File(), std::regex(":"), "%3A");  // that of a drive
    EXPECT_THAT(run.out, HasSubstr("::error file=" + file + ",line=2,col=35,title=min-above-max::the minimum"));
    EXPECT_THAT(run.out, HasSubstr("::notice file="));
}

TEST_F(Describe, PrintsSarif) {
    Write(kTwoFaults);
    const json answer = json::parse(RunVantoCl({"describe", File(), "--check", "--format", "sarif"}).out);
    EXPECT_EQ(answer.at("version"), "2.1.0");
    const json& run = answer.at("runs").at(0);
    EXPECT_GT(run.at("tool").at("driver").at("rules").size(), 30U);
    const json& result = run.at("results").at(0);
    EXPECT_EQ(result.at("ruleId"), "min-above-max");
    EXPECT_EQ(result.at("locations").at(0).at("physicalLocation").at("region").at("startLine"), 2);
}

// People are shown the first hundred, programs get all.
TEST_F(Describe, CutsNothingThatProgramsRead) {
    constexpr std::size_t kFaults = 250;
    std::string nodes;
    for (std::size_t i = 0; i < kFaults; ++i)
        nodes += "<Integer Name=\"N" + std::to_string(i) + "\"><pValue>Nowhere</pValue></Integer>\n";
    std::string text = kTwoFaults;
    Write(text.insert(text.find("<Integer"), nodes));
    const auto check = [this](const char* format) {
        return RunVantoCl({"describe", File(), "--check", "--level", "error", "--format", format});
    };
    const auto linesWith = [](const std::string& output, const std::string& word) {
        std::size_t count = 0;
        for (std::size_t at = output.find(word); at != std::string::npos; at = output.find(word, at + 1))
            ++count;
        return count;
    };
    EXPECT_EQ(linesWith(check("text").out, "[dangling-reference]"), 100U);
    EXPECT_EQ(linesWith(check("github").out, "title=dangling-reference::"), kFaults);
    EXPECT_EQ(json::parse(check("json").out).at("Findings").size(), kFaults + 1);
    EXPECT_EQ(json::parse(check("sarif").out).at("runs").at(0).at("results").size(), kFaults + 1);
    for (const char* const format : {"text", "github", "json", "sarif"})
        EXPECT_EQ(check(format).exitCode, 1) << format;
}

TEST_F(Describe, WarningsAndNotesEndWithZeroInEachFormat) {
    std::string text = kTwoFaults;
    Write(text.replace(text.find("<Min>9"), 6, "<Min>1"));
    for (const char* const format : {"text", "github", "json", "sarif"}) {
        const RunResult run = RunVantoCl({"describe", File(), "--check", "--format", format});
        EXPECT_EQ(run.exitCode, 0) << format;
        EXPECT_THAT(run.out, HasSubstr("unknown-unit")) << format;
    }
}

TEST_F(Describe, LevelAndFormatBelongToChecking) {
    Write(kTwoFaults);
    EXPECT_EQ(RunVantoCl({"describe", File(), "--level", "error"}).exitCode, 2);
    EXPECT_EQ(RunVantoCl({"describe", File(), "--check", "--level", "all"}).exitCode, 2);
    EXPECT_EQ(RunVantoCl({"describe", File(), "--check", "--json", "--format", "text"}).exitCode, 2);
}

TEST_F(Describe, NamesTheFaultyFile) {
    Write("<RegisterDescription>");
    const RunResult run = RunVantoCl({"describe", File()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr(File() + ": line 1"));
}

TEST_F(Describe, NamesAFileThatIsNotThere) {
    const RunResult run = RunVantoCl({"describe", File()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("can't read '" + File() + "': No such file or directory"));
}

TEST_F(Describe, RefusesOptionsThatExcludeEachOther) {
    EXPECT_EQ(RunVantoCl({"describe", File(), "--tree", "--json"}).exitCode, 2);
}

}  // namespace
