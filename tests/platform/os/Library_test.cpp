/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of loading shared libraries
 */

#include "os/Library.h"

#include <gtest/gtest.h>

#include <utility>

#include "os/File.h"
#include "os/Path.h"

namespace {

std::string ReasonFor(const std::string& path) {
    try {
        const os::Library library(path);
    } catch (const os::LibraryError& error) {
        return error.what();
    }
    return "loaded";
}

TEST(Library, CallsAFunction) {
    const os::Library library(OS_TEST_LIBRARY);
    EXPECT_TRUE(library.IsLoaded());
    EXPECT_EQ(library.Path(), OS_TEST_LIBRARY);
    EXPECT_EQ(library.Get<int()>("Answer")(), 42);
}

TEST(Library, NamesPathOfWhatCannotBeLoaded) {
    EXPECT_NE(ReasonFor("/none/such.so").find("/none/such.so"), std::string::npos);
    EXPECT_NE(ReasonFor(""), "loaded");
}

TEST(Library, RefusesAFolder) {
    EXPECT_NE(ReasonFor(os::FolderOf(OS_TEST_LIBRARY)), "loaded");
}

TEST(Library, NamesMissingFunctionAndLibrary) {
    const os::Library library(OS_TEST_LIBRARY);
    EXPECT_EQ(library.FindSymbol("Question"), nullptr);
    try {
        library.Symbol("Question");
        FAIL();
    } catch (const os::LibraryError& error) {
        EXPECT_STREQ(error.what(), "Library '" OS_TEST_LIBRARY "' has no function 'Question'");
    }
}

TEST(Library, FindsNothingWhenNotLoaded) {
    const os::Library library;
    EXPECT_FALSE(library.IsLoaded());
    EXPECT_EQ(library.FindSymbol("malloc"), nullptr);
}

TEST(Library, MovesOwnership) {
    os::Library first(OS_TEST_LIBRARY);
    os::Library second(std::move(first));
    EXPECT_FALSE(first.IsLoaded());  // NOLINT(bugprone-use-after-move): what it leaves is defined
    first = std::move(second);
    EXPECT_EQ(first.Get<int()>("Answer")(), 42);
    EXPECT_FALSE(second.IsLoaded());  // NOLINT(bugprone-use-after-move)
}

TEST(Library, ForgetsPathOnUnload) {
    os::Library library(OS_TEST_LIBRARY);
    library.Unload();
    library.Unload();
    EXPECT_FALSE(library.IsLoaded());
    EXPECT_EQ(library.Path(), "");
}

TEST(Library, StaysLoadedWhenKept) {
    os::Library library(OS_TEST_LIBRARY);
    auto* const answer = library.Get<int()>("Answer");
    library.Keep();
    EXPECT_FALSE(library.IsLoaded());
    EXPECT_EQ(answer(), 42);
}

TEST(Library, TellsWhereCodeLies) {
    const os::Library library(OS_TEST_LIBRARY);
    EXPECT_EQ(os::FileNameOf(os::PathOfCode(library.Symbol("Answer"))), os::FileNameOf(OS_TEST_LIBRARY));
    const std::string own = os::PathOfCode(reinterpret_cast<const void*>(&ReasonFor));
    EXPECT_EQ(os::FileNameOf(own).find("os_test"), 0u);
    EXPECT_EQ(os::GetFileStatus(own).state, os::FileState::kFound);
}

TEST(Library, KnowsNoPathForWhatIsNoCode) {
    const int local = 0;
    EXPECT_EQ(os::PathOfCode(&local), "");
}

}  // namespace
