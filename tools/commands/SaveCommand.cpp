/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl save: the settings of a camera into a file
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
#include "system/Files.h"

namespace tools {

namespace {

class SaveCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::string m_device;
    std::string m_file;
};

}  // namespace

void SaveCommand::Declare(Options& options) {
    options.Argument("DEVICE", m_device, kDeviceHelp);
    options.Argument("FILE", m_file, "The file to write, - for standard output");
    options.Notes(
        "Saved are the streamable features that can be set at present, for each value of their selectors. "
        "What can't be read is reported, the rest is saved, and the exit code is 1.");
    options.Example("vanto-cl save 0 camera.txt", "Save the settings");
}

ExitCode SaveCommand::Run(Output& output) {
    const OpenDevice device(m_device, output);
    std::vector<Setting> settings;
    std::vector<std::string> failures;
    {
        const Progress progress(output, "Reading the settings of " + device.Name());
        settings = CollectSettings(device.Nodes(), failures);
        device.ThrowIfGone();
    }
    const std::string text = base::SettingsText("Settings of " + device.Name() + ", for 'vanto-cl load'", settings);
    for (const std::string& failure : failures)
        output.Warn("not saved: " + Printable(failure));
    if (m_file == "-") {
        output.Print(text);
    } else {
        WriteFile(PathOf(m_file), text);
        output.Line(fmt::format("{}: {} settings", Printable(m_file), settings.size()));
    }
    return failures.empty() ? ExitCode::kDone : ExitCode::kFailed;
}

std::unique_ptr<Command> MakeSaveCommand() {
    return std::make_unique<SaveCommand>();
}

}  // namespace tools
