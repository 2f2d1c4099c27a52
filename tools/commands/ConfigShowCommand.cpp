/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl config show: what the port configuration file says
 */
#include <fmt/format.h>

#include "commands/Commands.h"
#include "commands/Options.h"
#include "configuration/ConfigurationJson.h"
#include "configuration/ConfigurationPath.h"
#include "configuration/ConfigurationReader.h"
#include "output/Output.h"
#include "output/Table.h"
#include "output/Text.h"

namespace tools {

namespace {

class ConfigShowCommand : public Command {
public:
    void Declare(Options& options) override {
        options.Flag("--json", m_json, "Print a JSON object");
        options.Example("vanto-cl config show", "The ports of the file as a table");
    }

    ExitCode Run(Output& output) override {
        const std::filesystem::path path = FindConfigurationPath().path;
        const PortConfiguration configuration = ReadExistingConfiguration(path);
        if (!configuration.wellFormed)
            throw ToolError(fmt::format("'{}' is malformed", path.string()), "'vanto-cl config check' says where.");
        if (m_json) {
            Json entries = Json::array();
            for (const PortEntry& entry : configuration.entries)
                entries.push_back(ToJson(entry));
            output.Line(ToText(Json{{"Path", path.string()}, {"Ports", std::move(entries)}}));
            return ExitCode::kDone;
        }
        output.Note(Printable(path.string()));
        Table table({{"Line", true},
                     KeyColumn("Port"),
                     {"Enabled"},
                     {"Maker"},
                     {"Family"},
                     {"Model"},
                     {"Baud rate"},
                     {"Device string"}});
        for (const PortEntry& entry : configuration.entries)
            table.AddRow({std::to_string(entry.place.line),
                          entry.id.text.empty() ? Table::Cell("no ID: ignored", Style::kWarning) : entry.id.text,
                          entry.IsEnabled() ? Table::Cell("yes", Style::kGood) : Table::Cell("no"),
                          entry.manufacturer.text, entry.family.text, entry.model.text, entry.baudRate.text,
                          entry.deviceSpecificString.text});
        table.PrintTo(output);
        return ExitCode::kDone;
    }

private:
    bool m_json = false;
};

}  // namespace

constexpr CommandEntry kConfigShowCommand{"config show", "Show what the file says", &Make<ConfigShowCommand>};

}  // namespace tools
