/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of folders and paths
 */

#include "os/Path.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "os/Environment.h"

namespace {

// The tests are written with the separator of Linux.
std::string Native(std::string text) {
    std::replace(text.begin(), text.end(), '/', os::kPathSeparator);
    return text;
}

std::string Appended(const std::string& path, const std::string& part) {
    std::string result = Native(path);
    EXPECT_TRUE(os::AppendToPath(result, Native(part)));
    return result;
}

TEST(Path, AppendsWithOneSeparator) {
    EXPECT_EQ(Appended("/a", "b"), Native("/a/b"));
    EXPECT_EQ(Appended("/a/", "b"), Native("/a/b"));
    EXPECT_EQ(Appended("/a", "/b"), Native("/a/b"));
    EXPECT_EQ(Appended("/a/", "/b/c.xml"), Native("/a/b/c.xml"));
}

TEST(Path, AppendsToNothing) {
    EXPECT_EQ(Appended("", "b"), "b");
    EXPECT_EQ(Appended("a", ""), "a");
    EXPECT_EQ(Appended("", ""), "");
}

TEST(Path, CountsTheNulWhenAppending) {
    std::string path(250, 'x');
    ASSERT_TRUE(os::AppendToPath(path, "12345678"));
    EXPECT_EQ(path.size() + 1, os::kMaxPath);
    path.assign(250, 'x');
    EXPECT_FALSE(os::AppendToPath(path, "123456789"));
    EXPECT_EQ(path, std::string(250, 'x'));
}

TEST(Path, RefusesToAppendToAPathThatIsTooLong) {
    std::string path(300, 'x');
    EXPECT_FALSE(os::AppendToPath(path, "a"));
    EXPECT_EQ(path.size(), 300u);
}

TEST(Path, SplitsFolderAndFile) {
    EXPECT_EQ(os::FolderOf(Native("/a/b/c.so")), Native("/a/b"));
    EXPECT_EQ(os::FolderOf(Native("/c.so")), Native("/"));
    EXPECT_EQ(os::FolderOf("c.so"), "");
    EXPECT_EQ(os::FileNameOf(Native("/a/b/c.so")), "c.so");
    EXPECT_EQ(os::FileNameOf("c.so"), "c.so");
    EXPECT_EQ(os::FileNameOf(Native("/a/")), "");
}

TEST(Path, FoldsNamesWhereTheirCaseDoesNotCount) {
    const bool isWindows = os::kPathSeparator == '\\';
    EXPECT_EQ(os::FoldedFileName("Az[.DLL"), isWindows ? "az[.dll" : "Az[.DLL");
}

TEST(Path, TurnsForeignSeparators) {
    EXPECT_EQ(os::ToSystemSeparators("a/b\\c"), Native("a/b/c"));
    EXPECT_EQ(os::ToSystemSeparators(""), "");
}

TEST(Path, KnowsTheFolderOfAllUsers) {
    const auto folder = os::CommonApplicationDataFolder();
    ASSERT_TRUE(folder);
#ifndef _WIN32
    EXPECT_EQ(*folder, "/etc");
#endif
}

#ifndef _WIN32
class CacheFolder : public testing::Test {
public:
    ~CacheFolder() override {
        Restore("XDG_CACHE_HOME", m_cache);
        Restore("HOME", m_home);
    }

private:
    static void Restore(const char* name, const os::EnvironmentValue& value) {
        if (value.status == os::EnvironmentStatus::kAbsent)
            os::UnsetEnvironment(name);
        else
            os::SetEnvironment(name, value.text);
    }

    os::EnvironmentValue m_cache = os::GetEnvironment("XDG_CACHE_HOME");
    os::EnvironmentValue m_home = os::GetEnvironment("HOME");
};

TEST_F(CacheFolder, IsWhatXdgNames) {
    os::SetEnvironment("XDG_CACHE_HOME", "/x/cache");
    EXPECT_EQ(os::UserCacheFolder(), "/x/cache");
}

TEST_F(CacheFolder, IsAtHomeElse) {
    os::SetEnvironment("HOME", "/home/one");
    for (const char* cache : {"", "relative"}) {
        os::SetEnvironment("XDG_CACHE_HOME", cache);
        EXPECT_EQ(os::UserCacheFolder(), "/home/one/.cache");
    }
}

TEST_F(CacheFolder, IsInTheUsersRecordedHomeWithoutHome) {
    os::UnsetEnvironment("XDG_CACHE_HOME");
    os::UnsetEnvironment("HOME");
    const auto folder = os::UserCacheFolder();
    ASSERT_TRUE(folder);
    EXPECT_NE(folder->find("/.cache"), std::string::npos);
}
#endif

}  // namespace
