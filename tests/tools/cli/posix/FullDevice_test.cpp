/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of an output that is full or closed
 */
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "../PlayedCameras.h"

namespace {

TEST(FullDevice, AnOutputThatCannotBeWrittenIsAFailure) {
    const std::string command = std::string(VANTO_CL_PROGRAM) + " --version > /dev/full 2> /dev/null";
    EXPECT_NE(std::system(command.c_str()), 0);
}

// The line to the camera took the place of the output, and the camera got what was printed.
TEST(ClosedOutput, IsAFailureAndNotTheCamera) {
    const tools_test::PlayedCameras cameras;
    std::string command = std::string(VANTO_CL_PROGRAM) + " get 0 Width >&- 2> /dev/null";
    for (const auto& [name, value] : cameras.Variables())
        command.insert(0, name + "='" + value + "' ");
    EXPECT_NE(std::system(command.c_str()), 0);
}

}  // namespace
