/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of child processes, files and folders
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "error/ExitCode.h"
#include "system/ChildProcess.h"
#include "system/Environment.h"
#include "system/FileAccess.h"
#include "system/Files.h"
#include "system/Folders.h"

namespace {

using namespace tools;
using testing::HasSubstr;
constexpr std::chrono::seconds kLong{30};

std::string ContentOf(const std::filesystem::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

TEST(ChildProcess, GivesItsLinesOneByOne) {
    ChildProcess child("/bin/echo", {"one\ntwo"});
    EXPECT_EQ(child.ReadLine(kLong), "one");
    EXPECT_EQ(child.ReadLine(kLong), "two");
    EXPECT_EQ(child.ReadLine(kLong), std::nullopt);
}

TEST(ChildProcess, IsEndedEvenIfItDoesNotListen) {
    const TemporaryFolder folder;
    const std::filesystem::path mark = folder.Path() / "pid";
    {
        ChildProcess child(
            "/bin/sh", {"-c", "trap '' TERM; echo $$ > '" + mark.string() + "'; echo up; while :; do sleep 0.1; done"});
        ASSERT_EQ(child.ReadLine(kLong), "up");
    }
    std::string pid = ContentOf(mark);
    pid.erase(pid.find_last_not_of("\n") + 1);
    EXPECT_FALSE(std::filesystem::exists("/proc/" + pid));
}

TEST(ChildProcess, SeesItsInputCloseAtTheEnd) {
    ChildProcess child("/bin/cat", {});
    child.Stop();
    EXPECT_EQ(child.ReadLine(kLong), std::nullopt);
}

TEST(ChildProcess, ThrowsForAProgramThatIsNotThere) {
    const TemporaryFolder folder;
    EXPECT_THROW(ChildProcess(folder.Path() / "program", {}), std::system_error);
}

TEST(TemporaryFolder, IsRemovedWithAllItHolds) {
    std::filesystem::path path;
    {
        const TemporaryFolder folder;
        path = folder.Path();
        std::filesystem::create_directories(path / "a" / "b");
        EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms::owner_all);
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(WriteFile, ReplacesAFileAndKeepsItsRights) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.Path() / "file";
    WriteFile(path, "one");
    std::filesystem::permissions(path, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    WriteFile(path, "two");
    EXPECT_EQ(ContentOf(path), "two");
    EXPECT_EQ(std::filesystem::status(path).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

TEST(WriteFile, NamesTheFileThatItCannotWrite) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.Path() / "missing" / "file";
    try {
        WriteFile(path, "x");
        FAIL();
    } catch (const ToolError& error) {
        EXPECT_EQ(std::string(error.what()), "can't write '" + path.string() + "': No such file or directory");
    }
}

TEST(WriteFile, ReportsAFullDevice) {
    EXPECT_THROW(WriteFile("/dev/full", "x"), ToolError);
}

TEST(WriteFile, FollowsALinkInsteadOfReplacingIt) {
    const TemporaryFolder folder;
    WriteFile(folder.Path() / "file", "one");
    std::filesystem::create_symlink("file", folder.Path() / "link");
    WriteFile(folder.Path() / "link", "two");
    EXPECT_EQ(ContentOf(folder.Path() / "file"), "two");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.Path() / "link"));
}

TEST(FileAccess, TellsOwnerAndRights) {
    const FileAccess access = AccessTo("/dev/null");
    EXPECT_TRUE(access.exists && access.readable && access.writable);
    EXPECT_EQ(access.mode, "crw-rw-rw-");
    EXPECT_EQ(access.owner, "root");
}

TEST(FileAccess, OfAMissingFileIsNone) {
    EXPECT_FALSE(AccessTo("/nonexistent").exists);
}

TEST(FileAccess, AdvisesToJoinTheGroupThatMayWrite) {
    FileAccess access;
    access.group = "dialout";
    access.groupMayWrite = true;
    EXPECT_THAT(AdviceOnAccess("/dev/ttyUSB0", access), HasSubstr("usermod -aG dialout " + UserName()));
}

TEST(FileAccess, AdvisesARuleWhereJoiningAGroupWouldNotHelp) {
    FileAccess access;
    access.group = "root";
    access.groupMayWrite = true;
    EXPECT_THAT(AdviceOnAccess("/dev/ttyUSB0", access), HasSubstr("udev rule"));
}

TEST(WhyNotReadable, ReportsADevice) {
    EXPECT_EQ(WhyNotReadable("/dev/null"), "it is no regular file");
}

TEST(DeviceOfPort, FollowsTheFoldersOfTheSerialLibrary) {
    const TemporaryFolder folder;
    std::filesystem::create_symlink("/dev/null", folder.Path() / "cam0");
    SetEnvironment("CLSERTTY_PATH", "/nonexistent:" + folder.Path().string());
    EXPECT_EQ(DeviceOfPort("COM_Port#cam0"), folder.Path() / "cam0");
    UnsetEnvironment("CLSERTTY_PATH");
}

TEST(DeviceOfPort, IsTheSystemsDeviceOfThatName) {
    EXPECT_EQ(DeviceOfPort("COM_Port#tty"), "/dev/tty");
}

TEST(DeviceOfPort, IsUnknownForOtherMakersAndOddNames) {
    EXPECT_EQ(DeviceOfPort("Grabber#tty"), "");
    EXPECT_EQ(DeviceOfPort("COM_Port#"), "");
    EXPECT_EQ(DeviceOfPort("COM_Port#../etc/passwd"), "");
    EXPECT_EQ(DeviceOfPort("COM_Port#nonexistent"), "");
}

}  // namespace
