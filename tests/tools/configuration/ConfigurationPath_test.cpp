/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of where the configuration file is looked for
 */
#include "configuration/ConfigurationPath.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TemporaryFile.h"
#include "os/Path.h"
#include "system/Environment.h"

namespace {

using namespace tools;
using testing::HasSubstr;

class ConfigurationPathTest : public testing::Test {
protected:
    ~ConfigurationPathTest() override { UnsetEnvironment("VANTO_CL_BINDINGS"); }
};

TEST_F(ConfigurationPathTest, IsTheMachinesWithoutTheVariable) {
    UnsetEnvironment("VANTO_CL_BINDINGS");
    const ConfigurationPath found = FindConfigurationPath();
    EXPECT_EQ(found.path, std::filesystem::path(*os::CommonApplicationDataFolder()) / "Marlow" / "CLBindings" /
                              "PortConfiguration_x64.xml");
    EXPECT_EQ(found.reason, "VANTO_CL_BINDINGS is not set, so the file of the whole machine is used.");
    EXPECT_EQ(found.warning, "");
}

TEST_F(ConfigurationPathTest, IsInTheFolderOfTheVariable) {
    SetEnvironment("VANTO_CL_BINDINGS", "/tmp/some where/");
    const ConfigurationPath found = FindConfigurationPath();
    EXPECT_EQ(found.path, "/tmp/some where/PortConfiguration_x64.xml");
    EXPECT_EQ(found.reason, "VANTO_CL_BINDINGS is set to the folder '/tmp/some where/'.");
}

TEST_F(ConfigurationPathTest, IsInTheWorkingFolderWithAnEmptyVariable) {
    SetEnvironment("VANTO_CL_BINDINGS", "");
    const ConfigurationPath found = FindConfigurationPath();
    EXPECT_EQ(found.path, "PortConfiguration_x64.xml");
    EXPECT_THAT(found.reason, HasSubstr("set, but empty"));
    EXPECT_NE(found.warning, "");
}

TEST_F(ConfigurationPathTest, IsInTheWorkingFolderWithAVariableThatIsTooLong) {
    SetEnvironment("VANTO_CL_BINDINGS", "/" + std::string(259, 'x'));
    EXPECT_EQ(FindConfigurationPath().path, "PortConfiguration_x64.xml");
}

TEST_F(ConfigurationPathTest, WarnsOfAPathThatIsTooLong) {
    SetEnvironment("VANTO_CL_BINDINGS", "/" + std::string(250, 'x'));
    EXPECT_THAT(FindConfigurationPath().warning, HasSubstr("longer than 259"));
}

TEST_F(ConfigurationPathTest, WarnsOfAFileInPlaceOfAFolder) {
    const tools_test::TemporaryFile file("<a/>");
    SetEnvironment("VANTO_CL_BINDINGS", file.Path().string());
    EXPECT_THAT(FindConfigurationPath().warning, HasSubstr("names a file"));
}

}  // namespace
