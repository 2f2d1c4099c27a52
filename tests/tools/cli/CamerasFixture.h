/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Runs of vanto-cl with a configuration and ports of their own
 */
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "ProgramRun.h"
#include "system/Folders.h"

namespace tools_test {

/// A folder for configuration, ports and temporary files of its own.
class Cameras : public testing::Test {
protected:
    std::filesystem::path Folder() const { return m_folder.Path(); }
    Environment Own() const {
        return {{"VANTO_CL_BINDINGS", Folder().string()},
                {"CLSERTTY_PATH", Folder().string()},
                {"TMPDIR", Folder().string()},
                {"VANTO_CL_STATE", (Folder() / "state").string()},
                {"GENICAM_CACHE", (Folder() / "cache").string()}};
    }
    void Configure(const std::string& text) const { std::ofstream(Folder() / "PortConfiguration_x64.xml") << text; }

private:
    tools::TemporaryFolder m_folder;
};

/// What a list without cameras says, in text and in JSON.
class Reasons : public Cameras {
public:
    static constexpr const char* kNoCamera =
        "<a><Port><ID>COM_Port#tty0</ID><Enabled>yes</Enabled><Manufacturer>Marlow</Manufacturer></Port></a>";

protected:
    void ExpectReason(const Environment& environment, const char* cause, const char* remedy) const {
        const RunResult text = RunVantoCl({"list"}, environment);
        EXPECT_EQ(text.exitCode, 0);
        EXPECT_THAT(text.out, testing::HasSubstr("No camera was found."));
        EXPECT_THAT(text.out, testing::HasSubstr(cause));
        EXPECT_THAT(text.out, testing::HasSubstr(remedy));
        const RunResult inJson = RunVantoCl({"list", "--json"}, environment);
        EXPECT_EQ(inJson.exitCode, 0);
        EXPECT_EQ(nlohmann::json::parse(inJson.out), nlohmann::json::array());
        EXPECT_THAT(inJson.err, testing::HasSubstr(cause));
    }
};

}  // namespace tools_test
