/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the holder of a driver library
 */

#include "VantoCLSer/base/LibraryLoader.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "os/Path.h"
#include "scripted/Scripted.h"

namespace Vanto {
namespace {

class LibraryLoader : public testing::Test {
protected:
    // A copy of its own, which nobody else has loaded.
    std::string Copy(const std::string& name) const {
        const std::string path = m_folder / name;
        std::filesystem::copy_file(scripted::DriverPath(), path);
        return path;
    }

    scripted::TemporaryFolder m_folder;
    CLibraryLoader m_loader;
};

TEST_F(LibraryLoader, HoldsNothingAtFirst) {
    EXPECT_FALSE(m_loader.IsLoaded());
}

TEST_F(LibraryLoader, LoadsALibrary) {
    EXPECT_TRUE(m_loader.Load(scripted::DriverPath()));
    EXPECT_TRUE(m_loader.IsLoaded());
    EXPECT_NE(m_loader.GetLibrary().FindSymbol("clpProbeDevice"), nullptr);
}

TEST_F(LibraryLoader, ReplacesVariables) {
    const scripted::ScopedVariable variable("VANTO_TEST_FOLDER", scripted::DriverLocation());
    EXPECT_TRUE(m_loader.Load("$(VANTO_TEST_FOLDER)/" + scripted::SystemFolder() + "/" + scripted::DriverFileName()));
}

TEST_F(LibraryLoader, TakesEitherSeparator) {
    std::string path = scripted::DriverPath();
    for (char& character : path)
        character = character == os::kPathSeparator ? os::kForeignSeparator : character;
    EXPECT_TRUE(m_loader.Load(path));
    EXPECT_EQ(m_loader.GetLibrary().Path(), os::ToSystemSeparators(scripted::DriverPath()));
}

TEST_F(LibraryLoader, ReplacesTheLibraryItHolds) {
    const std::string first = Copy(scripted::LibraryName("first"));
    const std::string second = Copy(scripted::LibraryName("second"));
    ASSERT_TRUE(m_loader.Load(first));
    EXPECT_TRUE(m_loader.Load(second));
    EXPECT_EQ(m_loader.GetLibrary().Path(), second);
}

TEST_F(LibraryLoader, UnloadsTheLibraryThatItReplaces) {
    ASSERT_TRUE(m_loader.Load(Copy(scripted::LibraryName("first"))));
    const void* const code = m_loader.GetLibrary().FindSymbol("clpProbeDevice");
    ASSERT_NE(os::PathOfCode(code), "");
    EXPECT_TRUE(m_loader.Load(Copy(scripted::LibraryName("second"))));
    EXPECT_EQ(os::PathOfCode(code), "");
}

TEST_F(LibraryLoader, TakesBlanksAsTheyAre) {
    const scripted::ScopedVariable variable("VANTO_TEST_NAME", "with a blank");
    Copy(scripted::LibraryName("with a blank"));
    EXPECT_TRUE(m_loader.Load(m_folder / scripted::LibraryName("$(VANTO_TEST_NAME)")));
}

TEST_F(LibraryLoader, KeepsTheLibraryItHoldsWhenAnotherFails) {
    const std::string first = Copy(scripted::LibraryName("first"));
    m_folder.Write("text", "no library");
    ASSERT_TRUE(m_loader.Load(first));
    for (const std::string& path :
         {m_folder / "missing", m_folder / "text", m_folder.Path(), std::string(), std::string(300, 'x')}) {
        EXPECT_FALSE(m_loader.Load(path)) << path;
        EXPECT_EQ(m_loader.GetLibrary().Path(), first);
    }
}

// A path to a copy of the driver that has a number of characters.
std::string PathOfLength(const scripted::TemporaryFolder& folder, std::size_t length) {
    const std::string suffix = scripted::LibraryName("");
    std::string path = folder.Path();
    while (path.size() + 1 + suffix.size() < length)
        path +=
            os::kPathSeparator + std::string(std::min<std::size_t>(100, length - suffix.size() - path.size() - 1), 'x');
    path += suffix;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::filesystem::copy_file(scripted::DriverPath(), path);
    return path;
}

TEST_F(LibraryLoader, TakesPathsOf258Characters) {
    EXPECT_TRUE(m_loader.Load(PathOfLength(m_folder, 258)));
}

TEST_F(LibraryLoader, RefusesPathsOf259CharactersAndMore) {
    EXPECT_FALSE(m_loader.Load(PathOfLength(m_folder, 259)));
    // Further separators lengthen the path to a library that is there.
    const std::string path = PathOfLength(m_folder, 250);
    for (const std::size_t length : {260, 261}) {
        std::string longer = path;
        longer.insert(longer.rfind(os::kPathSeparator), length - path.size(), os::kPathSeparator);
        EXPECT_FALSE(m_loader.Load(longer)) << longer;
    }
    EXPECT_TRUE(m_loader.Load(path));
}

TEST_F(LibraryLoader, CountsThePathWithItsVariablesReplaced) {
    const scripted::ScopedVariable variable("VANTO_TEST_FOLDER", m_folder.Path());
    const std::string path = PathOfLength(m_folder, 259);
    EXPECT_FALSE(m_loader.Load("$(VANTO_TEST_FOLDER)" + path.substr(m_folder.Path().size())));
}

}  // namespace
}  // namespace Vanto
