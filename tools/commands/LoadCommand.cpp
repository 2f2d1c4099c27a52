/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl load: the settings of a file into a camera
 */
#include <fmt/format.h>
#include <memory>
#include <string>

#include "cameras/DeviceChoice.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "features/OpenDevice.h"
#include "features/StreamableSettings.h"
#include "output/Json.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/Text.h"
#include "system/Files.h"

namespace tools {

namespace {

class LoadCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::string m_device;
    std::string m_file;
    bool m_json = false;
};

Json ToJson(std::size_t settings, const std::vector<Refusal>& refusals) {
    Json refused = Json::array();
    for (const Refusal& refusal : refusals)
        refused.push_back({{"Name", refusal.setting.name},
                           {"Selectors", base::SelectorText(refusal.setting.selectors)},
                           {"Line", refusal.setting.line},
                           {"Reason", refusal.reason}});
    return {{"Settings", settings}, {"Set", settings - refusals.size()}, {"Refused", std::move(refused)}};
}

}  // namespace

void LoadCommand::Declare(Options& options) {
    options.Argument("DEVICE", m_device, kDeviceHelp);
    options.Argument("FILE", m_file, "A file that 'vanto-cl save' wrote, or NAME=VALUE lines; - for standard input");
    options.Flag("--json", m_json, "Print a JSON object, refusals included");
    options.Notes(
        "What the camera takes is set, in whatever order it takes it; each refusal is reported, and then the "
        "exit code is 1.");
    options.Example("vanto-cl load 0 camera.txt", "Set what the file says");
    options.Example("vanto-cl save 0 - | vanto-cl load 1 -", "Set one camera as the other is");
}

ExitCode LoadCommand::Run(Output& output) {
    const std::vector<base::Setting> settings = base::ParseSettings(m_file, ReadInput(PathOf(m_file)));
    const OpenDevice device(m_device, output);
    std::vector<Refusal> refusals;
    {
        Progress progress(output, "Setting " + device.Name());
        refusals = ApplySettings(device.Nodes(), settings,
                                 [&](std::size_t done, std::size_t all) { progress.SetPart(done, all); });
        device.ThrowIfGone();
    }
    for (const Refusal& refusal : refusals) {
        const std::string selectors = base::SelectorText(refusal.setting.selectors);
        output.Warn(Printable(fmt::format("{}:{}: {}{}", m_file, refusal.setting.line,
                                          selectors.empty() ? "" : "[" + selectors + "] ", refusal.reason)));
    }
    if (m_json)
        output.Line(ToText(ToJson(settings.size(), refusals)));
    else
        output.Line(fmt::format("{}: {} of {} settings are in the camera", Printable(m_file),
                                settings.size() - refusals.size(), settings.size()));
    return refusals.empty() ? ExitCode::kDone : ExitCode::kFailed;
}

std::unique_ptr<Command> MakeLoadCommand() {
    return std::make_unique<LoadCommand>();
}

}  // namespace tools
