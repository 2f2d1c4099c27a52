/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of who uses a port
 */
#include "cameras/PortUser.h"

#include <gtest/gtest.h>

namespace {

using namespace tools;

class UserOfPort : public testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(UserOfPort, IsReadFromWhatTheLibrarySays) {
    PortNews news;
    news.reason = GetParam().first;
    EXPECT_EQ(UserOf(news).Text(), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(
    All, UserOfPort,
    testing::Values(std::pair("The serial port 'a' (/dev/a) is in use by process 4711 (minicom). (-10003)",
                              "minicom (4711)"),
                    std::pair("is in use by process 12 (a (b)). (-10003)", "a (b) (12)"),
                    std::pair("is in use by process 4711. (-10003)", "process 4711"),
                    std::pair("is in use by another process. (-10003)", "another program"),
                    std::pair("in use by process x (y).", "another program"), std::pair("Busy!", "another program"),
                    std::pair("", "another program")));

}  // namespace
