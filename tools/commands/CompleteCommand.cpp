/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl complete: words for the completion of shells
 */
#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "cameras/DeviceChoice.h"
#include "cameras/Enumeration.h"
#include "cameras/KnownCamerasFile.h"
#include "cameras/Records.h"
#include "cameras/Simulation.h"
#include "commands/Commands.h"
#include "commands/CompletionLine.h"
#include "commands/Options.h"
#include "features/FeatureWords.h"
#include "features/OpenDevice.h"
#include "output/Output.h"
#include "output/Text.h"

namespace tools {

namespace {

/// Prints what fits to what was typed. A word must be one that a shell can take as it stands.
class Offers {
public:
    Offers(Output& output, const std::string& typed) : m_output(output), m_typed(typed) {}

    void Add(const std::string& word, const std::string& what = {}) const {
        const bool isPlain = word.find_first_of(" \t\n\\'\"$`") == std::string::npos;
        if (!word.empty() && isPlain && word.starts_with(m_typed))
            m_output.Line(Printable(word) + (what.empty() ? "" : "\t" + Printable(what)));
    }
    /// Tells the shell something that is no word: ":files".
    void Tell(const char* directive) const { m_output.Line(directive); }

    const std::string& Typed() const noexcept { return m_typed; }

private:
    Output& m_output;
    const std::string& m_typed;
};

/// The cameras that are known; nobody waits at a keyboard for those that are not. Simulated ones are always new.
KnownCameras TheCameras(Output& output) {
    if (Simulation::IsRunning())
        EnumerateAndRemember(TransportLayer(), output);
    return LoadKnownCameras(output);
}

void OfferDevices(const Offers& offers, Output& output) {
    const KnownCameras known = TheCameras(output);
    for (const KnownCamera& camera : known.All()) {
        const std::string name = NameOf(RecordOf(camera.address));
        offers.Add(camera.address.SerialNumber(), name);
        offers.Add(camera.address.portId, name);
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

/// Features with a value, or commands.
void OfferFeatures(const Offers& offers, const std::vector<FeatureWords>& features, bool commands) {
    for (const FeatureWords& feature : features)
        if (feature.isCommand == commands)
            offers.Add(feature.name);
}

/// "NAME=" and, behind the sign, the values of an enumeration.
void OfferSettings(const Offers& offers, const std::vector<FeatureWords>& features) {
    const std::size_t sign = offers.Typed().find('=');
    if (sign == std::string::npos)
        offers.Tell(":nospace");
    for (const FeatureWords& feature : features) {
        if (sign == std::string::npos && !feature.isCommand)
            offers.Add(feature.name + "=");
        if (sign != std::string::npos && offers.Typed().substr(0, sign) == feature.name)
            for (const std::string& entry : feature.entries)
                offers.Add(feature.name + "=" + entry);
    }
}

void OfferWhatStandsHere(const CompletionLine& line, Output& output) {
    const Offers offers(output, line.Typed());
    const std::string& placeholder = line.Placeholder();
    for (const Offer& offer : line.Words())
        offers.Add(offer.word, offer.what);
    if (placeholder == "FILE")
        offers.Tell(":files");
    else if (placeholder == "FOLDER")
        offers.Tell(":folders");
    else if (placeholder == "DEVICE")
        OfferDevices(offers, output);
    else if (placeholder == "NAME" || placeholder == "COMMAND")
        OfferFeatures(offers, FeaturesOf(line.Device(), output), placeholder == "COMMAND");
    else if (placeholder == "NAME=VALUE")
        OfferSettings(offers, FeaturesOf(line.Device(), output));
}

class CompleteCommand : public Command {
public:
    void Declare(Options& options) override {
        options.Rest("WORD", m_words, "'line', then the words behind the program's name, up to the cursor");
    }

    ExitCode Run(Output& output) override {
        if (m_words.empty() || m_words.front() != "line")
            throw ToolError("'vanto-cl complete' is for the completion of shells",
                            "Example: vanto-cl complete line get ''", ExitCode::kUsage);
        m_words.erase(m_words.begin());
        const std::vector<CommandModel> commands = CommandModels();
        const CompletionLine line(commands, m_words);
        std::optional<Simulation> simulation;
        const std::string& placeholder = line.Placeholder();
        if (line.SimulatedCameras() > 0 && (placeholder == "DEVICE" || !line.Device().empty()))
            simulation.emplace(std::min(line.SimulatedCameras(), Simulation::kMostCameras));
        OfferWhatStandsHere(line, output);
        return ExitCode::kDone;
    }

private:
    std::vector<std::string> m_words;
};

}  // namespace

constexpr CommandEntry kCompleteCommand{"complete", "", &Make<CompleteCommand>};

}  // namespace tools
