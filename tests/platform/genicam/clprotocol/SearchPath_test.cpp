/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of lists of folders
 */

#include "SearchPath.h"

#include <gtest/gtest.h>

#include "os/Path.h"
#include "scripted/Scripted.h"

namespace {

using CLProtocol::FoldersOfList;
using Texts = std::vector<std::string>;

std::string List(const Texts& folders) {
    std::string list;
    for (const std::string& folder : folders)
        list += (list.empty() ? "" : std::string(1, os::kPathListSeparator)) + folder;
    return list;
}

TEST(SearchPath, ListsEachFolderOnceInOrder) {
    EXPECT_EQ(FoldersOfList(List({"/b", "/a", "", "/b/", "$(X)/c"})), (Texts{"/b", "/a", "$(X)/c"}));
    EXPECT_EQ(FoldersOfList(""), Texts{});
}

TEST(SearchPath, KeepsTheRoot) {
    EXPECT_EQ(FoldersOfList("/"), Texts{"/"});
    EXPECT_EQ(FoldersOfList("///"), Texts{"/"});
    EXPECT_EQ(FoldersOfList("/a//"), Texts{"/a"});
}

TEST(SearchPath, OfAVariableIsEmptyWithoutIt) {
    const scripted::ScopedVariable variable("SEARCHPATH_TEST", "/x");
    EXPECT_EQ(CLProtocol::FoldersOfVariable("SEARCHPATH_TEST"), Texts{"/x"});
    const scripted::ScopedVariable none("SEARCHPATH_TEST");
    EXPECT_EQ(CLProtocol::FoldersOfVariable("SEARCHPATH_TEST"), Texts{});
}

}  // namespace
