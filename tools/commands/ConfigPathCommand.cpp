/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl config path: where the port configuration file is looked for
 */

#include "commands/Commands.h"
#include "commands/Options.h"
#include "configuration/ConfigurationPath.h"
#include "output/Json.h"
#include "output/Output.h"
#include "output/Text.h"
#include "system/FileAccess.h"

namespace tools {

namespace {

class ConfigPathCommand : public Command {
public:
    void Declare(Options& options) override {
        options.Flag("--json", m_json, "Print a JSON object");
        options.Notes("The path goes to standard output, the reason to standard error.");
        options.Example("vanto-cl config path", "The path of the file");
    }

    ExitCode Run(Output& output) override {
        const ConfigurationPath found = FindConfigurationPath();
        std::error_code error;
        const bool exists = std::filesystem::exists(found.path, error);
        const std::string refused = exists ? WhyNotReadable(found.path) : std::string();
        if (m_json) {
            output.Line(ToText(Json{{"Path", found.path.string()},
                                    {"Reason", found.reason},
                                    {"Warning", found.warning},
                                    {"Exists", exists},
                                    {"Readable", exists && refused.empty()}}));
            return ExitCode::kDone;
        }
        output.Line(Printable(found.path.string()));
        output.Note(found.reason);
        if (!found.warning.empty())
            output.Warn(found.warning);
        if (!exists)
            output.Note("The file does not exist; 'vanto-cl config init' writes one.");
        else if (!refused.empty())
            output.Warn("the file can't be read: " + refused);
        return ExitCode::kDone;
    }

private:
    bool m_json = false;
};

}  // namespace

constexpr CommandEntry kConfigPathCommand{"config path", "Say where the file is looked for, and why there",
                                          &Make<ConfigPathCommand>};

}  // namespace tools
