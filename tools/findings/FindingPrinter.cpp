/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Findings as compilers print them, and as JSON
 */
#include "findings/FindingPrinter.h"

#include <fmt/format.h>

#include "output/Json.h"
#include "output/Output.h"
#include "output/Text.h"

namespace tools {

namespace {

const char* NameOf(Severity severity) {
    return severity == Severity::kError ? "error" : "warning";
}

std::string Counted(std::uint64_t count, const char* what) {
    return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

}  // namespace

/// Prints "file:line:column: error: text", the hint below, and at the end a summary with the numbers.
void PrintFindings(Output& output, const std::string& file, const Findings& findings, const std::string& summary) {
    for (const Finding& finding : findings) {
        const std::string place =
            finding.place.line > 0 ? fmt::format(":{}:{}", finding.place.line, finding.place.column) : "";
        const Style style = finding.severity == Severity::kError ? Style::kBad : Style::kWarning;
        output.Line(fmt::format("{}{}: {} {}", Printable(file), place,
                                output.Styled(style, std::string(NameOf(finding.severity)) + ":"),
                                PrintableLines(finding.text)));
        if (!finding.hint.empty())
            output.Line("  " + PrintableLines(finding.hint));
    }
    if (findings.LeftOut() > 0)
        output.Line(fmt::format("... and {} more", findings.LeftOut()));
    output.Line(fmt::format("{}: {}{}, {}", Printable(file), summary, Counted(findings.Errors(), "error"),
                            Counted(findings.Warnings(), "warning")));
}

void PrintFindingsAsJson(Output& output, const std::string& file, const Findings& findings) {
    Json list = Json::array();
    for (const Finding& finding : findings)
        list.push_back({{"Severity", NameOf(finding.severity)},
                        {"Line", finding.place.line},
                        {"Column", finding.place.column},
                        {"Text", finding.text},
                        {"Hint", finding.hint}});
    output.Line(ToText(Json{{"Path", file},
                            {"Fine", !findings.HasErrors()},
                            {"Errors", findings.Errors()},
                            {"Warnings", findings.Warnings()},
                            {"Findings", std::move(list)}}));
}

}  // namespace tools
