/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Who depends on whom: what a change invalidates and announces
 */
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "schema/Dependencies.h"

namespace GenApi {

class CNode;
class CNodeMap;

/// What changes of a map reach, by the dependencies of its description. Wants the node map's lock.
class DependencyGraph {
public:
    /// Drops the caches of all nodes that depend on \a changes, and appends the numbers of those with callbacks to
    /// \a announced, each once. Empties \a changes.
    void Spread(CNodeMap& map, std::vector<Invalidation>& changes, std::vector<std::uint32_t>& announced);
    /// The nodes that depend on a node directly.
    std::span<const Invalidation> DependentsOf(CNodeMap& map, std::uint32_t node);
    /// The nodes with callbacks that a write to a node may change: those that it writes to, those that share bytes with
    /// them, and all that depend on them. Caches stay as they are.
    std::vector<std::uint32_t> AffectedBy(CNodeMap& map, CNode& node);
    /// Says that something is known now that a change may have to drop: a value, an address, bytes; or a new callback.
    void Learned() noexcept { m_isClean = false; }

private:
    void Prepare(const CNodeMap& map);
    void Visit(CNodeMap& map, Invalidation change, std::vector<std::uint32_t>& announced);
    void DropContent(CNodeMap& map, Invalidation change);
    void Push(const Invalidation& change);

    const NodeTable<Invalidation>* m_dependents = nullptr;  // of the description
    std::vector<std::uint32_t> m_stamps;                    // round of the last visit and how much it invalidated
    std::uint32_t m_round = 0;
    std::vector<Invalidation> m_work;
    std::vector<Invalidation> m_lastChanges;
    bool m_isClean = false;  // all that the last changes reach is dropped, and nobody is to be told
};

}  // namespace GenApi
