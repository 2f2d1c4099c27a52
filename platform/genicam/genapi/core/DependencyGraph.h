/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Who depends on whom: what a change invalidates and announces
 */
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "schema/Schema.h"

namespace GenApi {

class CNode;
class CNodeMap;

/// How much of a node a change invalidates; each includes those before it.
enum class EInvalidate : std::uint8_t {
    Derived = 1,  ///< what was computed from other nodes
    Selected,     ///< and what the device was asked for at an address that a selector does not move
    Content       ///< and whatever the device was asked for
};

struct Invalidation {
    std::uint32_t node;
    EInvalidate extent;
    bool rules = true;  ///< access mode and limits may be others, too, and not the value alone

    friend bool operator==(const Invalidation&, const Invalidation&) = default;
};

/// A node that refers to another one, and the element that does.
struct Referrer {
    std::uint32_t node;
    ETag tag;
};

/// The dependencies between the nodes of a map, found when they are first needed. Wants the node map's lock.
class DependencyGraph {
public:
    /// Drops the caches of all nodes that depend on \a changes, and appends the numbers of those with callbacks to
    /// \a announced, each once. Empties \a changes.
    void Spread(CNodeMap& map, std::vector<Invalidation>& changes, std::vector<std::uint32_t>& announced);
    /// The nodes that depend on a node directly.
    std::span<const Invalidation> DependentsOf(CNodeMap& map, std::uint32_t node);
    /// The elements that refer to a node, in the order of the description.
    std::span<const Referrer> ReferrersOf(CNodeMap& map, std::uint32_t node);
    /// The nodes with callbacks that a write to a node may change: those that it writes to, those that share bytes with
    /// them, and all that depend on them. Caches stay as they are.
    std::vector<std::uint32_t> AffectedBy(CNodeMap& map, CNode& node);
    /// Says that something is known now that a change may have to drop: a value, an address, bytes; or a new callback.
    void Learned() noexcept { m_isClean = false; }

private:
    void Build(CNodeMap& map);
    void Visit(CNodeMap& map, Invalidation change, std::vector<std::uint32_t>& announced);
    void DropContent(CNodeMap& map, Invalidation change);
    void Push(const Invalidation& change);

    bool m_built = false;
    std::vector<std::uint32_t> m_first;  // of the dependents of each node, and one past the end
    std::vector<Invalidation> m_dependents;
    std::vector<std::uint32_t> m_stamps;  // round of the last visit and how much it invalidated
    std::uint32_t m_round = 0;
    std::vector<Invalidation> m_work;
    std::vector<Invalidation> m_lastChanges;
    bool m_isClean = false;                      // all that the last changes reach is dropped, and nobody is to be told
    std::vector<std::uint32_t> m_firstReferrer;  // as m_first; found when they are first asked for
    std::vector<Referrer> m_referrers;
};

}  // namespace GenApi
