/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl features: a camera's features and their values
 */
#include <fmt/format.h>

#include <string>

#include "commands/Commands.h"
#include "commands/DeviceCommand.h"
#include "commands/Options.h"
#include "features/FeatureFilter.h"
#include "features/FeatureTable.h"
#include "features/FeatureWalk.h"
#include "features/OpenDevice.h"
#include "output/Output.h"

namespace tools {

namespace {

class FeaturesCommand : public DeviceCommand {
public:
    void Declare(Options& options) override {
        DeviceCommand::Declare(options);
        options.OptionalArgument(
            "PATTERN", m_pattern,
            "Only those with these words in name, category or documentation, or named like 'Trigger*'");
        options.Flag("--tree", m_tree, "Show the categories, too");
        options.Flag("--json", m_json, "Print the tree as JSON, with ranges, units and documentation");
        options.Value("--visibility", m_visibility, "LEVEL",
                      "beginner, expert, guru (this is the default) or invisible");
        options.Offer("--visibility", {"beginner", "expert", "guru", "invisible"});
        options.Exclude("--tree", "--json");
        options.Notes(
            "Ranges and entries are what the camera takes at present. Where one can't be read, its place says "
            "why, and the exit code is 1.");
        options.Example("vanto-cl features 0", "All features with their values");
        options.Example("vanto-cl features 0 'Trigger*'", "Those whose names begin so");
        options.Example("vanto-cl features 0 'exposure auto'",
                        "Those with both words in name, category or documentation");
    }

    ExitCode Run(Output& output) override {
        const GenApi::EVisibility visibility = VisibilityFromWord(m_visibility);
        const OpenDevice device(Device(), output);
        const std::vector<TreeNode> features = SelectFeatures(device.Nodes(), visibility, m_pattern);
        const std::size_t failures =
            m_json ? PrintFeaturesAsJson(output, device, features) : PrintFeatures(output, device, features, m_tree);
        if (failures == 0)
            return ExitCode::kDone;
        output.Warn(fmt::format("{} of the values could not be read", failures));
        return ExitCode::kFailed;
    }

private:
    std::string m_pattern;
    std::string m_visibility = "guru";
    bool m_tree = false;
    bool m_json = false;
};

}  // namespace

constexpr CommandEntry kFeaturesCommand{"features", "List a camera's features with their values",
                                        &Make<FeaturesCommand>};

}  // namespace tools
