/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a node leads to: parts of its value, children, parents, selectors
 */

#include <algorithm>
#include <unordered_set>
#include <vector>

#include "GenApi/AccessMode.h"
#include "core/Node.h"
#include "core/NodeMap.h"
#include "schema/Values.h"

namespace GenApi {

namespace {

// What a value is made of, the place of a register included.
bool IsPartOfValue(ETag tag) {
    switch (tag) {
        case ETag::pValue:
        case ETag::pValueIndexed:
        case ETag::pValueDefault:
        case ETag::pIndex:
        case ETag::AttributePOffset:
        case ETag::pVariable:
        case ETag::pAddress:
        case ETag::pLength:
        case ETag::p1212Parser:
            return true;
        default:
            return false;
    }
}

ECachingMode LessCaching(ECachingMode left, ECachingMode right) {
    if (left == NoCache || right == NoCache)
        return NoCache;
    return left == WriteAround ? left : right;
}

}  // namespace

/**
 * \brief How the node's value is cached: like the part of it that is cached least
 *
 * Parts are the registers that the value comes from, and whatever they or formulas are computed from.
 */
ECachingMode CNode::GetCachingMode() const {
    ECachingMode mode = WriteThrough;
    std::vector<const CNode*> parts{this};
    std::unordered_set<const CNode*> seen{this};
    const auto addPartsOf = [&](const CNode& node) {
        for (const Property& property : node.Properties()) {
            const CNode* part = IsPartOfValue(property.tag) ? node.NodeOf(property) : nullptr;
            if (part != nullptr && seen.insert(part).second)
                parts.push_back(part);
        }
    };
    for (std::size_t next = 0; next < parts.size() && mode != NoCache; ++next) {
        const CNode& node = *parts[next];
        if (const Property* caching = node.Find(ETag::Cachable))
            mode = LessCaching(mode, ParseWord<ECachingMode>(node.TextOf(*caching)).value_or(WriteThrough));
        addPartsOf(node);
        if (node.Kind() == ENodeKind::StructEntry && node.Enclosing() != nullptr)
            addPartsOf(*node.Enclosing());
    }
    return mode;
}

namespace {

bool IsReadingLink(ETag tag) {
    return IsRequiredReference(tag) && tag != ETag::pError;
}

bool IsWritingLink(ETag tag) {
    return tag == ETag::pValue || tag == ETag::pValueCopy || tag == ETag::pValueIndexed || tag == ETag::pValueDefault;
}

void AddOnce(NodeList_t& list, INode* node) {
    if (node != nullptr && std::find(list.begin(), list.end(), node) == list.end())
        list.push_back(node);
}

// The nodes that one walks to by links, from a node outwards.
template <class Links>
std::vector<CNode*> Closure(CNode& start, Links&& links) {
    std::vector<CNode*> found{&start};
    std::vector<bool> seen(start.Map().Schema().NodeCount(), false);
    seen[start.Index()] = true;
    for (std::size_t next = 0; next < found.size(); ++next) {
        links(*found[next], [&](CNode* linked) {
            if (linked != nullptr && !seen[linked->Index()]) {
                seen[linked->Index()] = true;
                found.push_back(linked);
            }
        });
    }
    found.erase(found.begin());
    return found;
}

}  // namespace

void CNode::GetChildren(NodeList_t& children, ELinkType linkType) const {
    children.clear();
    const AutoLock lock(m_map->GetLock());
    CNode& self = *const_cast<CNode*>(this);
    if (linkType == ctParentNodes)
        return GetParents(children);
    if (linkType == ctDependingNodes) {
        const auto dependents = Closure(self, [](CNode& node, auto&& found) {
            for (const Invalidation& dependent : node.Map().Dependencies().DependentsOf(node.Map(), node.Index()))
                found(node.Map().NodeAt(dependent.node));
        });
        children.assign(dependents.begin(), dependents.end());
        return;
    }
    if (linkType == ctTerminalNodes) {
        const auto written = Closure(self, [](CNode& node, auto&& found) {
            for (const Property& property : node.Properties()) {
                if (IsWritingLink(property.tag))
                    found(node.NodeOf(property));
            }
        });
        for (CNode* node : written) {
            if (node->Find(ETag::pPort) != nullptr || node->Kind() == ENodeKind::StructEntry)
                children.push_back(node);
        }
        return;
    }
    for (const Property& property : Properties()) {
        const bool isLink = linkType == ctReadingChildren ? IsReadingLink(property.tag) || property.tag == ETag::Nested
                            : linkType == ctWritingChildren ? IsWritingLink(property.tag)
                                                            : property.tag == ETag::pInvalidator;
        if (isLink || (linkType == ctReadingChildren && property.tag == ETag::pFeature))
            AddOnce(children, NodeOf(property));
    }
}

void CNode::GetParents(NodeList_t& parents) const {
    parents.clear();
    const AutoLock lock(m_map->GetLock());
    for (const Referrer& referrer : m_description->Referrers().Of(m_index)) {
        const bool isLink =
            IsReadingLink(referrer.tag) || referrer.tag == ETag::pFeature || referrer.tag == ETag::Nested;
        CNode* node = m_map->NodeAt(referrer.node);
        // References of one node come one after the other.
        if (isLink && (parents.empty() || parents.back() != node))
            parents.push_back(node);
    }
}

bool CNode::IsSelector() const {
    return Find(ETag::pSelected) != nullptr;
}

void CNode::GetSelectedFeatures(FeatureList_t& features) const {
    features.clear();
    for (const Property& property : Properties()) {
        CNode* node = property.tag == ETag::pSelected ? NodeOf(property) : nullptr;
        if (node != nullptr && node->Value() != nullptr)
            features.push_back(node->Value());
    }
}

void CNode::GetSelectingFeatures(FeatureList_t& features) const {
    features.clear();
    const AutoLock lock(m_map->GetLock());
    for (const Referrer& referrer : m_description->Referrers().Of(m_index)) {
        IValue* selector = referrer.tag == ETag::pSelected ? m_map->NodeAt(referrer.node)->Value() : nullptr;
        if (selector != nullptr && (features.empty() || features.back() != selector))
            features.push_back(selector);
    }
}

}  // namespace GenApi
