/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the manual pages and completion scripts that vanto-cl writes of itself
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "../../support/TemporaryFolder.h"
#include "ProgramRun.h"

namespace {

using testing::HasSubstr;
using tools_test::RunVantoCl;

class Pages : public testing::Test {
protected:
    Pages() { EXPECT_EQ(RunVantoCl({"manual-pages", m_folder.Path()}).exitCode, 0); }

    std::string Page(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(m_folder / name, std::ios::binary).rdbuf();
        return text.str();
    }
    /// The headings of a page in their order.
    std::vector<std::string> Sections(const std::string& name) const {
        std::istringstream page(Page(name));
        std::vector<std::string> sections;
        for (std::string line; std::getline(page, line);) {
            if (line.starts_with(".SH "))
                sections.push_back(line.substr(4));
        }
        return sections;
    }

private:
    test_support::TemporaryFolder m_folder;
};

TEST_F(Pages, OfACommandHaveTheirSections) {
    EXPECT_THAT(Sections("vanto-cl-get.1"), testing::ElementsAre("NAME", "SYNOPSIS", "DESCRIPTION", "ARGUMENTS",
                                                                 "OPTIONS", "EXIT STATUS", "EXAMPLES", "SEE ALSO"));
    EXPECT_THAT(Sections("vanto-cl-config-path.1"), testing::ElementsAre("NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS",
                                                                         "EXIT STATUS", "EXAMPLES", "SEE ALSO"));
    const std::string page = Page("vanto-cl-get.1");
    for (const char* text : {"DEVICE", "NAME...", "\\-h, \\-\\-help", "\\-\\-help", "Print the help and exit"})
        EXPECT_THAT(page, HasSubstr(text));
}

TEST_F(Pages, OfTheProgramNameCommandsOptionsAndVariables) {
    EXPECT_THAT(Sections("vanto-cl.1"), testing::ElementsAre("NAME", "SYNOPSIS", "DESCRIPTION", "COMMANDS", "OPTIONS",
                                                             "ENVIRONMENT", "EXIT STATUS", "EXAMPLES", "SEE ALSO"));
    const std::string page = Page("vanto-cl.1");
    for (const char* text :
         {"simulate[=N]", "\\-\\-version", "VANTO_LOG", "VANTO_CL_BINDINGS", "VANTO_CL_STATE", "CLSERIALPATH",
          "GENICAM_CACHE", "NO_COLOR", "130 ended by", ".BR vanto\\-cl\\-doctor (1)", ".BR marlow\\-sim (1)"})
        EXPECT_THAT(page, HasSubstr(text));
}

TEST(CompletionScripts, AreThoseOfTheShell) {
    EXPECT_THAT(RunVantoCl({"completion", "bash"}).out, HasSubstr("complete -F _vanto_cl vanto-cl"));
    EXPECT_THAT(RunVantoCl({"completion", "zsh"}).out, HasSubstr("compdef"));
    EXPECT_THAT(RunVantoCl({"completion", "fish"}).out, HasSubstr("complete -c vanto-cl"));
    const tools_test::RunResult run = RunVantoCl({"completion", "tcsh"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr("there is no completion for 'tcsh'"));
}

}  // namespace
