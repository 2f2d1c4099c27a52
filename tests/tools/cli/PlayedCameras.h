/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Simulated cameras that outlive single runs of vanto-cl
 */
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "ProgramRun.h"
#include "simulator/Simulator.h"
#include "system/Folders.h"

namespace tools_test {

/// A simulator with cameras cam0, cam1 ... as long as this lives, and the environment in which vanto-cl finds them.
class PlayedCameras {
public:
    explicit PlayedCameras(const std::vector<std::string>& cameras = {"cam0,serial=S0"},
                           const std::string& deviceSpecific = {});

    std::filesystem::path Folder() const { return m_folder.Path(); }
    Environment Variables() const;
    RunResult Run(const std::vector<std::string>& arguments) const { return RunVantoCl(arguments, Variables()); }
    /// Has the simulator carry out a command, and returns its answer.
    std::string Command(const std::string& line) const { return m_simulator.Control(line); }

private:
    tools::TemporaryFolder m_folder;
    mutable MarlowSim::Simulator m_simulator{m_folder.Path()};
};

}  // namespace tools_test
