/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl complete: words for the completion of shells
 */
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "cameras/DeviceChoice.h"
#include "cameras/Enumeration.h"
#include "cameras/KnownCamerasFile.h"
#include "cameras/Simulation.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "features/FeatureWords.h"
#include "features/OpenDevice.h"
#include "output/Output.h"
#include "output/Text.h"

namespace tools {

namespace {

class CompleteCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::vector<std::string> m_words;
};

/// A word that a shell can take as it stands; an empty line would be none.
void PrintWord(Output& output, const std::string& word) {
    if (!word.empty() && word.find_first_of(" \t\n\\'\"$`") == std::string::npos)
        output.Line(Printable(word));
}

void PrintCommands(Output& output) {
    std::set<std::string> printed;
    for (const CommandEntry& entry : CommandTable()) {
        const std::string name = entry.name;
        if (const std::string first = name.substr(0, name.find(' '));
            *entry.summary != '\0' && printed.insert(first).second)
            PrintWord(output, first);
    }
}

void PrintSubcommands(Output& output, const std::string& group) {
    for (const CommandEntry& entry : CommandTable())
        if (const std::string name = entry.name; name.starts_with(group + " "))
            PrintWord(output, name.substr(group.size() + 1));
}

/// The cameras that are known; nobody waits at a keyboard for those that are not. Simulated ones are always new.
KnownCameras TheCameras(Output& output) {
    if (Simulation::IsRunning())
        EnumerateAndRemember(TransportLayer(), output);
    return LoadKnownCameras(output);
}

void PrintDevices(Output& output) {
    const KnownCameras known = TheCameras(output);
    for (const KnownCamera& camera : known.All()) {
        PrintWord(output, camera.address.SerialNumber());
        PrintWord(output, camera.address.portId);
    }
}

/// The words of a camera's features, as they were when it was opened last.
std::vector<FeatureWords> FeaturesOf(const std::string& device, Output& output) {
    const std::optional<KnownCamera> camera = ChooseDevice(TheCameras(output).All(), device);
    if (!camera)
        return {};
    if (Simulation::IsRunning())
        const OpenDevice opened(device, output, OpenDevice::Use::kConnect);
    return LoadFeatureWords(camera->address.deviceId);
}

/// \param[in] kind "features" for those with a value, "executables" for commands, "entries" for those of one feature
void PrintFeatureWords(Output& output, const std::string& kind, const std::string& device, const std::string& name) {
    for (const FeatureWords& feature : FeaturesOf(device, output)) {
        if (kind == "entries" && feature.name == name)
            for (const std::string& entry : feature.entries)
                PrintWord(output, entry);
        if (kind != "entries" && feature.isCommand == (kind == "executables"))
            PrintWord(output, feature.name);
    }
}

}  // namespace

void CompleteCommand::Declare(Options& options) {
    options.Arguments("WORD", m_words,
                      "commands; subcommands GROUP; devices; features DEVICE; executables DEVICE; entries DEVICE NAME");
}

ExitCode CompleteCommand::Run(Output& output) {
    m_words.resize(3);
    const std::string& kind = m_words[0];
    if (kind == "commands")
        PrintCommands(output);
    else if (kind == "subcommands")
        PrintSubcommands(output, m_words[1]);
    else if (kind == "devices")
        PrintDevices(output);
    else if (kind == "features" || kind == "executables" || kind == "entries")
        PrintFeatureWords(output, kind, m_words[1], m_words[2]);
    else
        throw ToolError("nothing is known about completing '" + kind + "'", {}, ExitCode::kUsage);
    return ExitCode::kDone;
}

std::unique_ptr<Command> MakeCompleteCommand() {
    return std::make_unique<CompleteCommand>();
}

}  // namespace tools
