/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Findings as compilers print them, and as JSON
 */
#include "findings/FindingPrinter.h"

#include <fmt/format.h>

#include <algorithm>

#include "output/Json.h"
#include "output/Output.h"
#include "output/Text.h"

namespace tools {

namespace {

// A value of an annotation, in which its own signs are written in hexadecimal.
std::string Annotated(const std::string& text, bool isProperty) {
    std::string result;
    for (const char character : text) {
        const bool isSign = character == '%' || character == '\r' || character == '\n' ||
                            (isProperty && (character == ':' || character == ','));
        result += isSign ? fmt::format("%{:02X}", static_cast<unsigned char>(character)) : std::string(1, character);
    }
    return result;
}

Style StyleOf(Severity severity) {
    return severity == Severity::kError ? Style::kBad : Style::kWarning;
}

std::string Counted(std::uint64_t count, const char* what) {
    return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

}  // namespace

const char* NameOf(Severity severity) {
    switch (severity) {
        case Severity::kError:
            return "error";
        case Severity::kWarning:
            return "warning";
        case Severity::kNote:
            return "note";
    }
    return "";
}

/// Prints "file:line:column: error: text [rule]", the hint below, and at the end a summary with the numbers.
void PrintFindings(Output& output, const std::string& file, const Findings& findings, const std::string& summary) {
    std::size_t shown = 0;
    for (const Finding& finding : findings) {
        if (++shown > Findings::kMostShown)
            break;
        const std::string place =
            finding.place.line > 0 ? fmt::format(":{}:{}", finding.place.line, finding.place.column) : "";
        output.Prose(fmt::format("{}{}: {} {}{}", Printable(file), place,
                                 output.Styled(StyleOf(finding.severity), std::string(NameOf(finding.severity)) + ":"),
                                 PrintableLines(finding.text), finding.rule.empty() ? "" : " [" + finding.rule + "]"),
                     "  ");
        if (!finding.hint.empty())
            output.Prose("  " + PrintableLines(finding.hint), "  ");
    }
    const std::uint64_t left = findings.LeftOut() + findings.size() - std::min(findings.size(), Findings::kMostShown);
    if (left > 0)
        output.Line(fmt::format("... and {} more", left));
    output.Prose(fmt::format("{}: {}{}, {}{}", Printable(file), summary, Counted(findings.Errors(), "error"),
                             Counted(findings.Warnings(), "warning"),
                             findings.Notes() > 0 ? ", " + Counted(findings.Notes(), "note") : ""));
}

void PrintFindingsAsJson(Output& output, const std::string& file, const Findings& findings) {
    Json list = Json::array();
    for (const Finding& finding : findings)
        list.push_back({{"Severity", NameOf(finding.severity)},
                        {"Rule", finding.rule},
                        {"Line", finding.place.line},
                        {"Column", finding.place.column},
                        {"Text", finding.text},
                        {"Hint", finding.hint}});
    output.Line(ToText(Json{{"Path", file},
                            {"Fine", !findings.HasErrors()},
                            {"Errors", findings.Errors()},
                            {"Warnings", findings.Warnings()},
                            {"Notes", findings.Notes()},
                            {"Findings", std::move(list)}}));
}

void PrintFindingsAsAnnotations(Output& output, const std::string& file, const Findings& findings) {
    for (const Finding& finding : findings) {
        const char* const kind = finding.severity == Severity::kNote ? "notice" : NameOf(finding.severity);
        const std::string text = finding.hint.empty() ? finding.text : finding.text + "\n" + finding.hint;
        output.Line(fmt::format("::{} file={},line={},col={},title={}::{}", kind, Annotated(file, true),
                                finding.place.line, finding.place.column, Annotated(finding.rule, true),
                                Annotated(text, false)));
    }
}

}  // namespace tools
