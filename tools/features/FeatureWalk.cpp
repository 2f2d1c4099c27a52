/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The features of a node map: by name, and one after the other
 */
#include "features/FeatureWalk.h"

#include <fmt/format.h>

#include <set>

#include "error/ExitCode.h"
#include "output/Text.h"

namespace tools {

namespace {

constexpr std::size_t kDeepest = 50;

/// A category that comes a second time is not opened again: descriptions hold circles.
class Walk {
public:
    Walk(GenApi::EVisibility visibility, const FeatureVisit& visit) : m_visibility(visibility), m_visit(visit) {}

    void Below(GenApi::ICategory& category, std::size_t depth) {
        if (depth >= kDeepest || !m_opened.insert(&category).second)
            return;
        GenApi::FeatureList_t features;
        category.GetFeatures(features);
        for (GenApi::IValue* value : features) {
            GenApi::INode& node = *value->GetNode();
            if (!GenApi::IsVisible(node.GetVisibility(), m_visibility))
                continue;
            m_visit(node, depth);
            if (const GenApi::CCategoryPtr below(&node); below.IsValid())
                Below(*below, depth + 1);
        }
    }

private:
    GenApi::EVisibility m_visibility;
    const FeatureVisit& m_visit;
    std::set<const GenApi::ICategory*> m_opened;
};

}  // namespace

/// Visits categories and features in the order of the description, without those that are not implemented.
void WalkFeatures(GenApi::INodeMap& nodes, GenApi::EVisibility visibility, const FeatureVisit& visit) {
    const GenApi::CCategoryPtr root(nodes.GetNode("Root"));
    if (!root.IsValid())
        throw ToolError("the camera's description has no category 'Root'");
    Walk(visibility, visit).Below(*root, 0);
}

/// All features, categories aside, each once.
std::vector<GenApi::INode*> AllFeatures(GenApi::INodeMap& nodes) {
    std::vector<GenApi::INode*> features;
    std::set<GenApi::INode*> seen;
    WalkFeatures(nodes, GenApi::Invisible, [&](GenApi::INode& node, std::size_t) {
        if (node.GetPrincipalInterfaceType() != GenApi::intfICategory && seen.insert(&node).second)
            features.push_back(&node);
    });
    return features;
}

/**
 * \brief A node by its name, as the description spells it
 *
 * Nodes that are no features are found, too: who knows their name wants them.
 *
 * \throw ToolError There is none; the hint has the name that was probably meant
 */
GenApi::INode& FindFeature(GenApi::INodeMap& nodes, const std::string& name) {
    if (GenApi::INode* node = nodes.GetNode(name))
        return *node;
    std::vector<std::string> names;
    for (const GenApi::INode* feature : AllFeatures(nodes))
        names.push_back(feature->GetName().str());
    const std::string hint = DidYouMean(name, names);
    throw ToolError(fmt::format("there is no feature '{}'", name),
                    hint.empty() ? "'vanto-cl features DEVICE' lists the features." : hint);
}

/// Beginner, Expert, Guru or Invisible in any case; throws ToolError (kUsage).
GenApi::EVisibility VisibilityFromWord(const std::string& word) {
    const std::vector<std::string> levels{"beginner", "expert", "guru", "invisible"};
    for (std::size_t level = 0; level < levels.size(); ++level)
        if (EqualsIgnoringCase(word, levels[level]))
            return static_cast<GenApi::EVisibility>(level);
    const std::string hint = DidYouMean(word, levels);
    throw ToolError(fmt::format("there is no visibility '{}'", word),
                    hint.empty() ? "The levels are beginner, expert, guru and invisible." : hint, ExitCode::kUsage);
}

}  // namespace tools
