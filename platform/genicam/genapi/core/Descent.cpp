/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Evaluates from below what is too deep to be evaluated from above
 */

#include "core/Descent.h"

#include <utility>

#include "Base/GCException.h"
#include "core/Node.h"
#include "core/NodeMap.h"

namespace GenApi {

namespace {
// A task begins a few times; more often only when the device's port makes the map forget what it found out.
constexpr std::size_t kMostTasksOfANode = 16;
}  // namespace

void Descent::Run(TooDeep first) {
    Push(std::move(first));
    while (!m_tasks.empty()) {
        Evaluation evaluation;
        evaluation.ignoreCache = m_tasks.back().deep.ignoreCache;
        evaluation.descent = this;
        if (PushNeed(evaluation))
            continue;
        const Waiting wanted = m_tasks.back().deep.wanted;
        try {
            wanted.node->FindOut(wanted.part, evaluation);
            Pop();
        } catch (TooDeep& deeper) {
            Push(std::move(deeper));
        } catch (const GenICam::GenericException&) {
            Pop();  // the node remembers it
        }
    }
}

// Where it is certain what a node needs, that is found out first, so that nothing gets deep. A circle is left to those
// who evaluate it.
bool Descent::PushNeed(const Evaluation& evaluation) {
    Task& task = m_tasks.back();
    if (task.hadItsNeed)
        return false;
    task.hadItsNeed = true;
    const Waiting wanted = task.deep.wanted;
    const Waiting need = wanted.node->Need(wanted.part);
    if (need.node == nullptr || need.node->Knows(need.part, evaluation) || IsWaiting(*need.node, need.part))
        return false;
    Push({need, evaluation.ignoreCache, {wanted}});
    return true;
}

void Descent::Push(TooDeep deep) {
    if (++m_begun > kMostTasksOfANode * (m_map.Schema().NodeCount() + 1))
        throw LOGICAL_ERROR_EXCEPTION("%s: too many nodes depend on one another", deep.wanted.node->Label());
    for (const Waiting& waiting : deep.path)
        m_waiting.insert(KeyOf(*waiting.node, waiting.part));
    m_tasks.push_back({std::move(deep), false});
}

void Descent::Pop() {
    for (const Waiting& waiting : m_tasks.back().deep.path)
        m_waiting.erase(KeyOf(*waiting.node, waiting.part));
    m_tasks.pop_back();
}

bool Descent::IsWaiting(const CNode& node, EPart part) const {
    return m_waiting.contains(KeyOf(node, part));
}

void Descent::BreakUntil(const CNode& node, EPart part, const char* reason) const {
    for (auto task = m_tasks.rbegin(); task != m_tasks.rend(); ++task) {
        for (const Waiting& waiting : task->deep.path) {
            waiting.node->Break(reason);
            if (waiting.node == &node && waiting.part == part)
                return;
        }
    }
}

std::uint64_t Descent::KeyOf(const CNode& node, EPart part) noexcept {
    return (std::uint64_t{node.Index()} << 8) | static_cast<std::uint64_t>(part);
}

}  // namespace GenApi
