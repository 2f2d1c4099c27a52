/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl ports: the serial ports of the machine
 */
#include <fmt/format.h>

#include "CLProtocol/Diagnostics.h"
#include "cameras/TransportLayer.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "configuration/ConfigurationJson.h"
#include "configuration/ConfigurationPath.h"
#include "configuration/ConfigurationReader.h"
#include "output/Output.h"
#include "output/Table.h"
#include "output/Text.h"
#include "system/FileAccess.h"

namespace tools {

namespace {

/// The entries of the configuration; none when there is no file. What is wrong with the file goes to \a problem.
std::vector<PortEntry> ConfiguredEntries(std::string& problem) {
    const std::filesystem::path path = FindConfigurationPath().path;
    std::error_code error;
    if (!std::filesystem::exists(path, error)) {
        problem =
            fmt::format("there is no port configuration file '{}'; 'vanto-cl config init' writes one", path.string());
        return {};
    }
    try {
        PortConfiguration configuration = ReadPortConfiguration(path);
        if (configuration.wellFormed)
            return configuration.entries;
        problem = fmt::format("'{}' is malformed; 'vanto-cl config check' says where", path.string());
    } catch (const ToolError& failure) {
        problem = failure.what();
    }
    return {};
}

std::vector<PortEntry> EntriesOf(const std::string& port, const std::vector<PortEntry>& entries) {
    std::vector<PortEntry> result;
    for (const PortEntry& entry : entries)
        if (entry.id.text == port)
            result.push_back(entry);
    return result;
}

void PrintJson(Output& output, const std::vector<std::string>& ports, const std::vector<PortEntry>& entries) {
    Json json = Json::array();
    for (const std::string& port : ports) {
        Json configured = Json::array();
        bool enabled = false;
        for (const PortEntry& entry : EntriesOf(port, entries)) {
            configured.push_back(ToJson(entry));
            enabled = enabled || entry.IsEnabled();
        }
        json.push_back({{"PortID", port},
                        {"Device", DeviceOfPort(port).string()},
                        {"Enabled", enabled},
                        {"Entries", std::move(configured)}});
    }
    output.Line(ToText(json));
}

void PrintTable(Output& output, const std::vector<std::string>& ports, const std::vector<PortEntry>& entries) {
    Table table({KeyColumn("Port"), {"Device"}, {"Enabled"}, {"Line"}, {"Expected camera"}, {"Baud rate"}});
    for (const std::string& port : ports) {
        const std::vector<PortEntry> configured = EntriesOf(port, entries);
        const std::string device = DeviceOfPort(port).string();
        if (configured.empty())
            table.AddRow({port, device, {"not configured", Style::kDim}});
        for (const PortEntry& entry : configured)
            table.AddRow({port, device, entry.IsEnabled() ? Table::Cell("yes", Style::kGood) : Table::Cell("no"),
                          std::to_string(entry.place.line),
                          std::string(Trimmed(
                              fmt::format("{} {} {}", entry.manufacturer.text, entry.family.text, entry.model.text))),
                          entry.baudRate.text.empty() ? "highest" : entry.baudRate.text});
    }
    table.PrintTo(output);
}

class PortsCommand : public Command {
public:
    void Declare(Options& options) override {
        options.Flag("--json", m_json, "Print a JSON array");
        options.Notes("A camera is looked for on a port only if the port configuration file enables it.");
        options.Example("vanto-cl ports", "Which ports there are, and which are asked for cameras");
    }

    ExitCode Run(Output& output) override {
        const std::vector<std::string> ports = MachinePorts();
        std::string problem;
        const std::vector<PortEntry> entries = ConfiguredEntries(problem);
        if (m_json) {
            PrintJson(output, ports, entries);
        } else if (ports.empty()) {
            output.Line("No serial port was found.");
            for (const CLProtocol::LibraryReport& library : CLProtocol::GetSerialLibraries())
                if (!library.refusal.empty())
                    output.Prose(fmt::format("'{}' was refused: {}", Printable(library.path.view()),
                                             Printable(library.refusal.view())));
            output.Prose("'vanto-cl doctor' shows where serial libraries and devices are looked for.");
        } else {
            PrintTable(output, ports, entries);
        }
        if (!problem.empty())
            output.Warn(Printable(problem));
        return ExitCode::kDone;
    }

private:
    bool m_json = false;
};

}  // namespace

constexpr CommandEntry kPortsCommand{"ports", "List the serial ports of this machine and their configuration",
                                     &Make<PortsCommand>};

}  // namespace tools
