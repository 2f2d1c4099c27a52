/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of grab against simulated cameras with the simulated frame grabber
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <thread>

#include "../../support/WaitUntil.h"
#include "../Pattern.h"
#include "PlayedCameras.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using tools_test::BlockedRun;
using tools_test::ContainsPattern;
using tools_test::PlayedCameras;
using tools_test::RunResult;
namespace fs = std::filesystem;

/// A camera whose images come from a frame grabber that the string describes, set to small images.
class Grabbing {
public:
    explicit Grabbing(const std::string& deviceSpecific = "SaperaSimulated;FrameRate=0", const char* model = "H2048")
        : cameras({std::string("cam0,serial=S0,model=") + model}, deviceSpecific) {}

    RunResult Run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"grab", "0", "--set", "Width=64", "--set", "Height=32"});
        return cameras.Run(arguments);
    }
    fs::path Folder() const { return cameras.Folder() / "images"; }
    std::vector<std::string> Files() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(Folder()))
            names.push_back(entry.path().filename().string());
        std::ranges::sort(names);
        return names;
    }
    void ExpectFailure(const std::vector<std::string>& arguments, int exitCode, const char* text) const {
        const RunResult run = Run(arguments);
        EXPECT_EQ(run.exitCode, exitCode) << run.out;
        EXPECT_THAT(run.err, HasSubstr(text));
    }

    const PlayedCameras cameras;
};

std::string FirstBytesOf(const fs::path& path, std::size_t count) {
    std::ifstream file(path, std::ios::binary);
    std::string bytes(count, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(count));
    return bytes;
}

TEST(Grab, SavesFramesAsPng) {
    const Grabbing grabbing;
    const RunResult run = grabbing.Run({"-n", "3", "-o", grabbing.Folder().string()});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("3 delivered, "));
    EXPECT_THAT(run.out, HasSubstr("0 cut, 0 failed"));
    EXPECT_THAT(run.out, ContainsPattern("failed in [0-9.]+ m?s: [0-9.]+ frames/s, [0-9.]+ MB/s\n"));
    EXPECT_THAT(run.out, ContainsPattern("frame_000001.png to frame_000003.png in [0-9.]+ m?s: [0-9.]+ frames/s"));
    EXPECT_THAT(grabbing.Files(), testing::ElementsAre("frame_000001.png", "frame_000002.png", "frame_000003.png"));
    const std::string image = FirstBytesOf(grabbing.Folder() / "frame_000002.png", 2000);
    EXPECT_THAT(image, testing::StartsWith("\x89PNG"));
    for (const char* note : {"Marlow H2048 (S0)", "5000 us"})
        EXPECT_THAT(image, HasSubstr(note));
}

TEST(Grab, SavesEachFormat) {
    const Grabbing grabbing;
    for (const auto& [format, file, start] :
         {std::tuple{"pgm", "frame_000001.pgm", "P5"}, std::tuple{"tiff", "frame_000001.tiff", "II"}}) {
        ASSERT_EQ(grabbing.Run({"-o", grabbing.Folder().string(), "--overwrite", "--format", format}).exitCode, 0);
        EXPECT_EQ(FirstBytesOf(grabbing.Folder() / file, 2), start);
    }
    ASSERT_EQ(grabbing.Run({"-o", grabbing.Folder().string(), "--overwrite", "--format", "raw"}).exitCode, 0);
    EXPECT_THAT(grabbing.Files(), testing::ElementsAre("frame_000001.json", "frame_000001.raw"));
    EXPECT_EQ(fs::file_size(grabbing.Folder() / "frame_000001.raw"), 64U * 32U);
}

