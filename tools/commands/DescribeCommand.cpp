/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl describe: a camera description from a file
 */
#include <fmt/format.h>
#include <memory>
#include <string>

#include "commands/Commands.h"
#include "commands/Options.h"
#include "description/FeatureTree.h"
#include "description/Linter.h"
#include "findings/FindingPrinter.h"
#include "output/Output.h"
#include "system/Files.h"

namespace tools {

namespace {

class DescribeCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::string m_file;
    bool m_tree = false;
    bool m_json = false;
    bool m_check = false;
};

}  // namespace

void DescribeCommand::Declare(Options& options) {
    options.Argument("FILE", m_file, "A camera description: XML, or a ZIP file that holds one");
    options.Flag("--tree", m_tree, "Print the feature tree (this is what happens without options)");
    options.Flag("--json", m_json, "Print the feature tree, or with --check the findings, as JSON");
    options.Flag("--check", m_check, "Say what is wrong with the description, with line and column");
    options.Exclude("--tree", "--json");
    options.Exclude("--tree", "--check");
    options.Footer(
        "No camera is needed: what only a camera can tell is shown as the name of the node that knows it.\n"
        "--check ends with 1 when it finds an error: something that keeps a feature from working.");
}

ExitCode DescribeCommand::Run(Output& output) {
    const std::string text = ReadDescriptionText(PathOf(m_file));
    if (m_check) {
        const Findings findings = LintDescription(text);
        if (m_json)
            PrintFindingsAsJson(output, m_file, findings);
        else
            PrintFindings(output, m_file, findings, "");
        return findings.HasErrors() ? ExitCode::kFailed : ExitCode::kDone;
    }
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

std::unique_ptr<Command> MakeDescribeCommand() {
    return std::make_unique<DescribeCommand>();
}

}  // namespace tools
