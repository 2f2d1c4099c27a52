/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Other processes with the producer: they close what they like, and just end
 */
#include <fstream>

#include "tests/gentl/Programs.h"

namespace gentl_test {

namespace {

TEST_F(Programs, ThatCloseTheLibraryWithEverythingOpenHaveNoThreadLeft) {
    ExpectNoThread(Consume("local", "leave"));
}

/// Programs that leave the library as it is leave what OpenSSL keeps for a thread: no leak of ours.
class CarelessPrograms : public Programs {
    const scripted::ScopedVariable m_noLeaks{"ASAN_OPTIONS", "intercept_tls_get_addr=0:detect_leaks=0"};
};

TEST_F(CarelessPrograms, ThatNeverCloseTheLibraryCanEnd) {
    const Ended ended = Consume("local", "exit");
    EXPECT_EQ(ended.status, 0) << ended.output;
    EXPECT_EQ(SerialNumbers(), std::vector<std::string>{"21"}) << "the camera is free again";
}

TEST_F(CarelessPrograms, ThatUnloadTheFileWithoutClosingTheLibraryCanEnd) {
    const Ended ended = Consume("local", "unload");
    EXPECT_EQ(ended.status, 0) << ended.output;
}

TEST_F(Programs, FindMessagesInTheLogsOwnCategory) {
    const std::string log = m_folder / "log";
    const scripted::ScopedVariable rules("VANTO_LOG", "Vanto.GenTL:debug");
    const scripted::ScopedVariable file("VANTO_LOG_FILE", log);
    EXPECT_NE(Consume("local", "close", "nowhere", "nobody").status, 0);
    std::ifstream stream(log);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_NE(text.find("[Vanto.GenTL]"), std::string::npos) << text;
    EXPECT_NE(text.find("GC_ERR_INVALID_ID: There is no interface 'nowhere'"), std::string::npos) << text;
}

}  // namespace

}  // namespace gentl_test
