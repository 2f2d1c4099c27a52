/* SPDX-License-Identifier: Apache-2.0 */
#include "vanto/VantoFolders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Base/GCException.h"
#include "TestSupport.h"

namespace {

using namespace Vanto;
using testing::HasSubstr;

TEST(VantoFolders, LieBelowVantoRoot) {
    const ScopedVariable root("VANTO_ROOT", Native("/some/root"));
    EXPECT_EQ(getVantoFolderPath(eRootFolder), Native("/some/root"));
    EXPECT_EQ(getVantoFolderPath(eBinaryFolder), Native("/some/root/bin"));
    EXPECT_EQ(getVantoFolderPath(eLibraryFolder), Native("/some/root/" VANTO_DIR_LIBRARIES));
    EXPECT_EQ(getVantoFolderPath(eTransportLayerFolder), Native("/some/root/" VANTO_DIR_LIBRARIES "/vanto/tl"));
    EXPECT_EQ(getVantoFolderPath(ePluginFolder), Native("/some/root/" VANTO_DIR_LIBRARIES "/vanto/plugins"));
    EXPECT_EQ(getVantoFolderPath(eConfigurationFolder), Native("/some/root/etc/vanto"));
    EXPECT_EQ(static_cast<int>(ePluginFolder), 4);
}

TEST(VantoFolders, DropSeparatorsAtTheEndOfVantoRoot) {
    {
        const ScopedVariable root("VANTO_ROOT", Native("/some/root//"));
        EXPECT_EQ(getVantoFolderPath(eBinaryFolder), Native("/some/root/bin"));
    }
    const ScopedVariable root("VANTO_ROOT", Native("/"));
    EXPECT_EQ(getVantoFolderPath(eRootFolder), Native("/"));
    EXPECT_EQ(getVantoFolderPath(eBinaryFolder), Native("/bin"));
}

TEST(VantoFolders, OfTheSystemAreConfiguredInEtc) {
    const ScopedVariable root("VANTO_ROOT", Native("/usr"));
    EXPECT_EQ(getVantoFolderPath(eConfigurationFolder),
              os::kPathSeparator == '/' ? "/etc/vanto" : Native("/usr/etc/vanto"));
    EXPECT_EQ(getVantoFolderPath(eBinaryFolder), Native("/usr/bin"));
}

TEST(VantoFolders, AreFoundByPlaceWithoutVantoRoot) {
    const ScopedVariable root("VANTO_ROOT", "");
    EXPECT_EQ(std::filesystem::weakly_canonical(getVantoFolderPath(eRootFolder).str()),
              std::filesystem::weakly_canonical(BUILD_ROOT));
}

TEST(VantoFolders, RefuseAnUnknownType) {
    EXPECT_THROW(getVantoFolderPath(static_cast<eFolderType>(7)), GenICam::InvalidArgumentException);
}

TEST(VantoFolders, KnowTheSeparator) {
    EXPECT_EQ(getVantoPathSeperator(), Native("/"));
}

std::string FailureOf(const std::string& path) {
    try {
        textFileToString(path);
    } catch (const GenICam::RuntimeException& error) {
        return error.GetDescription();
    }
    return "no exception";
}

TEST(TextFileToString, ReturnsTheWholeText) {
    const TemporaryFolder folder;
    std::string text(100000, 'x');
    text += std::string("\0\r\n\xEF", 4);
    EXPECT_EQ(textFileToString(folder.Write("a", text)).str(), text);
    EXPECT_EQ(textFileToString(folder.Write("empty", "")), "");
}

TEST(TextFileToString, NamesFileAndReason) {
    const TemporaryFolder folder;
    EXPECT_EQ(FailureOf(folder / "none"),
              "The file '" + (folder / "none") + "' can't be read: No such file or directory");
    EXPECT_EQ(FailureOf(folder.Path()), "The file '" + folder.Path() + "' can't be read: it is a folder");
}

#ifndef _WIN32
TEST(TextFileToString, RefusesADevice) {
    EXPECT_EQ(FailureOf("/dev/zero"), "The file '/dev/zero' can't be read: it is no regular file");
}
#endif

TEST(TextFileToString, RefusesAFileBeyondTheBound) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("large", "");
    std::filesystem::resize_file(path, 256 * 1024 * 1024 + 1);
    EXPECT_THAT(FailureOf(path), HasSubstr("it is larger than 256 MiB"));
}

}  // namespace
