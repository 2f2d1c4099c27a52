/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Evaluates from below what is too deep to be evaluated from above
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_set>
#include <vector>

#include "core/Evaluation.h"

namespace GenApi {

class CNodeMap;

/**
 * Nodes that depend on one another would need a frame of the stack each. Where there are too many, the outermost read
 * gives up its frames, has what lies deep evaluated by itself, and begins again: what was found out is remembered until
 * the access is over, so that each node is evaluated a few times and no more.
 */
class Descent {
public:
    explicit Descent(CNodeMap& map) : m_map(map) {}

    /// Finds out what was too deep. Errors are remembered, too: they meet the one who asks again.
    void Run(TooDeep first);
    bool IsWaiting(const CNode& node, EPart part) const;
    /// Makes what waits unusable, from the innermost up to \a node.
    void BreakUntil(const CNode& node, EPart part, const char* reason) const;

private:
    struct Task {
        TooDeep deep;
        bool hadItsNeed;
    };

    bool PushNeed(const Evaluation& evaluation);
    void Push(TooDeep deep);
    void Pop();
    static std::uint64_t KeyOf(const CNode& node, EPart part) noexcept;

    CNodeMap& m_map;
    std::vector<Task> m_tasks;
    std::unordered_set<std::uint64_t> m_waiting;  // all paths of all tasks
    std::size_t m_begun = 0;
};

}  // namespace GenApi
