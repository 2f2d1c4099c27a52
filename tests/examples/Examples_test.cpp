/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the examples: each is run as a program, and says what it should
 */

#include <algorithm>
#include <filesystem>
#include <utility>

#include "simulator/CameraRegisters.h"
#include "tests/integration/Machine.h"
#include "tests/integration/Program.h"

namespace {

using integration::Camera;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kGrabber =
    "<Manufacturer>Marlow</Manufacturer><DeviceSpecificString>SaperaSimulated;</DeviceSpecificString>";

// With its drive, where there are drives: a test may change to a folder on another one.
const std::filesystem::path kExamples = std::filesystem::absolute(VANTO_EXAMPLES).make_preferred();

class Example : public integration::Program {
public:
    explicit Example(const std::string& command) : Program((kExamples / ("example-" + command)).string()) {}
};

class Examples : public integration::Machine {
protected:
    Examples() { Add("cam0", Camera("21")); }

    void ExpectClosed(const std::string& name = "cam0") const { EXPECT_EQ(simulator.BitsPerSecond(name), 9600u); }
};

TEST_F(Examples, SaveFiveImagesWithTheFirstProgram) {
    Add("cam1", Camera("22"), kGrabber);
    simulator.Unplug("cam0");
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(m_folder.Path());
    Example run("five_images");
    EXPECT_EQ(run.ReadAll(), "");
    EXPECT_EQ(run.ExitCode(), 0);
    std::filesystem::current_path(before);
    const auto folder = std::filesystem::path(m_folder.Path());
    EXPECT_TRUE(std::filesystem::exists(folder / "image1.png"));
    const auto isImage = [](const auto& entry) { return entry.path().extension() == ".png"; };
    EXPECT_EQ(std::count_if(std::filesystem::directory_iterator(folder), {}, isImage), 5);
    ExpectClosed("cam1");
}

TEST_F(Examples, ListsCameras) {
    Add("cam1", Camera("22", "H4096"));
    Example run("list");
    EXPECT_THAT(run.ReadLine(), StartsWith("Marlow H2048 (21)  COM_Port#cam0|"));
    EXPECT_THAT(run.ReadLine(), StartsWith("Marlow H4096 (22)  COM_Port#cam1|"));
    EXPECT_EQ(run.ReadAll(), "2 cameras\n");
    EXPECT_EQ(run.ExitCode(), 0);
}

TEST_F(Examples, WalkAndGrabThroughTheGenTLProducer) {
    Add("cam1", Camera("22"), kGrabber);
    Example run("gentl_grab " VANTO_GENTL_PRODUCER " 3");
    for (const auto& [port, serial] : {std::pair("cam0", "21"), {"cam1", "22"}}) {
        const std::string camera = std::string("Marlow-H2048-") + serial;
        EXPECT_EQ(run.ReadLine(), std::string("interface COM_Port#") + port + "\n");
        EXPECT_EQ(run.ReadLine(), "  device " + camera + ": Marlow H2048 (" + camera + ")\n");
        EXPECT_THAT(run.ReadLine(), StartsWith("    description local:Marlow_H2048_"));
        EXPECT_THAT(run.ReadLine(), EndsWith(" bytes of XML\n"));
    }
    for (int image = 0; image < 3; ++image) {
        const std::string line = run.ReadLine();
        EXPECT_THAT(line, StartsWith("    image "));
        EXPECT_THAT(line, EndsWith(": 2048 x 2048, 4194304 bytes\n"));
    }
    EXPECT_EQ(run.ReadAll(), "");
    EXPECT_EQ(run.ExitCode(), 0);
    ExpectClosed("cam0");
    ExpectClosed("cam1");
}

TEST_F(Examples, SetsTheExposureTime) {
    Add("cam1", Camera("22"));
    Example run("set_exposure 2500 22");
    EXPECT_EQ(run.ReadLine(), "Marlow H2048 (22)\n");
    EXPECT_THAT(run.ReadLine(), StartsWith("from "));
    EXPECT_EQ(run.ReadAll(), "to   2500 us\n");
    EXPECT_EQ(run.ExitCode(), 0);
    const auto& exposure = MarlowSim::registers::kExposureTime;
    EXPECT_EQ(simulator.ReadRegister("cam1", exposure.address, exposure.length),
              (std::vector<std::uint8_t>{0, 0, 0x61, 0xA8}));  // 25000 tenths
    ExpectClosed("cam1");
}

TEST_F(Examples, RefusesAnExposureTimeOutOfRange) {
    Example run("set_exposure 1e12");
    EXPECT_THAT(run.ReadAll(), HasSubstr("must not be larger than 1e+06"));
    EXPECT_EQ(run.ExitCode(), 1);
    ExpectClosed();
}

TEST_F(Examples, TellsOfRemoval) {
    Example run("removal_callback");
    EXPECT_EQ(run.ReadLine(), "pull the cable\n");
    EXPECT_THAT(run.ReadLine(), EndsWith(" C\n"));
    simulator.Unplug("cam0");
    EXPECT_THAT(run.ReadAll(), HasSubstr("Marlow H2048 (21) is gone\n"));
    EXPECT_EQ(run.ExitCode(), 0);
}

TEST_F(Examples, ClosesThePortMeanwhile) {
    Example run("auto_close");
    EXPECT_EQ(run.ReadLine(), "Width is 2048\n");
    EXPECT_EQ(run.ReadAll(), "Width is 2048 after the port was opened again\n");
    EXPECT_EQ(run.ExitCode(), 0);
    ExpectClosed();
}

TEST_F(Examples, TakesImages) {
    Add("cam1", Camera("22"), kGrabber);
    simulator.Unplug("cam0");
    Example run("grab 3");
    for (int image = 0; image < 3; ++image)
        EXPECT_THAT(run.ReadLine(), testing::MatchesRegex("image .*: 2048 x 2048, 4194304 bytes\n"));
    EXPECT_EQ(run.ReadAll(), "");
    EXPECT_EQ(run.ExitCode(), 0);
    ExpectClosed("cam1");
}

TEST_F(Examples, TakeNoImagesWithoutAFrameGrabber) {
    Example run("grab");
    EXPECT_EQ(run.ReadAll(), "the camera's port names no frame grabber\n");
    EXPECT_EQ(run.ExitCode(), 1);
}

TEST_F(Examples, SayWhenThereIsNoCamera) {
    simulator.Unplug("cam0");
    for (const char* command : {"set_exposure 2500", "removal_callback", "auto_close", "grab"}) {
        Example run(command);
        EXPECT_THAT(run.ReadAll(), HasSubstr("Cannot find device")) << command;
        EXPECT_EQ(run.ExitCode(), 1) << command;
    }
}

}  // namespace
