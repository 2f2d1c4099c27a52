/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl config check: what is wrong with the port configuration file
 */
#include "commands/ConfigCheckCommand.h"

#include <fmt/format.h>

#include <algorithm>

#include "app/Options.h"
#include "cameras/TransportLayer.h"
#include "configuration/ConfigurationChecker.h"
#include "configuration/ConfigurationJson.h"
#include "configuration/ConfigurationPath.h"
#include "configuration/ConfigurationReader.h"
#include "output/Output.h"
#include "output/Text.h"

namespace tools {

namespace {

void PrintFindings(Output& output, const std::string& file, const PortConfiguration& configuration) {
    for (const Finding& finding : configuration.findings) {
        const bool isError = finding.severity == Severity::kError;
        const std::string place =
            finding.place.line > 0 ? fmt::format(":{}:{}", finding.place.line, finding.place.column) : "";
        output.Line(fmt::format(
            "{}{}: {} {}", Printable(file), place,
            output.Styled(isError ? Style::kBad : Style::kWarning, std::string(SeverityName(finding.severity)) + ":"),
            finding.text));
        if (!finding.hint.empty())
            output.Line("  " + finding.hint);
    }
    if (configuration.findingsLeftOut > 0)
        output.Line(fmt::format("... and {} more", configuration.findingsLeftOut));
}

std::string Summary(const PortConfiguration& configuration) {
    const auto errors = std::count_if(configuration.findings.begin(), configuration.findings.end(),
                                      [](const Finding& finding) { return finding.severity == Severity::kError; });
    const auto warnings = static_cast<std::ptrdiff_t>(configuration.findings.size()) - errors;
    const auto enabled = std::count_if(configuration.entries.begin(), configuration.entries.end(),
                                       [](const PortEntry& entry) { return entry.IsEnabled(); });
    return fmt::format("{} Port elements, {} enabled: {} errors, {} warnings", configuration.entries.size(), enabled,
                       errors, warnings);
}

}  // namespace

void ConfigCheckCommand::Declare(Options& options) {
    options.Value("--file", m_file, "FILE", "Check FILE instead of the one that is in use");
    options.Flag("--json", m_json, "Print a JSON object");
    options.Footer(
        "Ends with 1 when there is an error: something that keeps a camera from being found\n"
        "or a setting from being used.");
}

ExitCode ConfigCheckCommand::Run(Output& output) {
    const std::filesystem::path path = m_file.empty() ? FindConfigurationPath().path : std::filesystem::path(m_file);
    PortConfiguration configuration = ReadExistingConfiguration(path);
    CheckPortConfiguration(configuration, MachinePorts());
    if (m_json) {
        Json findings = Json::array();
        for (const Finding& finding : configuration.findings)
            findings.push_back(ToJson(finding));
        output.Line(ToText(Json{{"Path", path.string()},
                                {"Fine", !configuration.HasErrors()},
                                {"Findings", std::move(findings)},
                                {"FindingsLeftOut", configuration.findingsLeftOut}}));
    } else {
        PrintFindings(output, path.string(), configuration);
        output.Line(fmt::format("{}: {}", Printable(path.string()), Summary(configuration)));
    }
    return configuration.HasErrors() ? ExitCode::kFailed : ExitCode::kDone;
}

}  // namespace tools
