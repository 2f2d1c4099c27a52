/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the shelf of loaded libraries
 */

#include "LibraryShelf.h"

#include <gtest/gtest.h>

#include <functional>
#include <future>

#include "CLProtocol/Diagnostics.h"

namespace {

// What stands for a library that does something when it goes.
class Parting {
public:
    explicit Parting(const std::string& path) {
        if (path.empty())
            throw std::runtime_error("no path");
    }
    ~Parting() {
        if (action)
            action();
    }

    static inline std::function<void()> action;
};

class Shelf : public testing::Test {
protected:
    Shelf() { CLProtocol::SetPatience({50, 1000}); }
    ~Shelf() override { CLProtocol::SetPatience({}); }

    std::string Use(const std::string& path) {
        return m_shelf.With(path, [](const auto&) {});
    }

    CLProtocol::LibraryShelf<Parting> m_shelf;
};

TEST_F(Shelf, TellsWhyALibraryIsRefused) {
    EXPECT_EQ(Use("/a"), "");
    EXPECT_EQ(Use(""), "no path");
    EXPECT_EQ(Use(""), "no path");
}

TEST_F(Shelf, LeavesALibraryAloneThatHangsWhenItIsReleased) {
    const auto latch = std::make_shared<std::promise<void>>();
    Parting::action = [opened = latch->get_future().share()] { opened.wait(); };
    ASSERT_EQ(Use("/a"), "");
    m_shelf.Release();
    EXPECT_EQ(Use("/a"), "a function of it does not return");
    EXPECT_EQ(Use("/b"), "");
    latch->set_value();
    while (!Use("/a").empty())
        std::this_thread::yield();
    m_shelf.Release();
    Parting::action = nullptr;
}

TEST_F(Shelf, GivesOutLibrariesWhileAnotherOneIsReleased) {
    CLProtocol::SetPatience({});
    std::string reason = "nobody has asked";
    Parting::action = [&] { reason = std::async(std::launch::async, [&] { return Use("/b"); }).get(); };
    ASSERT_EQ(Use("/a"), "");
    m_shelf.Release();
    Parting::action = nullptr;
    EXPECT_EQ(reason, "");
}

}  // namespace
