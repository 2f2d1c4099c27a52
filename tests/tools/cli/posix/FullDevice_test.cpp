/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Test of an output that is full
 */
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

TEST(FullDevice, AnOutputThatCannotBeWrittenIsAFailure) {
    const std::string command = std::string(VANTO_CL_PROGRAM) + " --version > /dev/full 2> /dev/null";
    EXPECT_NE(std::system(command.c_str()), 0);
}

}  // namespace
