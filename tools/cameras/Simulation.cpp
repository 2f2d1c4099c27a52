/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Simulation: cameras that are there as long as a command runs
 */
#include "cameras/Simulation.h"

#include <fmt/format.h>

#include <array>
#include <atomic>

#include "configuration/ConfigurationWriter.h"
#include "error/ExitCode.h"
#include "system/Environment.h"
#include "system/Files.h"

namespace tools {

namespace {

constexpr std::chrono::seconds kStartTimeout{20};
// Every camera has a simulated frame grabber behind its image cable.
constexpr const char* kGrabber = "SaperaSimulated;FrameRate=100";
std::atomic<bool> isRunning{false};
constexpr std::array<const char*, 3> kModels{"H2048", "H4096", "H8192L"};

std::filesystem::path Simulator() {
    const std::filesystem::path program = OwnProgram().parent_path() / "marlow-sim";
    if (!std::filesystem::exists(program))
        throw ToolError(fmt::format("the simulator '{}' is not there", program.string()),
                        "It is installed beside vanto-cl; for Windows there is none.");
    return program;
}

std::string NameOf(int camera) {
    return fmt::format("cam{}", camera);
}

std::vector<std::string> ArgumentsFor(int cameras, const std::filesystem::path& links) {
    std::vector<std::string> arguments{"--until-stdin-closes", "--links", links.string()};
    for (int camera = 0; camera < cameras; ++camera) {
        arguments.emplace_back("--camera");
        arguments.push_back(fmt::format("{},model={},serial=SIM{:05}", NameOf(camera),
                                        kModels[static_cast<std::size_t>(camera) % kModels.size()], camera + 1));
    }
    return arguments;
}

}  // namespace

Simulation::Variable::Variable(const char* name, const std::string& value)
    : m_name(name), m_before(GetEnvironment(name)) {
    SetEnvironment(name, value);
}

Simulation::Variable::~Variable() {
    if (m_before)
        SetEnvironment(m_name, *m_before);
    else
        UnsetEnvironment(m_name);
}

/**
 * \brief Start the simulator and point this process at its cameras
 * \param[in] cameras How many, 1 to kMostCameras
 *
 * Returns when the cameras are there. Whatever way this process ends, the simulator ends with it.
 *
 * \throw ToolError The simulator is missing or does not start
 */
Simulation::Simulation(int cameras)
    : m_simulator(Simulator(), ArgumentsFor(cameras, m_folder.Path())), m_cleanUp([this] {
          m_simulator.Stop();
          std::error_code ignored;
          std::filesystem::remove_all(m_folder.Path(), ignored);
      }) {
    std::vector<std::string> ports;
    for (int camera = 0; camera < cameras; ++camera)
        ports.push_back("COM_Port#" + NameOf(camera));
    const std::filesystem::path bindings = m_folder.Path() / "configuration";
    std::filesystem::create_directory(bindings);
    WriteFile(bindings / "PortConfiguration_x64.xml", PortConfigurationText(ports, kGrabber));
    const std::optional<std::string> greeting = m_simulator.ReadLine(kStartTimeout);
    if (greeting != "ready")
        throw ToolError("the simulator did not start", greeting.value_or(""));
    m_serialPath.emplace("CLSERTTY_PATH", m_folder.Path().string());
    m_bindings.emplace("VANTO_CL_BINDINGS", bindings.string());
    // Simulated cameras change from one version to the next under the same names: no description of theirs may stay.
    m_state.emplace("VANTO_CL_STATE", (m_folder.Path() / "state").string());
    m_cache.emplace("GENICAM_CACHE", (m_folder.Path() / "cache").string());
    isRunning = true;
}

Simulation::~Simulation() {
    isRunning = false;
}

bool Simulation::IsRunning() noexcept {
    return isRunning;
}

}  // namespace tools
