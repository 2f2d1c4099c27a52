/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Simulated cameras that outlive single runs of vanto-cl
 */
#include "../PlayedCameras.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <stdexcept>

#include "configuration/ConfigurationWriter.h"
#include "system/Files.h"

namespace tools_test {

namespace {

std::vector<std::string> ArgumentsFor(const std::filesystem::path& folder, const std::vector<std::string>& cameras) {
    std::vector<std::string> arguments{"--until-stdin-closes", "--links", folder.string(), "--control",
                                       (folder / "control").string()};
    for (const std::string& camera : cameras) {
        arguments.emplace_back("--camera");
        arguments.push_back(camera);
    }
    return arguments;
}

}  // namespace

PlayedCameras::PlayedCameras(const std::vector<std::string>& cameras, const std::string& deviceSpecific)
    : m_simulator(std::filesystem::path(VANTO_CL_PROGRAM).parent_path() / "marlow-sim",
                  ArgumentsFor(m_folder.Path(), cameras)) {
    std::vector<std::string> ports;
    for (const std::string& camera : cameras)
        ports.push_back("COM_Port#" + camera.substr(0, camera.find(',')));
    tools::WriteFile(Folder() / "PortConfiguration_x64.xml", tools::PortConfigurationText(ports, deviceSpecific));
    if (m_simulator.ReadLine(std::chrono::minutes(1)) != "ready")
        throw std::runtime_error("the simulator did not start");
}

Environment PlayedCameras::Variables() const {
    return {{"VANTO_CL_BINDINGS", Folder().string()},
            {"CLSERTTY_PATH", Folder().string()},
            {"GENICAM_CACHE", (Folder() / "cache").string()}};
}

std::string PlayedCameras::Command(const std::string& line) const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, (Folder() / "control").c_str(), sizeof(address.sun_path) - 1);
    const int connection = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    std::string answer;
    if (::connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0) {
        const std::string command = line + "\n";
        char byte = 0;
        if (::write(connection, command.data(), command.size()) == static_cast<ssize_t>(command.size()))
            while (::read(connection, &byte, 1) == 1 && byte != '\n')
                answer += byte;
    }
    ::close(connection);
    return answer;
}

}  // namespace tools_test
