/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Rules about enumerations and their entries
 */
#include <fmt/format.h>

#include <map>

#include "description/rules/Numbers.h"
#include "description/rules/Rules.h"
#include "output/Text.h"

namespace tools {

namespace {

void CheckEntryNames(RuleReport& report, const DescribedNode& enumeration) {
    std::map<std::string, const DescribedNode*> names;
    std::map<WholeValue, const DescribedNode*> values;
    for (const std::size_t index : enumeration.entries) {
        const DescribedNode& entry = report.Model().Nodes()[index];
        if (!names.emplace(entry.name, &entry).second)
            report.Add("duplicate-entry-name", entry.place,
                       fmt::format("{} has two entries '{}'", Label(enumeration), Printable(entry.name)));
        const auto value = WholeNumber(entry.Text("Value"));
        if (!value)
            continue;
        const auto [first, isNew] = values.emplace(*value, &entry);
        if (!isNew && first->second->name != entry.name)
            report.Add("duplicate-entry-value", entry.place,
                       fmt::format("entries '{}' and '{}' of {} have one value", Printable(first->second->name),
                                   Printable(entry.name), Label(enumeration)),
                       "reading can only give one of them");
    }
}

void CheckEntryValues(RuleReport& report, const DescribedNode& enumeration) {
    const NodeElement* const value = enumeration.Find("pValue");
    const DescribedNode* const target = value != nullptr ? report.Model().TargetOf(*value) : nullptr;
    const RegisterRange range = RangeOf(target);
    for (const std::size_t index : enumeration.entries) {
        const DescribedNode& entry = report.Model().Nodes()[index];
        const NodeElement* const number = entry.Find("Value");
        if (number == nullptr) {
            report.Add("entry-without-value", entry.place,
                       fmt::format("entry '{}' of {} has no value", Printable(entry.name), Label(enumeration)));
            continue;
        }
        const auto wide = WholeNumber(number->text);
        if (wide && !range.Contains(*wide))
            report.Add("entry-outside-register", number->place,
                       fmt::format("value {} of entry '{}' of {} does not fit into {}", Printable(number->text),
                                   Printable(entry.name), Label(enumeration), Label(*target)));
    }
}

}  // namespace

void CheckEnumerations(RuleReport& report) {
    for (const DescribedNode& node : report.Model().Nodes()) {
        if (node.kind != "Enumeration")
            continue;
        CheckEntryNames(report, node);
        CheckEntryValues(report, node);
    }
}

}  // namespace tools
