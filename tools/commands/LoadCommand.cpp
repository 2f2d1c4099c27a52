/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl load: the settings of a file into a camera
 */
#include <fmt/format.h>
#include <string>

#include "base/SettingsFile.h"
#include "commands/Commands.h"
#include "commands/DeviceCommand.h"
#include "commands/Options.h"
#include "features/OpenDevice.h"
#include "output/Json.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/Text.h"
#include "system/Files.h"

namespace tools {

namespace {

using Faults = std::vector<Vanto::SettingFault>;

Json ToJson(const OpenDevice& device, std::size_t settings, const Faults& faults) {
    Json refused = Json::array();
    for (const Vanto::SettingFault& fault : faults)
        refused.push_back({{"Name", fault.feature},
                           {"Selectors", fault.selectors},
                           {"Line", fault.line},
                           {"Reason", device.WithoutName(fault.reason)}});
    return {{"Settings", settings}, {"Set", settings - faults.size()}, {"Refused", std::move(refused)}};
}

/// Returns what the camera does not take.
Faults Load(const OpenDevice& device, const std::string& text, const std::string& file, std::size_t settings,
            Output& output) {
    Progress progress(output, "Setting " + device.Name());
    // Each is set, read back, and read back once more.
    std::size_t done = 0;
    device.Camera().SetStopCheck([&] {
        progress.SetPart(++done, 3 * settings);
        return Interruption::Requested();
    });
    const struct Restored {
        const Vanto::Camera& camera;
        ~Restored() { camera.SetStopCheck(&Interruption::Requested); }
    } restored{device.Camera()};
    try {
        device.Camera().LoadText(text, file);
        return {};
    } catch (const Vanto::SettingsRefused& refused) {
        return refused.Faults();
    }
}

class LoadCommand : public DeviceCommand {
public:
    void Declare(Options& options) override {
        DeviceCommand::Declare(options);
        options.Argument("FILE", m_file,
                         "A file that 'vanto-cl save' wrote, or NAME=VALUE lines; - for standard input");
        options.Flag("--json", m_json, "Print a JSON object, refusals included");
        options.Notes(
            "What the camera takes is set, in whatever order it takes it; each refusal is reported, and then the "
            "exit code is 1.");
        options.Example("vanto-cl load 0 camera.txt", "Set what the file says");
        options.Example("vanto-cl save 0 - | vanto-cl load 1 -", "Set one camera as the other is");
    }

    ExitCode Run(Output& output) override {
        const std::string text = ReadInput(PathOf(m_file));
        const std::size_t settings = base::ParseSettings(m_file, text).size();
        const OpenDevice device(Device(), output);
        const Faults faults = Load(device, text, m_file, settings, output);
        for (const Vanto::SettingFault& fault : faults)
            output.Warn(Printable(fmt::format("{}:{}: {}{}", m_file, fault.line,
                                              fault.selectors.empty() ? "" : "[" + fault.selectors + "] ",
                                              device.WithoutName(fault.reason))));
        if (m_json)
            output.Line(ToText(ToJson(device, settings, faults)));
        else
            output.Line(fmt::format("{}: {} of {} settings are in the camera", Printable(m_file),
                                    settings - faults.size(), settings));
        return faults.empty() ? ExitCode::kDone : ExitCode::kFailed;
    }

private:
    std::string m_file;
    bool m_json = false;
};

}  // namespace

constexpr CommandEntry kLoadCommand{"load", "Set a camera as a file says", &Make<LoadCommand>};

}  // namespace tools
