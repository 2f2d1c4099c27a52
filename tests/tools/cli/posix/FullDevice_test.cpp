/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of an output that is full or closed
 */
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "../PlayedCameras.h"

namespace {

TEST(FullDevice, AnOutputThatCannotBeWrittenIsAFailure) {
    const std::string command = std::string(VANTO_CL_PROGRAM) + " --version > /dev/full 2> /dev/null";
    EXPECT_NE(std::system(command.c_str()), 0);
}

TEST(FullDevice, CountsThoughAMessageFollows) {
    for (const char* output : {" > /dev/full", " >&-"}) {
        const std::string command = std::string(VANTO_CL_PROGRAM) + " config path" + output + " 2> /dev/null";
        EXPECT_NE(std::system(command.c_str()), 0) << output;
    }
}

TEST(ReaderThatLeft, IsNoNews) {
    const tools::TemporaryFolder folder;
    const std::string errors = (folder.Path() / "errors").string();
    const std::string command =
        "'" VANTO_CL_PROGRAM "' --simulate=1 features 0 2> " + errors + " | head -n 1 > /dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(std::filesystem::file_size(errors), 0U);
}

/// The variables of played cameras as a shell takes them.
std::string Assignments(const tools_test::PlayedCameras& cameras) {
    std::string text;
    for (const auto& [name, value] : cameras.Variables())
        text += name + "='" + value + "' ";
    return text;
}

TEST(Pipe, CarriesSettingsFromOneCameraToAnother) {
    const tools_test::PlayedCameras cameras({"cam0,serial=S0", "cam1,serial=S1"});
    ASSERT_EQ(cameras.Run({"set", "S0", "Width=512"}).exitCode, 0);
    const std::string program = Assignments(cameras) + "'" VANTO_CL_PROGRAM "' ";
    const std::string command = program + "save S0 - | " + program + "load S1 - --json > /dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(cameras.Run({"get", "S1", "Width"}).out, "512\n");
}

TEST(Pipe, CarriesADescription) {
    const tools_test::PlayedCameras cameras;
    const std::string program = Assignments(cameras) + "'" VANTO_CL_PROGRAM "' ";
    const std::string file = (cameras.Folder() / "tree.txt").string();
    EXPECT_EQ(std::system((program + "xml 0 | " + program + "describe - > " + file).c_str()), 0);
    std::ifstream tree(file);
    EXPECT_NE(std::string(std::istreambuf_iterator<char>(tree), {}).find("ExposureTime"), std::string::npos);
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
