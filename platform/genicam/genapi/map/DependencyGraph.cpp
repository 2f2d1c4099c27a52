/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Who depends on whom: what a change invalidates and announces
 */

#include "map/DependencyGraph.h"

#include <utility>

#include "map/NodeMap.h"
#include "nodes/RegisterCore.h"

namespace GenApi {

namespace {

struct Edge {
    std::uint32_t from = kNoNode;
    std::uint32_t to = kNoNode;
    EInvalidate extent = EInvalidate::Derived;
};

// What one element of a node says about dependencies.
Edge EdgeOf(const CNode& owner, const Property& property) {
    const std::uint32_t self = owner.Index();
    switch (property.tag) {
        case ETag::pInvalidator:
            return {property.node, self, EInvalidate::Content};
        case ETag::pSelected:
            return {self, property.node, EInvalidate::Selected};
        case ETag::Nested:
            // An enumeration depends on its entries; a structure's entries read the structure's elements themselves.
            return owner.Kind() == ENodeKind::Enumeration ? Edge{property.node, self, EInvalidate::Derived} : Edge{};
        case ETag::pError:
        case ETag::pBlockPolling:
            return {};
        default:
            break;
    }
    return IsRequiredReference(property.tag) ? Edge{property.node, self, EInvalidate::Derived} : Edge{};
}

template <class Use>
void ForEachEdge(const CNodeMap& map, Use&& use) {
    for (const CNode* node : map.Nodes()) {
        if (node->Has(kReplaced))
            continue;
        const auto useAll = [&](std::span<const Property> properties) {
            for (const Property& property : properties) {
                const Edge edge = EdgeOf(*node, property);
                if (edge.from != kNoNode && edge.to != kNoNode && edge.from != edge.to)
                    use(edge);
            }
        };
        useAll(node->Properties());
        if (node->Kind() == ENodeKind::StructEntry && node->Enclosing() != nullptr)
            useAll(node->Enclosing()->Properties());
    }
}

// Elements through which a value comes from other nodes.
bool IsValueSource(ETag tag) {
    return tag == ETag::pValue || tag == ETag::pValueIndexed || tag == ETag::pValueDefault || tag == ETag::pVariable ||
           tag == ETag::p1212Parser;
}

}  // namespace

void DependencyGraph::Build(CNodeMap& map) {
    const std::size_t count = map.Nodes().size();
    m_first.assign(count + 1, 0);
    ForEachEdge(map, [this](const Edge& edge) { ++m_first[edge.from + 1]; });
    for (std::size_t i = 1; i <= count; ++i)
        m_first[i] += m_first[i - 1];
    m_dependents.resize(m_first.back());
    std::vector<std::uint32_t> next(m_first.begin(), m_first.end() - 1);
    ForEachEdge(map, [&](const Edge& edge) { m_dependents[next[edge.from]++] = {edge.to, edge.extent}; });
    m_stamps.assign(count, 0);
    m_round = 0;
    m_built = true;
}

std::span<const Invalidation> DependencyGraph::DependentsOf(CNodeMap& map, std::uint32_t node) {
    if (!m_built)
        Build(map);
    return std::span(m_dependents).subspan(m_first[node], m_first[node + 1] - m_first[node]);
}

/**
 * \brief Drop the caches of whatever depends on a change
 *
 * Walks breadth first, so that callbacks run from the changed node outwards. Each node is visited once for each extent
 * that grows, so the walk ends whatever circles the description has.
 */
void DependencyGraph::Spread(CNodeMap& map, std::vector<Invalidation>& changes, std::vector<std::uint32_t>& announced) {
    if (!m_built)
        Build(map);
    if (++m_round >= (1U << 30)) {
        m_stamps.assign(m_stamps.size(), 0);
        m_round = 1;
    }
    m_work.clear();
    for (const Invalidation& change : changes)
        Push(change.node, change.extent);
    changes.clear();
    for (std::size_t next = 0; next < m_work.size(); ++next)
        Visit(map, m_work[next], announced);
}

void DependencyGraph::Push(std::uint32_t node, EInvalidate extent) {
    const std::uint32_t stamp = m_stamps[node];
    if ((stamp >> 2) == m_round && (stamp & 3U) >= static_cast<std::uint32_t>(extent))
        return;
    m_work.push_back({node, extent});
}

void DependencyGraph::Visit(CNodeMap& map, Invalidation change, std::vector<std::uint32_t>& announced) {
    std::uint32_t& stamp = m_stamps[change.node];
    const bool isFirst = (stamp >> 2) != m_round;
    if (!isFirst && (stamp & 3U) >= static_cast<std::uint32_t>(change.extent))
        return;
    stamp = (m_round << 2) | static_cast<std::uint32_t>(change.extent);
    CNode& node = *map.NodeAt(change.node);
    if (change.extent != EInvalidate::Derived)
        DropContent(map, change);
    if (!isFirst)
        return;
    node.Clear(kCached);
    if (RegisterCore* core = node.Register())
        core->ForgetAddress();
    if (node.Has(kHasCallback))
        announced.push_back(change.node);
    for (const Invalidation& dependent : DependentsOf(map, change.node))
        Push(dependent.node, dependent.extent);
}

// A feature's value lies in registers below it: those must be asked again.
void DependencyGraph::DropContent(CNodeMap& map, Invalidation change) {
    CNode& node = *map.NodeAt(change.node);
    if (RegisterCore* core = node.Register()) {
        RegisterBlock* block = core->AttachedBlock();
        const bool moves = change.extent == EInvalidate::Selected && core->HasMovingAddress();
        if (block == nullptr || !block->valid || moves)
            return;
        block->valid = false;
        for (RegisterCore* user = block->users; user != nullptr; user = user->NextUser())
            Push(user->Owner().Index(), EInvalidate::Derived);
        return;
    }
    for (const Property& property : node.Properties()) {
        if (IsValueSource(property.tag) && property.node != kNoNode)
            Push(property.node, change.extent);
    }
}

}  // namespace GenApi
