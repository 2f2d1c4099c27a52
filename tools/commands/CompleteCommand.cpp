/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl complete: words for the completion of shells
 */
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "cameras/DeviceChoice.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "description/FeatureTree.h"
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

void PrintDevices(Output& output) {
    const TransportLayer layer;
    for (const Vanto::CDeviceInfo& camera : Enumerate(layer).cameras) {
        PrintWord(output, PropertyOf(camera, "SerialNumber"));
        PrintWord(output, PropertyOf(camera, "PortID"));
    }
}

/// The camera's description without opening the camera: completion must not touch what it is set to.
Json DescriptionOf(const std::string& device) {
    const TransportLayer layer;
    GenICam::gcstring source;
    GenICam::gcstring xml;
    Vanto::IXmlFileProvider* provider = layer.Require().GetXmlFileProvider();
    if (provider != nullptr)
        provider->ProvideXMLFile(FindDevice(layer, device), source, xml);
    return FeatureTreeJson(DescriptionModel(xml.str()));
}

template <class Visit>
void ForEachFeature(const Json& tree, const Visit& visit) {
    for (const Json& feature : tree.at("Features")) {
        if (feature.contains("Features"))
            ForEachFeature(feature, visit);
        else
            visit(feature);
    }
}

/// \param[in] kind "features" for those with a value, "executables" for commands, "entries" for those of one feature
void PrintFeatureWords(Output& output, const std::string& kind, const std::string& device, const std::string& name) {
    ForEachFeature(DescriptionOf(device), [&](const Json& feature) {
        const bool isCommand = feature.at("Interface") == "Command";
        if (kind == "entries" && feature.at("Name") == name) {
            if (feature.contains("Entries"))
                for (const Json& entry : feature.at("Entries"))
                    PrintWord(output, entry);
            if (feature.at("Interface") == "Boolean")
                output.Print("on\noff\n");
        } else if (kind != "entries" && isCommand == (kind == "executables")) {
            PrintWord(output, feature.at("Name"));
        }
    });
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
