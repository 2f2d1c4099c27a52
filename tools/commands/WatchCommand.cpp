/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl watch: prints features when they change
 */
#include <fmt/format.h>
#include <limits>
#include <string>
#include <vector>

#include "commands/Commands.h"
#include "commands/DeviceCommand.h"
#include "commands/Options.h"
#include "features/FeatureInput.h"
#include "features/FeatureText.h"
#include "features/FeatureWalk.h"
#include "features/OpenDevice.h"
#include "features/OptionNumbers.h"
#include "output/Output.h"
#include "output/Text.h"
#include "system/Interruptible.h"
#include "values/FeatureValueAccess.h"

namespace tools {

namespace {

/// One feature and what was printed of it last.
class Watched {
public:
    explicit Watched(GenApi::INode& node) : m_node(node), m_name(node.GetName().str()) {}

    /// Asks the camera; prints the value when it is another one.
    void Look(Output& output, bool json) {
        m_node.InvalidateNode();
        const bool isReadable = GenApi::IsReadable(m_node.GetAccessMode());
        const std::string text = isReadable ? Vanto::ReadText(m_node) : std::string();
        if (m_printed && isReadable == m_wasReadable && text == m_text)
            return;
        m_printed = true;
        m_wasReadable = isReadable;
        m_text = text;
        if (json)
            // One line for each change, so that a reader need not wait for the end.
            output.Line(ToLine(Json{{"Name", m_name}, {"Value", isReadable ? ValueJson(m_node) : Json(nullptr)}}));
        else
            output.Line(isReadable ? fmt::format("{}={}", m_name, Printable(text)) : m_name + " is not available");
    }

private:
    GenApi::INode& m_node;
    std::string m_name;
    std::string m_text;
    bool m_wasReadable = false;
    bool m_printed = false;
};

class WatchCommand : public DeviceCommand {
public:
    void Declare(Options& options) override {
        DeviceCommand::Declare(options);
        options.Arguments("NAME", m_names, "Names of features");
        options.Value("--interval", m_interval, "SECONDS", "Time from one look to the next (0.5)");
        options.Value("--count", m_count, "N", "End after N looks; without it Ctrl-C ends it");
        options.Flag("--json", m_json, "Print a JSON object in a line for each change");
        options.Notes("The first look prints all values, later ones print what changed.");
        options.Example("vanto-cl watch 0 DeviceTemperature --interval 2", "Look every two seconds");
    }

    ExitCode Run(Output& output) override {
        const auto interval = DurationOption("--interval", m_interval);
        constexpr std::int64_t kEndless = std::numeric_limits<std::int64_t>::max();
        const std::int64_t count = m_count.empty() ? kEndless : NumberOption("--count", m_count, 1, kEndless);
        const OpenDevice device(Device(), output);
        std::vector<Watched> watched;
        for (const std::string& name : m_names) {
            GenApi::INode& node = FindFeature(device.Nodes(), name);
            if (!Vanto::HasValue(node))
                CheckReadable(node);
            watched.emplace_back(node);
        }
        for (std::int64_t look = 1; !Interruption::Requested(); ++look) {
            for (Watched& one : watched)
                one.Look(output, m_json);
            device.ThrowIfGone();
            // Nobody reads any more: an end like any other, which the application reports.
            if (!output.Flush() || look == count || !SleepUninterrupted(interval))
                break;
        }
        return ExitCode::kDone;
    }

private:
    std::vector<std::string> m_names;
    std::string m_interval = "0.5";
    std::string m_count;
    bool m_json = false;
};

}  // namespace

constexpr CommandEntry kWatchCommand{"watch", "Print features whenever they change", &Make<WatchCommand>};

}  // namespace tools
