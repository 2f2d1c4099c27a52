/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of child processes, files, ports and folders on Windows
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
// After windows.h, which it needs.
#include <tlhelp32.h>

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

std::filesystem::path Interpreter() {
    return GetEnvironment("ComSpec").value_or("C:\\windows\\system32\\cmd.exe");
}

int ChildrenOfOurs() {
    const HANDLE snapshot = ::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    int count = 0;
    for (BOOL more = ::Process32First(snapshot, &entry); more != 0; more = ::Process32Next(snapshot, &entry))
        count += entry.th32ParentProcessID == ::GetCurrentProcessId() ? 1 : 0;
    ::CloseHandle(snapshot);
    return count;
}

TEST(ChildProcess, GivesItsLinesOneByOne) {
    ChildProcess child(Interpreter(), {"/c", "echo one&echo two"});
    EXPECT_EQ(child.ReadLine(kLong), "one");
    EXPECT_EQ(child.ReadLine(kLong), "two");
    EXPECT_EQ(child.ReadLine(kLong), std::nullopt);
}

TEST(ChildProcess, IsEndedEvenIfItDoesNotListen) {
    {
        ChildProcess child(Interpreter(), {"/c", "echo up&for /l %i in (1,0,2) do @rem"});
        ASSERT_EQ(child.ReadLine(kLong), "up");
        EXPECT_EQ(ChildrenOfOurs(), 1);
    }
    EXPECT_EQ(ChildrenOfOurs(), 0);
}

TEST(ChildProcess, SeesItsInputCloseAtTheEnd) {
    ChildProcess child(Interpreter(), {"/c", "set /p line="});
    child.Stop();
    EXPECT_EQ(child.ReadLine(kLong), std::nullopt);
}

TEST(ChildProcess, ThrowsForAProgramThatIsNotThere) {
    EXPECT_THROW(ChildProcess("C:\\nonexistent\\program.exe", {}), std::system_error);
}

TEST(TemporaryFolder, IsRemovedWithAllItHolds) {
    std::filesystem::path path;
    {
        const TemporaryFolder folder;
        path = folder.Path();
        std::filesystem::create_directories(path / "a" / "b");
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(WriteFile, ReplacesAFile) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.Path() / "file";
    WriteFile(path, "one");
    WriteFile(path, "two");
    EXPECT_EQ(ContentOf(path), "two");
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

TEST(FileAccess, TellsWhatIsThere) {
    const TemporaryFolder folder;
    WriteFile(folder.Path() / "file", "one");
    const FileAccess access = AccessTo(folder.Path() / "file");
    EXPECT_TRUE(access.exists && access.readable && access.writable);
}

TEST(FileAccess, OfAMissingFileIsNone) {
    EXPECT_FALSE(AccessTo("C:\\nonexistent").exists);
    EXPECT_FALSE(AccessTo("\\\\.\\COM199").exists);
}

TEST(WhyNotReadable, ReportsADevice) {
    EXPECT_EQ(WhyNotReadable("\\\\.\\NUL"), "it is no regular file");
}

TEST(WhyNotReadable, TellsFoldersAndMissingFiles) {
    const TemporaryFolder folder;
    EXPECT_EQ(WhyNotReadable(folder.Path()), "it is a folder");
    EXPECT_EQ(WhyNotReadable(folder.Path() / "none"), "No such file or directory");
    WriteFile(folder.Path() / "file", "one");
    EXPECT_EQ(WhyNotReadable(folder.Path() / "file"), "");
}

TEST(DeviceOfPort, IsTheSystemsDeviceOfThatName) {
    // A machine may have no COM port, but has this device.
    EXPECT_EQ(DeviceOfPort("COM_Port#NUL"), "\\\\.\\NUL");
}

TEST(DeviceOfPort, IsUnknownForOtherMakersAndOddNames) {
    EXPECT_EQ(DeviceOfPort("Grabber#COM1"), "");
    EXPECT_EQ(DeviceOfPort("COM_Port#"), "");
    EXPECT_EQ(DeviceOfPort("COM_Port#..\\file"), "");
    EXPECT_EQ(DeviceOfPort("COM_Port#COM199"), "");
}

}  // namespace
