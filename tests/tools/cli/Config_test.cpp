/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of config path, show, check and init
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "ProgramRun.h"
#include "SilentLine.h"
#include "system/Folders.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using tools_test::Environment;
using tools_test::RunResult;
using tools_test::RunVantoCl;

class Config : public testing::Test {
protected:
    std::filesystem::path Folder() const { return m_folder.Path(); }
    std::filesystem::path File() const { return Folder() / "PortConfiguration_x64.xml"; }
    Environment Own() const { return {{"VANTO_CL_BINDINGS", Folder().string()}, {"CLSERTTY_PATH", Folder().string()}}; }
    void Configure(const std::string& text) const { std::ofstream(File(), std::ios::binary) << text; }
    RunResult Run(const std::vector<std::string>& words) const { return RunVantoCl(words, Own()); }

private:
    tools::TemporaryFolder m_folder;
};

TEST_F(Config, PathPrintsNothingButThePath) {
    const RunResult run = Run({"config", "path"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, File().string() + "\n");
    EXPECT_THAT(run.err, HasSubstr("VANTO_CL_BINDINGS is set to the folder"));
    EXPECT_THAT(run.err, HasSubstr("does not exist"));
}

TEST_F(Config, PathPrintsJson) {
    Configure("<a/>");
    const json answer = json::parse(Run({"config", "path", "--json"}).out);
    EXPECT_EQ(answer.at("Path"), File().string());
    EXPECT_EQ(answer.at("Exists"), true);
    EXPECT_EQ(answer.at("Readable"), true);
}

TEST_F(Config, ShowPrintsTheEntries) {
    Configure("<a><Port><ID>P#1</ID><Enabled>1</Enabled><BaudRate>9600</BaudRate></Port>\n<Port/></a>");
    const RunResult run = Run({"config", "show"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("   1  P#1             yes"));
    EXPECT_THAT(run.out, HasSubstr("   2  no ID: ignored  no"));
}

TEST_F(Config, ShowPrintsJson) {
    Configure("<a><Port><ID>P#1</ID><Enabled>1</Enabled></Port></a>");
    const json answer = json::parse(Run({"config", "show", "--json"}).out);
    EXPECT_EQ(answer.at("Ports").at(0).at("ID"), "P#1");
    EXPECT_EQ(answer.at("Ports").at(0).at("Enabled"), true);
}

TEST_F(Config, ShowWithoutAFileFails) {
    const RunResult run = Run({"config", "show"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("there is no port configuration file"));
}

TEST_F(Config, CheckNamesLineAndColumn) {
    Configure("<a>\n  <Port>\n    <ID>P#1</ID>\n    <Enabeld>1</Enabeld>\n  </Port>\n</a>");
    const RunResult run = Run({"config", "check"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.out, HasSubstr(File().string() + ":4:5: error: unknown element 'Enabeld' in Port is ignored\n"
                                                     "  did you mean 'Enabled'?\n"));
}

TEST_F(Config, CheckPrintsJson) {
    Configure("<a>\n<Port></a>");
    const RunResult run = Run({"config", "check", "--json"});
    EXPECT_EQ(run.exitCode, 1);
    const json answer = json::parse(run.out);
    EXPECT_EQ(answer.at("Fine"), false);
    EXPECT_EQ(answer.at("Findings").at(0).at("Line"), 2);
    EXPECT_EQ(answer.at("Findings").at(0).at("Text"), "malformed XML: expected end of tag 'Port'");
}

TEST_F(Config, CheckTakesAnotherFile) {
    Configure("<a/>");
    std::filesystem::rename(File(), Folder() / "other.xml");
    const RunResult run = Run({"config", "check", "--file", (Folder() / "other.xml").string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.out, HasSubstr("other.xml: error: the file has no Port element"));
}

TEST_F(Config, InitWritesWhatCheckFindsFine) {
    const tools_test::SilentLine line(Folder() / "tty0");
    const RunResult init = Run({"config", "init"});
    EXPECT_EQ(init.exitCode, 0) << init.err;
    EXPECT_THAT(init.out, HasSubstr("COM_Port#tty0"));
    const RunResult check = Run({"config", "check"});
    EXPECT_EQ(check.exitCode, 0) << check.out;
    EXPECT_THAT(check.out, HasSubstr("0 errors, 0 warnings"));
}

TEST_F(Config, InitDoesNotOverwriteUnlessForced) {
    const tools_test::SilentLine line(Folder() / "tty0");
    Configure("mine");
    const RunResult refused = Run({"config", "init"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.err, HasSubstr("is already there"));
    EXPECT_EQ(std::filesystem::file_size(File()), 4U);
    EXPECT_EQ(Run({"config", "init", "--force"}).exitCode, 0);
    EXPECT_GT(std::filesystem::file_size(File()), 4U);
}

TEST_F(Config, InitMakesTheFolder) {
    const tools_test::SilentLine line(Folder() / "tty0");
    Environment environment = Own();
    environment["VANTO_CL_BINDINGS"] = (Folder() / "new" / "folder").string();
    const RunResult run = RunVantoCl({"config", "init"}, environment);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_TRUE(std::filesystem::exists(Folder() / "new" / "folder" / "PortConfiguration_x64.xml"));
}

TEST_F(Config, InitNamesTheFolderThatItCannotMake) {
    const tools_test::SilentLine line(Folder() / "tty0");
    Environment environment = Own();
    environment["VANTO_CL_BINDINGS"] = "/proc/nothing";
    const RunResult run = RunVantoCl({"config", "init"}, environment);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("can't make the folder '/proc/nothing'"));
}

}  // namespace