TEST(Grab, SavesColours) {
    const Grabbing grabbing("SaperaSimulated;FrameRate=0", "H4096");
    const RunResult run =
        grabbing.Run({"--set", "PixelFormat=RGB8", "-o", grabbing.Folder().string(), "--format", "pgm"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(FirstBytesOf(grabbing.Folder() / "frame_000001.ppm", 2), "P6");
}

TEST(Grab, NeverMixesTwoGrabs) {
    const Grabbing grabbing;
    ASSERT_EQ(grabbing.Run({"-n", "3", "-o", grabbing.Folder().string(), "--format", "pgm"}).exitCode, 0);
    grabbing.ExpectFailure({"-o", grabbing.Folder().string()}, 1, "has frames of an earlier grab");
    ASSERT_EQ(grabbing.Run({"-o", grabbing.Folder().string(), "--overwrite"}).exitCode, 0);
    EXPECT_THAT(grabbing.Files(), testing::ElementsAre("frame_000001.png"));
}

TEST(Grab, WritesFramesToStandardOutput) {
    const Grabbing grabbing;
    const RunResult raw = grabbing.Run({"-n", "3", "-o", "-", "--format", "raw"});
    EXPECT_EQ(raw.exitCode, 0) << raw.err;
    EXPECT_EQ(raw.out.size(), 3U * 64 * 32);
    EXPECT_THAT(raw.err, HasSubstr("3 delivered, "));
    const std::string image = "P5\n64 32\n255\n";
    const RunResult pnm = grabbing.Run({"-n", "2", "-o", "-"});
    EXPECT_EQ(pnm.out.size(), 2 * (image.size() + 64 * 32));
    EXPECT_THAT(pnm.out, testing::StartsWith(image));
}

TEST(Grab, WritesFilmsToStandardOutput) {
    const Grabbing grabbing("SaperaSimulated;FrameRate=0", "H4096");
    const std::string grey = grabbing.Run({"-n", "2", "-o", "-", "--format", "y4m"}).out;
    EXPECT_THAT(grey, testing::StartsWith("YUV4MPEG2 W64 H32 F"));
    const std::size_t header = grey.find('\n') + 1;
    EXPECT_EQ(grey.size(), header + 2 * (6 + 64 * 32));
    const RunResult colour = grabbing.Run({"--set", "PixelFormat=RGB8", "-o", "-", "--format", "y4m"});
    EXPECT_THAT(colour.out, HasSubstr(" C444\nFRAME\n"));
    EXPECT_EQ(colour.out.size(), colour.out.find('\n') + 1 + 6 + 3 * 64 * 32);
    Grabbing().ExpectFailure({"--set", "PixelFormat=Mono12", "-o", "-", "--format", "y4m"}, 1, "eight bits");
}

TEST(Grab, SavesEachNthAndEndsInTime) {
    const Grabbing grabbing("SaperaSimulated;FrameRate=500");
    const RunResult run =
        grabbing.Run({"-n", "7", "--every", "3", "-o", grabbing.Folder().string(), "--format", "pgm"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(grabbing.Files().size(), 3U);
    const RunResult timed = grabbing.Run({"--duration", "0.1", "--format", "none", "--json"});
    EXPECT_EQ(timed.exitCode, 0) << timed.err;
    EXPECT_GE(json::parse(timed.out).at("Delivered"), 1);
    EXPECT_GE(json::parse(timed.out).at("Seconds"), 0.1);
}

TEST(Grab, LooksAtWhatComes) {
    const Grabbing grabbing;
    const RunResult run = grabbing.Run({"--stats", "--preview", "--format", "none"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.err, HasSubstr("frame 1: "));
    EXPECT_THAT(run.err, HasSubstr("% saturated"));
    EXPECT_EQ(std::ranges::count(run.out, '\n'), 16 + 1);
}

TEST(Grab, SavesNothingWithoutAFormat) {
    const Grabbing grabbing;
    const RunResult run = grabbing.Run({"-n", "2", "-o", grabbing.Folder().string(), "--format", "none"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_FALSE(fs::exists(grabbing.Folder()));
}

TEST(Grab, CountsWhatTheGrabberDrops) {
    const Grabbing grabbing("SaperaSimulated;FrameRate=200;DropEvery=5");
    const RunResult run = grabbing.Run({"-n", "50", "--buffers", "64", "--format", "none", "--json"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const json summary = json::parse(run.out);
    EXPECT_EQ(summary.at("Delivered"), 50);
    EXPECT_EQ(summary.at("Dropped"), 12);  // of 62 frames: those numbered 4, 9, ... 59
    EXPECT_EQ(summary.at("Cut"), 0);
    EXPECT_EQ(summary.at("Failed"), 0);
    EXPECT_EQ(summary.at("Bytes"), 50 * 64 * 32);
}

TEST(Grab, EndsWhenNoFrameComes) {
    // Only the first frame surely has a buffer: it comes while the others are being queued.
    const Grabbing grabbing("SaperaSimulated;FrameRate=0;Frames=1");
    const RunResult run = grabbing.Run({"-n", "5", "-o", grabbing.Folder().string(), "--timeout", "0.9"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("no frame came within 900 ms"));
    EXPECT_THAT(run.out, HasSubstr("1 delivered"));
    EXPECT_EQ(grabbing.Files().size(), 1U);
}

TEST(Grab, SaysWhatThePluginSays) {
    Grabbing("SaperaSimulated;FailInit=No board in the machine").ExpectFailure({}, 1, "No board in the machine");
    Grabbing("SaperaSimulated;FailStart=No signal").ExpectFailure({"--format", "none"}, 1, "No signal");
    Grabbing("SaperaSimulated;FailStart=").ExpectFailure({"--format", "none"}, 1, "does not say why");
    Grabbing("Other").ExpectFailure({}, 1, "has no frame grabber");
    Grabbing("").ExpectFailure({}, 1, "has no frame grabber");
}

TEST(Grab, RefusesWhatItCanNotDo) {
    const Grabbing grabbing;
    grabbing.ExpectFailure({"-n", "-1"}, 2, "--count");
    grabbing.ExpectFailure({"--every", "0"}, 2, "--every");
    grabbing.ExpectFailure({"--duration", "long"}, 2, "--duration");
    grabbing.ExpectFailure({"-o", "-", "--format", "png"}, 2, "--format raw, pnm or y4m");
    grabbing.ExpectFailure({"--format", "y4m"}, 2, "y4m is a stream");
    grabbing.ExpectFailure({"-n", "many"}, 2, "--count");
    grabbing.ExpectFailure({"--buffers", "0"}, 2, "--buffers");
    grabbing.ExpectFailure({"--timeout", "soon"}, 2, "--timeout");
    grabbing.ExpectFailure({"--format", "bmp"}, 2, "bmp");
    grabbing.ExpectFailure({"--set", "Width"}, 2, "'Width' is no NAME=VALUE");
    grabbing.ExpectFailure({"--set", "Widht=64"}, 1, "did you mean 'Width'?");
    EXPECT_EQ(grabbing.cameras.Run({"grab", "nobody"}).exitCode, 3);
}

TEST(Grab, RefusesAFolderThatIsAFile) {
    const Grabbing grabbing;
    std::ofstream(grabbing.Folder()) << "not a folder";
    grabbing.ExpectFailure({"-o", grabbing.Folder().string()}, 1, "can't be made");
}

TEST(Grab, CtrlCEndsItWithWhatWasTakenSaved) {
    const Grabbing grabbing("SaperaSimulated;FrameRate=200");
    BlockedRun run({"grab", "0", "--set", "Width=64", "--set", "Height=32", "-n", "0", "--format", "raw", "-o",
                    grabbing.Folder().string()},
                   grabbing.cameras.Variables());
    ASSERT_TRUE(test_support::WaitUntil([&] { return fs::exists(grabbing.Folder() / "frame_000003.raw"); }));
    run.Interrupt();
    const RunResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 130);
    for (const std::string& file : grabbing.Files()) {
        if (file.ends_with(".raw")) {
            EXPECT_EQ(fs::file_size(grabbing.Folder() / file), 64U * 32U) << file;
        }
    }
    EXPECT_EQ(grabbing.cameras.Command("baud cam0"), "ok 9600");
    EXPECT_EQ(grabbing.cameras.Run({"get", "0", "TLParamsLocked"}).out, "0\n");
}

}  // namespace
