/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Finds what is wrong with a camera description: references, reachability, and all of it together
 */
#include "description/Linter.h"

#include <fmt/format.h>

#include <algorithm>

#include "error/ExitCode.h"
#include "output/Text.h"

namespace tools {

namespace {

constexpr std::string_view kRoot = "Root";

std::string Label(const DescribedNode& node) {
    return node.name.empty() ? ShownName(node) : fmt::format("{} '{}'", node.kind, Printable(node.name));
}

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
            findings.push_back({Severity::kError, element.place,
                                fmt::format("{} of {} refers to '{}', which does not exist", element.name, Label(node),
                                            Printable(element.text)),
                                findings.size() < Findings::kMost ? DidYouMean(element.text, names) : std::string()});
        }
    }
    return findings;
}

/// Nodes that the category Root leads to neither directly nor through others.
std::vector<Finding> FindUnreachableNodes(const DescriptionModel& model) {
    const DescribedNode* root = model.Find(kRoot);
    if (root == nullptr)
        return {{Severity::kError, {}, "there is no category 'Root', so no feature can be reached", {}}};
    const std::vector<bool> reached = Reached(model, model.IndexOf(*root));
    // Of nodes that only serve another unreachable one, that one is enough to name.
    std::vector<bool> serves(reached.size(), false);
    for (std::size_t index = 0; index < reached.size(); ++index)
        for (const NodeElement& element : model.Nodes()[index].elements)
            if (const DescribedNode* target = model.TargetOf(element);
                target != nullptr && !reached[index] && model.IndexOf(*target) != index)
                serves[model.IndexOf(*target)] = true;
    std::vector<Finding> findings;
    for (std::size_t index = 0; index < reached.size(); ++index) {
        const DescribedNode& node = model.Nodes()[index];
        if (!reached[index] && !serves[index] && !NeedsNoReference(node))
            findings.push_back({Severity::kWarning,
                                node.place,
                                fmt::format("{} can't be reached: the category Root does not lead to it", Label(node)),
                                {}});
    }
    return findings;
}

/**
 * \brief Find everything that is wrong with a description
 * \param[in] text The XML text
 * \return Findings in the order of the file
 */
Findings LintDescription(const std::string& text) {
    Findings findings;
    const auto addAll = [&](const std::vector<Finding>& more) {
        for (const Finding& finding : more)
            findings.Add(finding);
    };
    try {
        const DescriptionModel model(text);
        addAll(FindDanglingReferences(model));
        addAll(FindCycles(model));
        addAll(FindEngineComplaints(model, text));
        addAll(FindUnreachableNodes(model));
    } catch (const ToolError& failure) {
        findings.Add({Severity::kError, {}, failure.what(), failure.Hint()});
    }
    findings.SortByPlace();
    return findings;
}

}  // namespace tools
