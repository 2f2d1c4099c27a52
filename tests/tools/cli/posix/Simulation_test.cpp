/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the option --simulate, and of a port that another program holds
 */
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "../../../support/WaitUntil.h"
#include "../CamerasFixture.h"
#include "../SilentLine.h"

namespace {

using nlohmann::json;
using test_support::WaitUntil;
using testing::HasSubstr;
using tools_test::BlockedRun;
using tools_test::Cameras;
using tools_test::Reasons;
using tools_test::RunResult;
using tools_test::RunVantoCl;

class Simulation : public Cameras {};

TEST_F(Simulation, ListShowsTheSimulatedOnes) {
    const RunResult run = RunVantoCl({"--simulate", "list"});
    EXPECT_THAT(RunVantoCl({"list", "--simulate=1"}).out, HasSubstr("1 camera found"));
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("0  Marlow H2048 (SIM00001)  COM_Port#cam0       9600  ready\n"));
    EXPECT_THAT(run.out, HasSubstr("2 cameras found in "));
}

TEST_F(Simulation, SimulationLeavesNothingBehind) {
    const RunResult run = RunVantoCl({"--simulate", "list"}, Own());
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_TRUE(std::filesystem::is_empty(Folder()));
    EXPECT_TRUE(tools_test::SimulatorsIn(Folder()).empty());
}

TEST_F(Simulation, CtrlCEndsTheSimulationToo) {
    BlockedRun run({"--simulate", "xml", "0"}, Own());
    ASSERT_TRUE(WaitUntil([&] { return run.IsBlocked(); }));
    EXPECT_FALSE(tools_test::SimulatorsIn(Folder()).empty());
    run.Interrupt();
    constexpr int kInterrupt = 2;
    EXPECT_EQ(run.Wait().signal, kInterrupt);
    EXPECT_TRUE(std::filesystem::is_empty(Folder()));
    EXPECT_TRUE(tools_test::SimulatorsIn(Folder()).empty());
}

TEST_F(Simulation, SimulatorEndsWhenVantoClIsKilled) {
    BlockedRun run({"--simulate", "xml", "0"}, Own());
    ASSERT_TRUE(WaitUntil([&] { return run.IsBlocked(); }));
    run.Kill();
    run.Wait();
    EXPECT_TRUE(WaitUntil([&] { return tools_test::SimulatorsIn(Folder()).empty(); }));
}

TEST_F(Simulation, DoctorFindsASimulationHealthy) {
    const RunResult run = RunVantoCl({"--simulate", "doctor", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    const json report = json::parse(run.out);
    EXPECT_EQ(report.at("Healthy"), true) << run.out;
    EXPECT_THAT(report.at("Version").get<std::string>(), testing::Not(testing::IsEmpty()));
    EXPECT_THAT(report.at("System").get<std::string>(), HasSubstr(" "));
    for (const char* section :
         {"EnvironmentVariables", "Folders", "TransportLayers", "CameraLinkSerialLibraries", "CLProtocolDrivers",
          "SerialPorts", "PortConfigurationFile", "Cameras", "OpeningTheCameras", "LastWarningsAndErrors"})
        EXPECT_TRUE(report.at("Sections").contains(section)) << section;
}

TEST_F(Simulation, GrabsWithoutAnythingElse) {
    const RunResult run =
        RunVantoCl({"--simulate=1", "grab", "SIM00001", "--set", "Width=64", "-o", Folder().string()});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("1 delivered, 0 dropped, 0 cut, 0 failed"));
    EXPECT_TRUE(std::filesystem::exists(Folder() / "frame_000001.png"));
}

class PortInUse : public Cameras {};

TEST_F(PortInUse, IsListedWithItsUserThoughItsCameraIsUnknown) {
    const tools_test::SilentLine line(Folder() / "tty0");
    const int held = ::open((Folder() / "tty0").c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_EQ(::flock(held, LOCK_EX | LOCK_NB), 0);
    Configure(Reasons::kNoCamera);
    const RunResult run = RunVantoCl({"list"}, Own());
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out,
                testing::ContainsRegex("-  unknown  COM_Port#tty0             in use by .*vanto_cl_test.* .[0-9]+.\n"));
    EXPECT_THAT(run.out, HasSubstr("0 cameras found in "));
    const RunResult get = RunVantoCl({"get", "COM_Port#tty0", "Width"}, Own());
    EXPECT_EQ(get.exitCode, 1);
    EXPECT_THAT(get.err, HasSubstr("Close that program, or wait until it ends."));
    ::close(held);
}

}  // namespace
