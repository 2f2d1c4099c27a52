/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The rules by name, and all of them together
 */
#include "description/rules/Rules.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

#include "output/Text.h"

namespace tools {

namespace {

constexpr Severity kError = Severity::kError;
constexpr Severity kWarning = Severity::kWarning;
constexpr Severity kNote = Severity::kNote;

// In the order in which docs/linter.md shows them.
constexpr Rule kRules[]{
    {"not-loadable", kError, "the description can't be loaded"},
    {"dangling-reference", kError, "a reference leads to no node"},
    {"circle", kError, "a value or access rule depends on itself"},
    {"category-circle", kError, "a category holds itself"},
    {"no-root", kError, "there is no category Root"},
    {"unreachable-feature", kWarning, "nothing leads to a feature"},
    {"unreachable-helpers", kNote, "nothing leads to nodes that only serve others"},
    {"unusable-node", kError, "the node-map engine can't use a node"},
    {"bad-value", kError, "a value is none of its kind"},
    {"questionable", kWarning, "the node-map engine takes something in another way than it is written"},
    {"duplicate-name", kError, "two nodes have one name"},
    {"missing-address", kError, "a register has no address"},
    {"missing-length", kError, "a register has no length"},
    {"missing-endianess", kWarning, "a register does not say in which order its bytes stand"},
    {"integer-register-length", kError, "an integer register is not 1 to 8 bytes long"},
    {"float-register-length", kError, "a floating-point register is neither 4 nor 8 bytes long"},
    {"bits-outside-register", kError, "a bit field has bits that its register does not have"},
    {"bits-wrong-way-round", kError, "LSB and MSB are exchanged"},
    {"unknown-access-mode", kError, "an access mode does not exist"},
    {"min-above-max", kError, "a minimum is above the maximum"},
    {"inc-not-positive", kError, "an increment is 0 or negative"},
    {"range-outside-register", kWarning, "a limit does not fit into the register"},
    {"unknown-unit", kNote, "no tool knows a unit"},
    {"on-equals-off", kError, "a Boolean has one value for on and off"},
    {"command-without-value", kWarning, "a command does not say what to write"},
    {"entry-without-value", kError, "an entry has no value"},
    {"entry-outside-register", kError, "an entry's value does not fit into the register"},
    {"duplicate-entry-name", kError, "an enumeration has two entries with one name"},
    {"duplicate-entry-value", kWarning, "an enumeration has two entries with one value"},
    {"division-by-zero", kError, "a formula divides by a constant 0"},
    {"unused-variable", kNote, "no formula uses a variable"},
    {"formula-ignores-value", kWarning, "a converter's formula does not depend on what it converts"},
    {"selects-itself", kError, "a selector selects itself"},
    {"invalidates-itself", kNote, "a node invalidates itself"},
    {"feature-in-two-categories", kNote, "a feature stands in two categories"},
    {"polling-a-constant", kNote, "what can't change is polled"},
    {"uncached-below-many", kWarning, "a register that is never cached serves very many nodes"},
    {"missing-standard-feature", kNote, "a feature that SFNC makes a duty is missing"},
    {"standard-name-other-type", kWarning, "a name of SFNC stands for another type"},
    {"standard-name-custom", kNote, "a name of SFNC stands in the custom name space"}};

}  // namespace

std::span<const Rule> AllRules() {
    return kRules;
}

/// The rule of a name; throws std::logic_error where there is none.
const Rule& RuleOf(std::string_view id) {
    const auto found = std::ranges::find(kRules, id, &Rule::id);
    if (found == std::end(kRules))
        throw std::logic_error(fmt::format("the linter has no rule '{}'", id));
    return *found;
}

void RuleReport::Add(std::string_view rule, const Place& place, std::string text, std::string hint) {
    m_findings.push_back({RuleOf(rule).severity, place, std::move(text), std::move(hint), std::string(rule)});
}

std::string Label(const DescribedNode& node) {
    return node.name.empty() ? ShownName(node) : fmt::format("{} '{}'", node.kind, Printable(node.name));
}

/// What the rules find that look at the text alone.
std::vector<Finding> FindBrokenRules(const DescriptionModel& model) {
    RuleReport report(model);
    for (const auto check :
         {CheckRegisters, CheckValues, CheckEnumerations, CheckFormulas, CheckStructure, CheckStandard})
        check(report);
    return report.Take();
}

}  // namespace tools
