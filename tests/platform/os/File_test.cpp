/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of files
 */

#include "os/File.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "../../support/TemporaryFolder.h"
#include "os/Path.h"

namespace {

class File : public testing::Test {
protected:
    std::string In(const std::string& name) const { return m_folder / name; }

    std::string Make(const std::string& name, const std::string& content) const {
        return m_folder.Write(name, content);
    }

private:
    test_support::TemporaryFolder m_folder;
};

TEST_F(File, TellsSizeAndTime) {
    const auto before = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    const os::FileStatus status = os::GetFileStatus(Make("a", "12345"));
    EXPECT_EQ(status.state, os::FileState::kFound);
    EXPECT_EQ(status.size, 5u);
    EXPECT_FALSE(status.isFolder);
    EXPECT_GE(status.modified, before - 2);
}

TEST_F(File, IsNotMadeWhereOneIs) {
    const std::string path = In("file");
    EXPECT_NE(os::OpenNewFile(path), nullptr);
    EXPECT_EQ(os::OpenNewFile(path), nullptr);
    EXPECT_EQ(os::OpenNewFile(In("none/file")), nullptr);
}

TEST_F(File, TellsMissing) {
    Make("file", "");
    EXPECT_EQ(os::GetFileStatus(In("none")).state, os::FileState::kMissing);
    EXPECT_EQ(os::GetFileStatus(In("none/none")).state, os::FileState::kMissing);
    EXPECT_EQ(os::GetFileStatus("").state, os::FileState::kMissing);
}

TEST_F(File, TellsWhatItCannotExamine) {
    EXPECT_EQ(os::GetFileStatus(In(std::string(5000, 'x'))).state, os::FileState::kError);
}

TEST_F(File, TellsFolders) {
    EXPECT_TRUE(os::GetFileStatus(In(".")).isFolder);
}

TEST_F(File, TellsAccessible) {
    EXPECT_TRUE(os::IsAccessible(Make("a", "")));
    EXPECT_FALSE(os::IsAccessible(In("none")));
}

TEST_F(File, ListsFilesSortedWithoutFolders) {
    Make("b", "");
    Make("a", "");
    ASSERT_TRUE(os::CreateFolders(In("c/d")));
    EXPECT_EQ(os::ListFiles(In("")), (std::vector<std::string>{"a", "b"}));
    EXPECT_TRUE(os::ListFiles(In("none")).empty());
    EXPECT_TRUE(os::ListFiles(In("a")).empty());
}

TEST_F(File, CreatesFoldersOnce) {
    EXPECT_TRUE(os::CreateFolders(In("x/y/z")));
    EXPECT_TRUE(os::CreateFolders(In("x/y/z")));
    Make("file", "");
    EXPECT_FALSE(os::CreateFolders(In("file")));
    EXPECT_FALSE(os::CreateFolders(In("file/below")));
    EXPECT_FALSE(os::CreateFolders(""));
}

TEST_F(File, WritesAndReadsBytes) {
    const std::string content("a\0\r\n\x1a\xff", 6);
    ASSERT_TRUE(os::WriteWholeFile(In("a"), content));
    EXPECT_EQ(os::ReadWholeFile(In("a"), 6), content);
}

TEST_F(File, ReadsNoMoreThanAllowed) {
    Make("a", std::string(70000, 'x'));
    EXPECT_FALSE(os::ReadWholeFile(In("a"), 69999));
    EXPECT_TRUE(os::ReadWholeFile(In("a"), 70000));
    EXPECT_FALSE(os::ReadWholeFile(In("none"), 10));
    EXPECT_FALSE(os::ReadWholeFile(In(""), 10));
}

TEST_F(File, OpensFilesOnly) {
    Make("a", "x");
    ASSERT_TRUE(os::CreateFolders(In("folder")));
    EXPECT_NE(os::OpenPlainFile(In("a")), nullptr);
    EXPECT_EQ(os::OpenPlainFile(In("folder")), nullptr);
    EXPECT_EQ(os::OpenPlainFile(In("none")), nullptr);
}

TEST_F(File, MayHaveANameBeyondAscii) {
    const std::string folder = In("\xC4\xE9");  // letters in the usual code page of Windows, bytes elsewhere
    ASSERT_TRUE(os::CreateFolders(folder));
    const std::string path = folder + os::kPathSeparator + "\xDF";
    ASSERT_TRUE(os::WriteWholeFile(path, "content"));
    EXPECT_EQ(os::ReadWholeFile(path, 100), "content");
    EXPECT_EQ(os::ListFiles(folder), std::vector<std::string>{"\xDF"});
    EXPECT_EQ(os::ToText(os::ToFilePath(path)), path);
}

TEST_F(File, ReplacesAWholeFile) {
    Make("a", "old content");
    ASSERT_TRUE(os::WriteWholeFile(In("a"), "new"));
    EXPECT_EQ(os::ReadWholeFile(In("a"), 100), "new");
    EXPECT_EQ(os::ListFiles(In("")).size(), 1u);
}

TEST_F(File, LeavesNothingBehindWhenWritingFails) {
    ASSERT_TRUE(os::CreateFolders(In("folder/below")));
    EXPECT_FALSE(os::WriteWholeFile(In("folder"), "x"));
    EXPECT_FALSE(os::WriteWholeFile(In("none/a"), "x"));
    EXPECT_TRUE(os::ListFiles(In("")).empty());
}

TEST_F(File, ShowsReadersOneContentOrTheOther) {
    const std::string one(100000, '1');
    const std::string two(100000, '2');
    ASSERT_TRUE(os::WriteWholeFile(In("a"), one));
    std::thread writer([&] {
        for (int i = 0; i < 50; ++i)
            EXPECT_TRUE(os::WriteWholeFile(In("a"), i % 2 == 0 ? two : one));
    });
    for (int i = 0; i < 50; ++i) {
        const auto content = os::ReadWholeFile(In("a"), 200000);
        EXPECT_TRUE(content == one || content == two);
    }
    writer.join();
}

}  // namespace
