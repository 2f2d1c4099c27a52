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
#include "output/Output.h"
#include "output/Progress.h"
#include "output/Text.h"
#include "system/FileAccess.h"
#include "system/Files.h"
#include "vanto/VantoFolders.h"

namespace tools {

namespace {

class LoadCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::string m_device;
    std::string m_file;
};

}  // namespace

void LoadCommand::Declare(Options& options) {
    options.Argument("DEVICE", m_device, kDeviceHelp);
    options.Argument("FILE", m_file, "A file that 'vanto-cl save' wrote, or NAME=VALUE lines");
    options.Notes(
        "What the camera takes is set, in whatever order it takes it; each refusal is reported, and then the "
        "exit code is 1.");
    options.Example("vanto-cl load 0 camera.txt", "Set what the file says");
}

ExitCode LoadCommand::Run(Output& output) {
    if (const std::string why = WhyNotReadable(PathOf(m_file)); !why.empty())
        throw ToolError(fmt::format("can't read '{}': {}", m_file, why));
    const std::vector<base::Setting> settings = base::ParseSettings(m_file, Vanto::textFileToString(m_file).view());
    const OpenDevice device(m_device, output);
    std::vector<Refusal> refusals;
    {
        const Progress progress(output, "Setting " + device.Name());
        refusals = ApplySettings(device.Nodes(), settings);
        device.ThrowIfGone();
    }
    for (const Refusal& refusal : refusals) {
        const std::string selectors = base::SelectorText(refusal.setting.selectors);
        output.Warn(Printable(fmt::format("{}:{}: {}{}", m_file, refusal.setting.line,
                                          selectors.empty() ? "" : "[" + selectors + "] ", refusal.reason)));
    }
    output.Line(fmt::format("{}: {} of {} settings are in the camera", Printable(m_file),
                            settings.size() - refusals.size(), settings.size()));
    return refusals.empty() ? ExitCode::kDone : ExitCode::kFailed;
}

std::unique_ptr<Command> MakeLoadCommand() {
    return std::make_unique<LoadCommand>();
}

}  // namespace tools
