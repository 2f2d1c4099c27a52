/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Who depends on whom: what a change invalidates and announces
 */

#include "core/DependencyGraph.h"

#include <algorithm>

#include "core/NodeMap.h"
#include "core/RegisterCore.h"

namespace GenApi {

namespace {

// Elements through which a value is written to other nodes.
bool IsWritten(ETag tag) {
    return tag == ETag::pValue || tag == ETag::pValueCopy || tag == ETag::pValueIndexed || tag == ETag::pValueDefault;
}

// Elements through which a value comes from other nodes.
bool IsValueSource(ETag tag) {
    return tag == ETag::pValue || tag == ETag::pValueIndexed || tag == ETag::pValueDefault || tag == ETag::pVariable ||
           tag == ETag::p1212Parser;
}

}  // namespace

std::span<const Invalidation> DependencyGraph::DependentsOf(CNodeMap& map, std::uint32_t node) {
    Prepare(map);
    return m_dependents->Of(node);
}

void DependencyGraph::Prepare(const CNodeMap& map) {
    if (m_dependents != nullptr)
        return;
    m_stamps.assign(map.Schema().NodeCount(), 0);
    m_dependents = &map.Schema().Dependents();
}

/**
 * \brief Drop the caches of whatever depends on a change
 *
 * Walks breadth first, so that callbacks run from the changed node outwards. Each node is visited once for each extent
 * that grows, so the walk ends whatever circles the description has.
 */
void DependencyGraph::Spread(CNodeMap& map, std::vector<Invalidation>& changes, std::vector<std::uint32_t>& announced) {
    Prepare(map);
    // A selector is often written again before anything was read.
    if (m_isClean && changes == m_lastChanges)
        return changes.clear();
    if (++m_round >= (1U << 29)) {
        m_stamps.assign(m_stamps.size(), 0);
        m_round = 1;
    }
    m_work.clear();
    m_lastChanges.swap(changes);
    changes.clear();
    for (const Invalidation& change : m_lastChanges)
        Push(change);
    const std::size_t before = announced.size();
    for (std::size_t next = 0; next < m_work.size(); ++next)
        Visit(map, m_work[next], announced);
    m_isClean = announced.size() == before;
}

std::vector<std::uint32_t> DependencyGraph::AffectedBy(CNodeMap& map, CNode& written) {
    std::vector<std::uint32_t> affected;
    std::vector<std::uint32_t> walk{written.Index()};
    std::vector<bool> seen(map.Schema().NodeCount(), false);
    const auto add = [&](std::uint32_t index) {
        if (index != kNoNode && !seen[index]) {
            seen[index] = true;
            walk.push_back(index);
        }
    };
    seen[written.Index()] = true;
    map.AttachRegisters();
    // First down to what is written, then up to what depends on it.
    for (std::size_t next = 0; next < walk.size(); ++next) {
        CNode& node = *map.NodeAt(walk[next]);
        for (const Property& property : node.Properties()) {
            if (IsWritten(property.tag))
                add(map.Schema().NodeOf(property));
        }
        RegisterBlock* block = node.Register() != nullptr ? node.Register()->AttachedBlock() : nullptr;
        for (RegisterCore* user = block != nullptr ? block->users : nullptr; user != nullptr; user = user->NextUser())
            add(user->Owner().Index());
    }
    for (std::size_t next = 0; next < walk.size(); ++next) {
        const CNode* const node = map.KnownNode(walk[next]);
        if (node != nullptr && node->Has(kHasCallback))
            affected.push_back(walk[next]);
        for (const Invalidation& dependent : DependentsOf(map, walk[next]))
            add(dependent.node);
    }
    return affected;
}

namespace {

// What a visit did, in the stamp's lower bits; the round of it lies above.
constexpr std::uint32_t kRules = 1U << 2;
constexpr unsigned kStampBits = 3;

std::uint32_t WorkOf(const Invalidation& change) noexcept {
    return static_cast<std::uint32_t>(change.extent) | (change.rules ? kRules : 0U);
}

// True when a visit that did \a done did all of \a wanted.
bool Includes(std::uint32_t done, std::uint32_t wanted) noexcept {
    return (done & 3U) >= (wanted & 3U) && (done & kRules) >= (wanted & kRules);
}

}  // namespace

void DependencyGraph::Push(const Invalidation& change) {
    const std::uint32_t stamp = m_stamps[change.node];
    if ((stamp >> kStampBits) != m_round || !Includes(stamp, WorkOf(change)))
        m_work.push_back(change);
}

void DependencyGraph::Visit(CNodeMap& map, Invalidation change, std::vector<std::uint32_t>& announced) {
    std::uint32_t& stamp = m_stamps[change.node];
    const bool isFirst = (stamp >> kStampBits) != m_round;
    const std::uint32_t done = isFirst ? 0U : stamp & 7U;
    if (!isFirst && Includes(done, WorkOf(change)))
        return;
    const std::uint32_t extent = std::max(done & 3U, static_cast<std::uint32_t>(change.extent));
    stamp = (m_round << kStampBits) | extent | (done & kRules) | (change.rules ? kRules : 0U);
    if (change.extent != EInvalidate::Derived)
        DropContent(map, change);
    const bool isStructure = map.Schema().Node(change.node).kind == ENodeKind::StructReg;
    const bool hasNewRules = change.rules && (done & kRules) == 0;
    if (!isFirst && !isStructure && !hasNewRules)
        return;
    // Who was never asked for knows nothing.
    if (CNode* const node = map.KnownNode(change.node)) {
        node->Clear(change.rules ? kCached : kValueCached);
        if (RegisterCore* core = node->Register())
            core->ForgetAddress();
        if (node->Has(kHasCallback) && isFirst)
            announced.push_back(change.node);
    }
    // What happens to a structure happens to its entries.
    for (const Invalidation& dependent : DependentsOf(map, change.node))
        Push({dependent.node, isStructure ? std::max(change.extent, dependent.extent) : dependent.extent,
              change.rules || dependent.rules});
}

// A feature's value lies in registers below it: those must be asked again.
void DependencyGraph::DropContent(CNodeMap& map, Invalidation change) {
    CNode* const node = map.KnownNode(change.node);
    if (RegisterCore* core = node != nullptr ? node->Register() : nullptr) {
        if (change.extent == EInvalidate::Selected && core->HasMovingAddress())
            return core->DropUnlessMoved();
        RegisterBlock* block = core->AttachedBlock();
        const bool isShared = block != nullptr && block->valid;
        core->DropContent();
        for (RegisterCore* user = isShared ? block->users : nullptr; user != nullptr; user = user->NextUser())
            Push({user->Owner().Index(), EInvalidate::Derived, false});
        return;
    }
    for (const Property& property : map.Schema().PropertiesOf(change.node)) {
        const std::uint32_t source = IsValueSource(property.tag) ? map.Schema().NodeOf(property) : kNoNode;
        if (source != kNoNode)
            Push({source, change.extent});
    }
}

}  // namespace GenApi
