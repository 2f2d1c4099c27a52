/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Simulated cameras that outlive single runs of vanto-cl
 */
#include "PlayedCameras.h"

#include "configuration/ConfigurationWriter.h"
#include "system/Files.h"

namespace tools_test {

PlayedCameras::PlayedCameras(const std::vector<std::string>& cameras, const std::string& deviceSpecific) {
    std::vector<std::string> ports;
    for (const std::string& text : cameras) {
        const MarlowSim::NamedCamera camera = MarlowSim::ParseCamera(text);
        m_simulator.Add(camera.name, camera.options);
        ports.push_back("COM_Port#" + camera.name);
    }
    tools::WriteFile(Folder() / "PortConfiguration_x64.xml", tools::PortConfigurationText(ports, deviceSpecific));
}

Environment PlayedCameras::Variables() const {
    return {{"VANTO_CL_BINDINGS", Folder().string()},
            {"CLSERTTY_PATH", Folder().string()},
            {"VANTO_CL_STATE", (Folder() / "state").string()},
            {"GENICAM_CACHE", (Folder() / "cache").string()}};
}

}  // namespace tools_test
