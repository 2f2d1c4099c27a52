/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Finds what is wrong with a camera description: references, reachability, and all of it together
 */
#include "description/Linter.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "description/rules/Rules.h"
#include "error/ExitCode.h"
#include "output/Text.h"

namespace tools {

namespace {

constexpr std::string_view kRoot = "Root";

/// Likeness is looked for only among so many names: each comparison takes time.
constexpr std::size_t kMostNamesToCompare = 20'000;

std::vector<std::string> AllNames(const DescriptionModel& model) {
    std::vector<std::string> names;
    for (const DescribedNode& node : model.Nodes())
        if (node.kind != "EnumEntry" && names.size() < kMostNamesToCompare)
            names.push_back(node.name);
    return names;
}

/// Nodes that others reach without any reference: the way to the device, and what software asks for by name.
bool NeedsNoReference(const DescribedNode& node) {
    return node.kind == "Port" || node.kind == "EnumEntry" || node.kind == "StructReg" || node.kind == "StructEntry" ||
           node.kind == "ConfRom" || node.name == kRoot || node.name == "TLParamsLocked";
}

/// What nobody would show to a user: formulas, converters and registers of other nodes' making.
bool IsHelper(const DescribedNode& node) {
    static constexpr std::array kKinds{"IntSwissKnife", "SwissKnife", "IntConverter", "Converter", "IntReg",
                                       "MaskedIntReg",  "FloatReg",   "StringReg",    "Register"};
    return node.Text("Visibility") == "Invisible" || std::ranges::find(kKinds, node.kind) != kKinds.end();
}

/// Makers leave such nodes behind by the hundred: one line says enough.
Finding HelpersFinding(const std::vector<const DescribedNode*>& helpers) {
    constexpr std::size_t kMostNames = 5;
    std::string names;
    for (std::size_t index = 0; index < std::min(helpers.size(), kMostNames); ++index)
        names += (index > 0 ? ", " : "") + ShownName(*helpers[index]);
    if (helpers.size() > kMostNames)
        names += " ...";
    return {Severity::kNote,
            helpers.front()->place,
            fmt::format("{} {} can't be reached and {} nothing: {}", helpers.size(),
                        helpers.size() == 1 ? "helper node" : "helper nodes", helpers.size() == 1 ? "serves" : "serve",
                        names),
            {},
            "unreachable-helpers"};
}

std::vector<bool> Reached(const DescriptionModel& model, std::size_t root) {
    std::vector<bool> reached(model.Nodes().size(), false);
    std::vector<std::size_t> pending{root};
    reached[root] = true;
    const auto visit = [&](std::size_t index) {
        if (!reached[index]) {
            reached[index] = true;
            pending.push_back(index);
        }
    };
    while (!pending.empty()) {
        const DescribedNode& node = model.Nodes()[pending.back()];
        pending.pop_back();
        for (const std::size_t entry : node.entries)
            visit(entry);
        for (const NodeElement& element : node.elements)
            if (const DescribedNode* target = model.TargetOf(element))
                visit(model.IndexOf(*target));
    }
    return reached;
}

/// Complaints of the engine about lines of which a rule says more precisely what is wrong.
std::vector<Finding> WithoutKnown(std::vector<Finding> complaints, const std::vector<Finding>& known) {
    std::set<std::uint64_t> lines;
    for (const Finding& finding : known)
        if (finding.severity != Severity::kNote)
            lines.insert(finding.place.line);
    std::erase_if(complaints, [&](const Finding& finding) {
        return finding.place.line != 0 && lines.contains(finding.place.line);
    });
    return complaints;
}

}  // namespace

/// References to nodes that do not exist, with the name that was probably meant.
std::vector<Finding> FindDanglingReferences(const DescriptionModel& model) {
    std::vector<Finding> findings;
    std::vector<std::string> names;
    for (const DescribedNode& node : model.Nodes()) {
        for (const NodeElement& element : node.elements) {
            // What a structure says wrongly is told once, not for each of its entries.
            if (!IsReference(element.name) || element.isInherited || model.TargetOf(element) != nullptr)
                continue;
            if (names.empty())
                names = AllNames(model);
            findings.push_back(
                {Severity::kError, element.place,
                 fmt::format("{} of {} refers to '{}', which does not exist", element.name, Label(node),
                             Printable(element.text)),
                 findings.size() < Findings::kMostShown ? DidYouMean(element.text, names) : std::string(),
                 "dangling-reference"});
        }
    }
    return findings;
}

/// Nodes that the category Root leads to neither directly nor through others.
std::vector<Finding> FindUnreachableNodes(const DescriptionModel& model) {
    const DescribedNode* root = model.Find(kRoot);
    if (root == nullptr)
        return {{Severity::kError, {}, "there is no category 'Root', so no feature can be reached", {}, "no-root"}};
    const std::vector<bool> reached = Reached(model, model.IndexOf(*root));
    // Of nodes that only serve another unreachable one, that one is enough to name.
    std::vector<bool> serves(reached.size(), false);
    for (std::size_t index = 0; index < reached.size(); ++index)
        for (const NodeElement& element : model.Nodes()[index].elements)
            if (const DescribedNode* target = model.TargetOf(element);
                target != nullptr && !reached[index] && model.IndexOf(*target) != index)
                serves[model.IndexOf(*target)] = true;
    std::vector<Finding> findings;
    std::vector<const DescribedNode*> helpers;
    for (std::size_t index = 0; index < reached.size(); ++index) {
        const DescribedNode& node = model.Nodes()[index];
        const bool isHidden = model.Find(node.name) != &node && !node.name.empty();  // by another node of its name
        if (reached[index] || serves[index] || isHidden || NeedsNoReference(node))
            continue;
        if (IsHelper(node))
            helpers.push_back(&node);
        else
            findings.push_back({Severity::kWarning,
                                node.place,
                                fmt::format("{} can't be reached: the category Root does not lead to it", Label(node)),
                                {},
                                "unreachable-feature"});
    }
    if (!helpers.empty())
        findings.push_back(HelpersFinding(helpers));
    return findings;
}

/**
 * \brief Find everything that is wrong with a description
 * \param[in] text The XML text
 * \return Findings in the order of the file
 */
Findings LintDescription(const std::string& text) {
    std::vector<Finding> all;
    const auto addAll = [&](std::vector<Finding> more) {
        all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    };
    try {
        const DescriptionModel model(text);
        addAll(FindDanglingReferences(model));
        addAll(FindCycles(model));
        addAll(FindBrokenRules(model));
        addAll(WithoutKnown(FindEngineComplaints(model, text), all));
        addAll(FindUnreachableNodes(model));
    } catch (const ToolError& failure) {
        all.push_back({Severity::kError, {}, failure.what(), failure.Hint(), "not-loadable"});
    }
    Findings findings;
    for (Finding& finding : all)
        findings.Add(std::move(finding));
    findings.SortByPlace();
    return findings;
}

}  // namespace tools
