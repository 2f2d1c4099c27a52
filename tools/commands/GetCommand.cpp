/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl get: values of features
 */
#include <fmt/format.h>
#include <string>
#include <vector>

#include "commands/Commands.h"
#include "commands/DeviceCommand.h"
#include "commands/Options.h"
#include "features/FeatureInput.h"
#include "features/FeatureText.h"
#include "features/FeatureWalk.h"
#include "features/OpenDevice.h"
#include "output/Output.h"
#include "output/Text.h"
#include "system/Interruptible.h"
#include "values/FeatureValueAccess.h"

namespace tools {

namespace {

class GetCommand : public DeviceCommand {
public:
    void Declare(Options& options) override {
        DeviceCommand::Declare(options);
        options.Arguments("NAME", m_names, "Names of features");
        options.Flag("--json", m_json, "Print a JSON object with a member for each feature");
        options.Notes("One feature prints its bare value, several print NAME=VALUE lines, as 'set' takes them.");
        options.Example("vanto-cl get 0 ExposureTime", "Print the value");
        options.Example("vanto-cl get 0 Width Height", "Print Width=... and Height=...");
    }

    ExitCode Run(Output& output) override {
        const OpenDevice device(Device(), output);
        std::vector<GenApi::INode*> nodes;
        for (const std::string& name : m_names) {
            nodes.push_back(&FindFeature(device.Nodes(), name));
            CheckReadable(*nodes.back());
        }
        Json json = Json::object();
        std::string text;
        for (std::size_t index = 0; index < nodes.size(); ++index) {
            ThrowIfInterrupted();
            if (m_json)
                json[m_names[index]] = ValueJson(*nodes[index]);
            else if (nodes.size() == 1)
                text = Printable(Vanto::ReadText(*nodes[index])) + "\n";
            else
                text += fmt::format("{}={}\n", m_names[index], Printable(Vanto::ReadText(*nodes[index])));
        }
        output.Print(m_json ? ToText(json) + "\n" : text);
        return ExitCode::kDone;
    }

private:
    std::vector<std::string> m_names;
    bool m_json = false;
};

}  // namespace

constexpr CommandEntry kGetCommand{"get", "Print the values of features", &Make<GetCommand>};

}  // namespace tools
