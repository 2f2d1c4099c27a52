/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Rules about how nodes hang together: names, categories, selectors, caching
 */
#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>

#include "description/rules/Numbers.h"
#include "description/rules/Rules.h"
#include "output/Text.h"

namespace tools {

namespace {

constexpr std::size_t kManyNodes = 1000;

void CheckNames(RuleReport& report) {
    std::set<std::string> names;
    for (const DescribedNode& node : report.Model().Nodes())
        if (node.kind != "EnumEntry" && !node.name.empty() && !names.insert(node.name).second)
            report.Add("duplicate-name", node.place, fmt::format("there are two nodes '{}'", Printable(node.name)),
                       "the first one counts");
}

void CheckCategories(RuleReport& report) {
    std::map<std::string, std::string> categories;
    for (const DescribedNode& node : report.Model().Nodes()) {
        if (node.kind != "Category")
            continue;
        for (const NodeElement& element : node.elements) {
            const DescribedNode* const feature = report.Model().TargetOf(element);
            if (element.name != "pFeature" || feature == nullptr || feature->kind == "Category")
                continue;
            const auto [first, isNew] = categories.emplace(element.text, node.name);
            if (!isNew)
                report.Add("feature-in-two-categories", element.place,
                           first->second == node.name
                               ? fmt::format("'{}' stands twice in the category '{}'", Printable(element.text),
                                             Printable(node.name))
                               : fmt::format("'{}' stands in the categories '{}' and '{}'", Printable(element.text),
                                             Printable(first->second), Printable(node.name)));
        }
    }
}

void CheckReferencesToItself(RuleReport& report) {
    for (const DescribedNode& node : report.Model().Nodes()) {
        for (const NodeElement& element : node.elements) {
            if (node.name.empty() || element.text != node.name)
                continue;
            if (element.name == "pSelected")
                report.Add("selects-itself", element.place, Label(node) + " selects itself");
            if (element.name == "pInvalidator")
                report.Add("invalidates-itself", element.place, Label(node) + " invalidates itself");
        }
    }
}

bool IsRegisterKind(const DescribedNode& node) {
    return IsIntegerRegister(node) || node.kind == "FloatReg" || node.kind == "StringReg" || node.kind == "Register";
}

// Whether a value can come from a camera at all: a register is behind it, however far.
bool ReachesRegister(const DescriptionModel& model, std::size_t start) {
    std::vector<std::size_t> pending{start};
    std::set<std::size_t> seen{start};
    while (!pending.empty()) {
        const DescribedNode& node = model.Nodes()[pending.back()];
        pending.pop_back();
        if (IsRegisterKind(node))
            return true;
        for (const NodeElement& element : node.elements)
            if (const DescribedNode* const target = model.TargetOf(element);
                target != nullptr && seen.insert(model.IndexOf(*target)).second)
                pending.push_back(model.IndexOf(*target));
    }
    return false;
}

void CheckPolling(RuleReport& report) {
    const DescriptionModel& model = report.Model();
    for (std::size_t index = 0; index < model.Nodes().size(); ++index) {
        const NodeElement* const polling = model.Nodes()[index].Find("PollingTime");
        if (polling != nullptr && !polling->isInherited && !ReachesRegister(model, index))
            report.Add("polling-a-constant", polling->place,
                       Label(model.Nodes()[index]) + " is polled, but no register is behind it");
    }
}

using Users = std::vector<std::vector<std::size_t>>;

Users UsersOf(const DescriptionModel& model) {
    Users users(model.Nodes().size());
    for (std::size_t index = 0; index < users.size(); ++index)
        for (const NodeElement& element : model.Nodes()[index].elements)
            if (const DescribedNode* const target =
                    element.name != "pFeature" && element.name != "pPort" ? model.TargetOf(element) : nullptr)
                users[model.IndexOf(*target)].push_back(index);
    return users;
}

std::size_t CountUsers(const Users& users, std::size_t start) {
    std::vector<bool> seen(users.size(), false);
    std::vector<std::size_t> pending{start};
    std::size_t count = 0;
    while (!pending.empty()) {
        const std::size_t index = pending.back();
        pending.pop_back();
        for (const std::size_t user : users[index]) {
            if (seen[user])
                continue;
            seen[user] = true;
            ++count;
            pending.push_back(user);
        }
    }
    return count;
}

// Each of those nodes asks the camera again, whenever it is looked at.
void CheckCaching(RuleReport& report) {
    constexpr std::size_t kMostRegisters = 2000;  // a file with more of them is told about these
    const DescriptionModel& model = report.Model();
    if (model.Nodes().size() < kManyNodes)
        return;
    const Users users = UsersOf(model);
    std::size_t looked = 0;
    for (std::size_t index = 0; index < users.size() && looked < kMostRegisters; ++index) {
        const DescribedNode& node = model.Nodes()[index];
        if (!IsRegisterKind(node) || node.Text("Cachable") != "NoCache" || users[index].empty())
            continue;
        ++looked;
        if (const std::size_t count = CountUsers(users, index); count >= kManyNodes)
            report.Add("uncached-below-many", node.Find("Cachable")->place,
                       fmt::format("{} is never cached, and {} nodes need it", Label(node), count));
    }
}

}  // namespace

void CheckStructure(RuleReport& report) {
    CheckNames(report);
    CheckCategories(report);
    CheckReferencesToItself(report);
    CheckPolling(report);
    CheckCaching(report);
}

}  // namespace tools
