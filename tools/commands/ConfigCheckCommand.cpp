/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl config check: what is wrong with the port configuration file
 */
#include <fmt/format.h>
#include <algorithm>
#include <string>

#include "cameras/TransportLayer.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "configuration/ConfigurationChecker.h"
#include "configuration/ConfigurationPath.h"
#include "configuration/ConfigurationReader.h"
#include "findings/FindingPrinter.h"
#include "system/Files.h"

namespace tools {

namespace {

std::string Summary(const PortConfiguration& configuration) {
    const auto enabled = std::count_if(configuration.entries.begin(), configuration.entries.end(),
                                       [](const PortEntry& entry) { return entry.IsEnabled(); });
    return fmt::format("{} Port element{}, {} enabled: ", configuration.entries.size(),
                       configuration.entries.size() == 1 ? "" : "s", enabled);
}

class ConfigCheckCommand : public Command {
public:
    void Declare(Options& options) override {
        options.Value("--file", m_file, "FILE", "Check FILE instead of the one that is in use");
        options.Flag("--json", m_json, "Print a JSON object");
        options.Notes(
            "Ends with 1 when there is an error: something that keeps a camera from being found or a setting "
            "from being used.");
        options.Example("vanto-cl config check", "Check the file that is in use");
        options.Example("vanto-cl config check --file new.xml", "Check another one");
    }

    ExitCode Run(Output& output) override {
        const std::filesystem::path path = m_file.empty() ? FindConfigurationPath().path : PathOf(m_file);
        PortConfiguration configuration = ReadExistingConfiguration(path);
        CheckPortConfiguration(configuration, MachinePorts());
        if (m_json)
            PrintFindingsAsJson(output, path.string(), configuration.findings);
        else
            PrintFindings(output, path.string(), configuration.findings, Summary(configuration));
        return configuration.findings.HasErrors() ? ExitCode::kFailed : ExitCode::kDone;
    }

private:
    bool m_json = false;
    std::string m_file;
};

}  // namespace

constexpr CommandEntry kConfigCheckCommand{"config check", "Say what is wrong with the file, with line and column",
                                           &Make<ConfigCheckCommand>};

}  // namespace tools
