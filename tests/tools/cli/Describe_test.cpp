/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of vanto-cl describe with the description of a simulated camera and with broken ones
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

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

TEST_F(Describe, FindsNothingWrongWithTheSimulatedCamera) {
    Fetch();
    const RunResult run = RunVantoCl({"describe", File(), "--check"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.out, testing::EndsWith("camera.xml: 0 errors, 0 warnings\n"));
}

TEST_F(Describe, ChecksAndPrintsJson) {
    Write("<RegisterDescription><Category Name=\"Root\">\n<pFeature>X</pFeature></Category></RegisterDescription>");
    const RunResult run = RunVantoCl({"describe", File(), "--check", "--json"});
    EXPECT_EQ(run.exitCode, 1);
    const json answer = json::parse(run.out);
    EXPECT_EQ(answer.at("Fine"), false);
    EXPECT_GE(answer.at("Errors"), 1);
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
