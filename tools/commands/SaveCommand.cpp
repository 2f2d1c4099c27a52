/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl save: the settings of a camera into a file
 */
#include <fmt/format.h>
#include <string>

#include "base/SettingsFile.h"
#include "commands/Commands.h"
#include "commands/DeviceCommand.h"
#include "commands/Options.h"
#include "features/OpenDevice.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/Text.h"
#include "system/Files.h"

namespace tools {

namespace {

class SaveCommand : public DeviceCommand {
public:
    void Declare(Options& options) override {
        DeviceCommand::Declare(options);
        options.Argument("FILE", m_file, "The file to write, - for standard output");
        options.Notes(
            "Saved are the streamable features that can be set at present, for each value of their selectors. "
            "What can't be read is reported, the rest is saved, and the exit code is 1.");
        options.Example("vanto-cl save 0 camera.txt", "Save the settings");
    }

    ExitCode Run(Output& output) override {
        const OpenDevice device(Device(), output);
        std::string text;
        std::vector<Vanto::SettingFault> faults;
        {
            const Progress progress(output, "Reading the settings of " + device.Name());
            text = device.Camera().SettingsText(faults);
        }
        for (const Vanto::SettingFault& fault : faults)
            output.Warn("not saved: " + Printable(device.WithoutName(fault.reason)));
        if (m_file == "-") {
            output.Print(text);
        } else {
            WriteFile(PathOf(m_file), text);
            output.Line(fmt::format("{}: {} settings", Printable(m_file), base::ParseSettings(m_file, text).size()));
        }
        return faults.empty() ? ExitCode::kDone : ExitCode::kFailed;
    }

private:
    std::string m_file;
};

}  // namespace

constexpr CommandEntry kSaveCommand{"save", "Save a camera's settings in a file", &Make<SaveCommand>};

}  // namespace tools
