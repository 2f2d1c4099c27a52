/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl info: all that is known of features
 */
#include <string>
#include <vector>

#include "commands/Commands.h"
#include "commands/DeviceCommand.h"
#include "commands/Options.h"
#include "features/FeatureInfo.h"
#include "features/FeatureWalk.h"
#include "features/OpenDevice.h"
#include "output/Output.h"
#include "system/Interruptible.h"

namespace tools {

namespace {

class InfoCommand : public DeviceCommand {
public:
    void Declare(Options& options) override {
        DeviceCommand::Declare(options);
        options.Arguments("NAME", m_names, "Names of features");
        options.Flag("--json", m_json, "Print a JSON array with an object for each feature");
        options.Notes(
            "Where a feature can't be used at present, \"Because\" names the condition and what it looks at.");
        options.Example("vanto-cl info 0 ExposureTime", "What ExposureTime takes, where it lies, why it is locked");
    }

    ExitCode Run(Output& output) override {
        const OpenDevice device(Device(), output);
        std::vector<GenApi::INode*> nodes;
        for (const std::string& name : m_names)
            nodes.push_back(&FindFeature(device.Nodes(), name));
        Json json = Json::array();
        for (GenApi::INode* node : nodes) {
            ThrowIfInterrupted();
            Json info = FeatureInfo(*node);
            device.ThrowIfGone();
            if (!m_json) {
                if (node != nodes.front())
                    output.Line();
                PrintInfo(output, info);
            }
            json.push_back(std::move(info));
        }
        if (m_json)
            output.Line(ToText(json));
        return ExitCode::kDone;
    }

private:
    std::vector<std::string> m_names;
    bool m_json = false;
};

}  // namespace

constexpr CommandEntry kInfoCommand{"info", "Show all that is known of features", &Make<InfoCommand>};

}  // namespace tools
