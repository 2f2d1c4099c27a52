/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of where the port configuration file lies, and why there
 */
#include "clbindings/ConfigurationLocation.h"

#include <gtest/gtest.h>

#include "scripted/Scripted.h"

namespace Vanto {
namespace {

std::optional<std::string> NoFolder() {
    return {};
}

TEST(ConfigurationLocation, FollowsTheVariable) {
    const scripted::ScopedVariable variable("VANTO_CL_BINDINGS", "folder");
    const auto location = FindConfigurationLocation(&NoFolder);
    ASSERT_TRUE(location);
    EXPECT_EQ(location->rule, LocationRule::kVariable);
    EXPECT_EQ(location->folder, "folder");
    EXPECT_EQ(location->path, std::string("folder") + os::kPathSeparator + kConfigurationFileName);
}

TEST(ConfigurationLocation, IsTheWorkingFolderWithAVariableOfNoUse) {
    const scripted::ScopedVariable empty("VANTO_CL_BINDINGS", "");
    EXPECT_EQ(FindConfigurationLocation()->rule, LocationRule::kEmptyVariable);
    const scripted::ScopedVariable tooLong("VANTO_CL_BINDINGS", std::string(os::kMaxPath, 'x'));
    EXPECT_EQ(FindConfigurationLocation()->rule, LocationRule::kTooLongVariable);
    EXPECT_EQ(FindConfigurationLocation()->path, kConfigurationFileName);
}

TEST(ConfigurationLocation, IsTheMachinesWithoutTheVariable) {
    const scripted::ScopedVariable absent("VANTO_CL_BINDINGS");
    EXPECT_FALSE(FindConfigurationLocation(&NoFolder));
    ASSERT_TRUE(FindConfigurationLocation());
    EXPECT_EQ(FindConfigurationLocation()->rule, LocationRule::kCommonFolder);
    EXPECT_TRUE(FindConfigurationLocation()->path.starts_with(*os::CommonApplicationDataFolder()));
}

}  // namespace
}  // namespace Vanto
