/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Why a feature is not available, or only to be read
 */
#include "features/Unavailability.h"

#include <fmt/format.h>

#include <set>
#include <vector>

#include "values/FeatureValueAccess.h"

namespace tools {

namespace {

struct Condition {
    const char* element;   ///< of the description
    bool whenTrue;         ///< restricts the feature when its node is true
    const char* sentence;  ///< what it means
};

constexpr Condition kConditions[] = {{"pIsImplemented", false, "this camera does not have it"},
                                     {"pIsAvailable", false, "it is switched off"},
                                     {"pIsLocked", true, "it is locked"}};

bool IsTrue(GenApi::INode& node) {
    if (const GenApi::CBooleanPtr boolean(&node); boolean.IsValid())
        return boolean->GetValue();
    const GenApi::CIntegerPtr integer(&node);
    return integer.IsValid() && integer->GetValue() != 0;
}

/// The features that a condition looks at, each with its value; other nodes stand between.
void AddCauses(GenApi::INode& node, std::set<const GenApi::INode*>& seen, std::vector<std::string>& causes) {
    if (!seen.insert(&node).second)
        return;
    if (node.IsFeature() && Vanto::HasValue(node)) {
        if (GenApi::IsReadable(node.GetAccessMode()))
            causes.push_back(fmt::format("{}={}", node.GetName().str(), Vanto::ReadText(node)));
        return;
    }
    GenApi::NodeList_t children;
    node.GetChildren(children, GenApi::ctReadingChildren);
    for (GenApi::INode* child : children)
        AddCauses(*child, seen, causes);
}

std::string TextOf(const Condition& condition, GenApi::INode& node) {
    std::set<const GenApi::INode*> seen;
    std::vector<std::string> causes;
    AddCauses(node, seen, causes);
    std::string text = fmt::format("{} ({} {}", condition.sentence, condition.element, node.GetName().str());
    for (std::size_t index = 0; index < causes.size(); ++index)
        text += (index == 0 ? "; " : ", ") + causes[index];
    return text + ")";
}

/// The first condition that holds, of the node itself or of a node that its value comes from.
std::string Search(GenApi::INode& node, std::set<const GenApi::INode*>& seen) {
    if (!seen.insert(&node).second)
        return {};
    std::set<std::string> conditions;
    for (const Condition& condition : kConditions) {
        GenICam::gcstring name;
        GenICam::gcstring attribute;
        if (!node.GetProperty(condition.element, name, attribute))
            continue;
        conditions.insert(name.str());
        GenApi::INode* const of = node.GetNodeMap()->GetNode(name);
        if (of != nullptr && GenApi::IsReadable(of->GetAccessMode()) && IsTrue(*of) == condition.whenTrue)
            return TextOf(condition, *of);
    }
    GenApi::NodeList_t children;
    node.GetChildren(children, GenApi::ctReadingChildren);
    for (GenApi::INode* child : children) {
        if (conditions.contains(child->GetName().str()))
            continue;
        if (std::string why = Search(*child, seen); !why.empty())
            return why;
    }
    return {};
}

}  // namespace

std::string WhyRestricted(GenApi::INode& node) {
    try {
        std::set<const GenApi::INode*> seen;
        return Search(node, seen);
    } catch (const GenICam::GenericException& error) {
        return error.GetDescription();
    }
}

}  // namespace tools
