/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl config init: a new port configuration file for the ports of the machine
 */
#include <fmt/format.h>

#include "cameras/TransportLayer.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "configuration/ConfigurationPath.h"
#include "configuration/ConfigurationWriter.h"
#include "output/Output.h"
#include "output/Text.h"
#include "system/Files.h"

namespace tools {

namespace {

constexpr const char* kOtherFolder =
    "Run it as an administrator, or set VANTO_CL_BINDINGS to a folder of yours here and for your applications.";

void CreateFolder(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw ToolError(fmt::format("can't make the folder '{}': {}", folder.string(), error.message()), kOtherFolder);
}

class ConfigInitCommand : public Command {
public:
    void Declare(Options& options) override {
        options.Flag("-f,--force", m_force, "Replace a file that is already there");
        options.Notes(
            "The new file enables every serial port of this machine for cameras of Marlow. Take those out that "
            "have something else behind them: looking for a camera sends bytes to it.");
        options.Example("sudo vanto-cl config init", "Write the file for all users");
    }

    ExitCode Run(Output& output) override {
        const ConfigurationPath place = FindConfigurationPath();
        if (!place.warning.empty())
            throw ToolError(place.warning, place.reason);
        if (std::filesystem::exists(std::filesystem::symlink_status(place.path)) && !m_force)
            throw ToolError(fmt::format("'{}' is already there", place.path.string()),
                            "'vanto-cl config show' shows it, --force replaces it.");
        const std::vector<std::string> ports = MachinePorts();
        if (ports.empty())
            throw ToolError("this machine has no serial port to write a configuration for",
                            "Plug in the frame grabber or the adapter; 'vanto-cl doctor' shows what was looked at.");
        CreateFolder(place.path.parent_path());
        try {
            WriteFile(place.path, PortConfigurationText(ports));
        } catch (const ToolError& failure) {
            throw ToolError(failure.what(), kOtherFolder);
        }
        output.Line(fmt::format("{} enables:", Printable(place.path.string())));
        for (const std::string& port : ports)
            output.Line("  " + Printable(port));
        output.Prose("'vanto-cl list' looks for cameras now. Take out the ports that have something else behind them.");
        return ExitCode::kDone;
    }

private:
    bool m_force = false;
};

}  // namespace

constexpr CommandEntry kConfigInitCommand{"config init", "Write a new file for the ports of this machine",
                                          &Make<ConfigInitCommand>};

}  // namespace tools
