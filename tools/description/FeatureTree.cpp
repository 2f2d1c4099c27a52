/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The feature tree of a description, as text and as JSON
 */
#include "description/FeatureTree.h"

#include <fmt/format.h>

#include <set>

#include "description/FeatureFacts.h"
#include "error/ExitCode.h"
#include "output/Table.h"

namespace tools {

namespace {

constexpr std::size_t kDeepest = 50;

const DescribedNode& RootOf(const DescriptionModel& model) {
    const DescribedNode* root = model.Find("Root");
    if (root == nullptr)
        throw ToolError("the description has no category 'Root'", "'vanto-cl describe FILE --check' says more.");
    return *root;
}

std::string FirstSentence(const std::string& text) {
    const std::size_t end = text.find(". ");
    return end == std::string::npos ? text : text.substr(0, end + 1);
}

/// Walks the tree. A category that comes a second time is named, but not opened again: files hold circles.
template <class Visit>
class Walk {
public:
    Walk(const DescriptionModel& model, Visit visit) : m_model(model), m_visit(std::move(visit)) {}

    void Below(const DescribedNode& category, std::size_t depth) {
        if (depth >= kDeepest || !m_opened.insert(&category).second)
            return;
        for (const NodeElement& element : category.elements) {
            const DescribedNode* node = element.name == "pFeature" ? m_model.Find(element.text) : nullptr;
            if (node == nullptr)
                continue;
            m_visit(*node, depth);
            if (node->kind == "Category")
                Below(*node, depth + 1);
        }
    }

private:
    const DescriptionModel& m_model;
    Visit m_visit;
    std::set<const DescribedNode*> m_opened;
};

Json ToJson(const DescriptionModel& model, const DescribedNode& node) {
    const FeatureFacts facts = FactsOf(model, node);
    Json json{{"Name", node.name},
              {"Kind", node.kind},
              {"Interface", facts.interfaceName},
              {"Access", facts.access},
              {"Visibility", facts.visibility},
              {"Line", node.place.line}};
    const auto addText = [&](const char* name, const std::string& text) {
        if (!text.empty())
            json[name] = text;
    };
    addText("DisplayName", node.Text("DisplayName"));
    addText("Min", facts.minimum);
    addText("Max", facts.maximum);
    addText("Inc", facts.increment);
    addText("Unit", facts.unit);
    addText("Documentation", facts.documentation);
    if (!facts.entries.empty())
        json["Entries"] = facts.entries;
    for (const auto& [condition, name] : facts.conditions)
        json["Conditions"].push_back(condition + " " + name);
    return json;
}

}  // namespace

/// Prints one line for each feature, indented below its category.
void PrintFeatureTree(Output& output, const DescriptionModel& model) {
    Table table({KeyColumn("Feature"), {"Kind"}, {"Access"}, {"Range, entries, unit"}, {"What it is"}});
    const auto visit = [&](const DescribedNode& node, std::size_t depth) {
        const FeatureFacts facts = FactsOf(model, node);
        const std::string indent(2 * depth, ' ');
        if (node.kind == "Category")
            table.AddRow({{indent + node.name, Style::kBold}, "", "", "", FirstSentence(facts.documentation)});
        else
            table.AddRow({indent + node.name, facts.interfaceName, facts.access, RangeText(facts),
                          FirstSentence(facts.documentation)});
    };
    Walk(model, visit).Below(RootOf(model), 0);
    table.PrintTo(output);
}

/// The description's attributes and its tree: each category has its features in "Features".
Json FeatureTreeJson(const DescriptionModel& model) {
    Json json = Json::object();
    for (const auto& [name, value] : model.Attributes())
        if (name.find(':') == std::string::npos && name != "xmlns")
            json[name] = value;
    json["Features"] = Json::array();
    const auto visit = [&](const DescribedNode& node, std::size_t depth) {
        Json* features = &json["Features"];
        for (std::size_t level = 0; level < depth; ++level)
            features = &features->back()["Features"];
        Json feature = ToJson(model, node);
        if (node.kind == "Category")
            feature["Features"] = Json::array();
        features->push_back(std::move(feature));
    };
    Walk(model, visit).Below(RootOf(model), 0);
    return json;
}

}  // namespace tools
