/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the doctor found, ready to be printed
 */
#include "doctor/Report.h"

#include <fmt/format.h>

#include <algorithm>

#include "output/Output.h"
#include "output/Text.h"
#include "system/Environment.h"

namespace tools {

namespace {

constexpr std::size_t kWidestSubject = 34;

std::string Mark(const Output& output, Health health) {
    switch (health) {
        case Health::kFine:
            return output.Styled(Style::kGood, "ok  ");
        case Health::kWarning:
            return output.Styled(Style::kWarning, "warn");
        case Health::kBad:
            return output.Styled(Style::kBad, "BAD ");
        case Health::kRemark:
            break;
    }
    return "    ";
}

const char* Name(Health health) {
    switch (health) {
        case Health::kFine:
            return "ok";
        case Health::kWarning:
            return "warning";
        case Health::kBad:
            return "bad";
        case Health::kRemark:
            break;
    }
    return "remark";
}

/// "Serial ports" is SerialPorts for programs.
std::string KeyOf(const std::string& title) {
    std::string key;
    bool isFirst = true;
    for (const char letter : title) {
        if (letter != ' ')
            key += isFirst && letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
        isFirst = letter == ' ';
    }
    return key;
}

void PrintSection(Output& output, const Section& section) {
    output.Line(output.Styled(Style::kBold, section.title));
    std::size_t column = 0;
    for (const Observation& observation : section.observations)
        column = std::max(column, std::min(DisplayWidth(Printable(observation.subject)), kWidestSubject));
    for (const Observation& observation : section.observations) {
        const std::string subject = Printable(observation.subject);
        const std::string padding(column - std::min(column, DisplayWidth(subject)), ' ');
        output.Prose(fmt::format("  {} {}{}  {}", Mark(output, observation.health), subject, padding,
                                 Printable(observation.state)),
                     "       ");
        if (!observation.advice.empty())
            output.Prose(fmt::format("       -> {}", Printable(observation.advice)), "          ");
    }
    output.Line();
}

}  // namespace

void Print(Output& output, const Report& report) {
    output.Line(fmt::format("vanto-cl {} on {}\n", VANTO_CL_VERSION, SystemName()));
    for (const Section& section : report.sections)
        PrintSection(output, section);
    output.Prose(output.Styled(Style::kBold, "Verdict: ") +
                 output.Styled(report.healthy ? Style::kGood : Style::kBad, PrintableLines(report.verdict)));
    if (!report.nextStep.empty())
        output.Prose(output.Styled(Style::kBold, "Next step: ") + PrintableLines(report.nextStep));
}

Json ToJson(const Report& report) {
    Json sections = Json::object();
    for (const Section& section : report.sections) {
        Json observations = Json::array();
        for (const Observation& observation : section.observations)
            observations.push_back({{"Subject", observation.subject},
                                    {"Health", Name(observation.health)},
                                    {"State", observation.state},
                                    {"Advice", observation.advice}});
        sections[KeyOf(section.title)] = std::move(observations);
    }
    return {{"Version", VANTO_CL_VERSION}, {"System", SystemName()},      {"Healthy", report.healthy},
            {"Verdict", report.verdict},   {"NextStep", report.nextStep}, {"Sections", std::move(sections)}};
}

}  // namespace tools
