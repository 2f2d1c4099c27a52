/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl describe: a camera description from a file
 */
#include <fmt/format.h>
#include <string>

#include "commands/Commands.h"
#include "commands/Options.h"
#include "description/FeatureTree.h"
#include "description/Linter.h"
#include "description/Sarif.h"
#include "findings/FindingPrinter.h"
#include "output/Output.h"
#include "system/Files.h"

namespace tools {

namespace {

/// The findings of a level and above.
Findings OfLevel(const Findings& all, Severity lowest) {
    Findings findings;
    for (const Finding& finding : all)
        if (finding.severity <= lowest)
            findings.Add(finding);
    return findings;
}

Severity LevelOf(const std::string& word) {
    if (word == "error")
        return Severity::kError;
    return word == "warning" ? Severity::kWarning : Severity::kNote;
}

void Print(Output& output, const std::string& format, const std::string& file, const Findings& findings) {
    if (format == "json")
        PrintFindingsAsJson(output, file, findings);
    else if (format == "github")
        PrintFindingsAsAnnotations(output, file, findings);
    else if (format == "sarif")
        output.Line(ToText(SarifOf(file, findings)));
    else
        PrintFindings(output, file, findings, "");
}

class DescribeCommand : public Command {
public:
    void Declare(Options& options) override {
        options.Argument("FILE", m_file,
                         "A camera description: XML, or a ZIP file that holds one; - for standard input");
        options.Flag("--tree", m_tree, "Print the feature tree (this is what happens without options)");
        options.Flag("--json", m_json, "Print the feature tree, or with --check the findings, as JSON");
        options.Flag("--check", m_check, "Say what is wrong with the description, with line and column");
        options.Choice("--level", m_level, {"error", "warning", "note"}, "With --check: leave out what is below");
        options.Choice("--format", m_format, {"text", "json", "github", "sarif"},
                       "With --check: for people or programs");
        options.Exclude("--tree", "--json");
        options.Exclude("--tree", "--check");
        options.Exclude("--json", "--format");
        options.Notes(
            "No camera is needed: what only a camera can tell is shown as the name of the node that knows it. "
            "--check ends with 1 when it finds an error: something that keeps a feature from working. Each "
            "finding ends with the name of its rule; docs/linter.md explains them.");
        options.Example("vanto-cl describe camera.xml", "The feature tree");
        options.Example("vanto-cl describe camera.xml --check --level warning", "What is wrong with it");
    }

    ExitCode Run(Output& output) override {
        const std::string text = ReadDescriptionText(PathOf(m_file));
        if (m_check) {
            const Findings findings = OfLevel(LintDescription(text), LevelOf(m_level));
            Print(output, m_json ? "json" : m_format, m_file, findings);
            return findings.HasErrors() ? ExitCode::kFailed : ExitCode::kDone;
        }
        if (!m_level.empty() || !m_format.empty())
            throw ToolError("--level and --format belong to --check", "Example: describe FILE --check --level warning",
                            ExitCode::kUsage);
        try {
            const DescriptionModel model(text);
            if (m_json)
                output.Line(ToText(FeatureTreeJson(model)));
            else
                PrintFeatureTree(output, model);
        } catch (const ToolError& failure) {
            throw ToolError(fmt::format("{}: {}", m_file, failure.what()), failure.Hint());
        }
        return ExitCode::kDone;
    }

private:
    std::string m_file;
    bool m_tree = false;
    bool m_json = false;
    bool m_check = false;
    std::string m_level;
    std::string m_format;
};

}  // namespace

constexpr CommandEntry kDescribeCommand{"describe", "Show or check a camera description from a file",
                                        &Make<DescribeCommand>};

}  // namespace tools
