/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Finds circles in a camera description: values that need themselves, categories that hold themselves
 */
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>

#include "description/Linter.h"
#include "output/Text.h"

namespace tools {

namespace {

// What must be known before a node can be read. Limits and locks are not among them: they are looked at before a
// write, so that the maximum of A may depend on B and that of B on A.
constexpr std::array<std::string_view, 12> kNeeds{"pValue",       "pValueIndexed",  "pValueDefault", "pIndex",
                                                  "pVariable",    "pAddress",       "pLength",       "pOffset",
                                                  "pIsAvailable", "pIsImplemented", "pPort",         "pChunkID"};

using Edges = std::vector<std::vector<std::size_t>>;

template <class Wanted>
Edges EdgesOf(const DescriptionModel& model, Wanted wanted) {
    Edges edges(model.Nodes().size());
    for (std::size_t index = 0; index < edges.size(); ++index)
        for (const NodeElement& element : model.Nodes()[index].elements)
            if (const DescribedNode* target = wanted(element.name) ? model.TargetOf(element) : nullptr)
                edges[index].push_back(model.IndexOf(*target));
    return edges;
}

/// Depth-first search with a stack of its own: chains of references may be as long as a file.
class CircleFinder {
public:
    explicit CircleFinder(const Edges& edges) : m_edges(edges), m_states(edges.size(), State::kNew) {}

    /// Circles, each as its nodes in order. Of circles that share nodes not all are found, but at least one.
    std::vector<std::vector<std::size_t>> Find() {
        for (std::size_t start = 0; start < m_edges.size(); ++start)
            if (m_states[start] == State::kNew)
                SearchFrom(start);
        return std::move(m_circles);
    }

private:
    enum class State : char { kNew, kOnPath, kDone };
    struct Step {
        std::size_t node;
        std::size_t nextEdge = 0;
    };

    void SearchFrom(std::size_t start) {
        std::vector<Step> path{{start}};
        m_states[start] = State::kOnPath;
        while (!path.empty()) {
            Step& step = path.back();
            if (step.nextEdge == m_edges[step.node].size()) {
                m_states[step.node] = State::kDone;
                path.pop_back();
                continue;
            }
            const std::size_t target = m_edges[step.node][step.nextEdge++];
            if (m_states[target] == State::kOnPath)
                Keep(path, target);
            else if (m_states[target] == State::kNew) {
                m_states[target] = State::kOnPath;
                path.push_back({target});
            }
        }
    }

    void Keep(const std::vector<Step>& path, std::size_t first) {
        std::vector<std::size_t> circle;
        for (auto step = path.rbegin(); step != path.rend(); ++step) {
            circle.push_back(step->node);
            if (step->node == first)
                break;
        }
        std::reverse(circle.begin(), circle.end());
        m_circles.push_back(std::move(circle));
    }

    const Edges& m_edges;
    std::vector<State> m_states;
    std::vector<std::vector<std::size_t>> m_circles;
};

void Report(std::vector<Finding>& findings, const DescriptionModel& model, const Edges& edges, const char* what,
            const char* rule) {
    constexpr std::size_t kMostNames = 12;
    for (const std::vector<std::size_t>& circle : CircleFinder(edges).Find()) {
        std::string names;
        for (std::size_t index = 0; index < std::min(circle.size(), kMostNames); ++index)
            names += ShownName(model.Nodes()[circle[index]]) + " -> ";
        if (circle.size() > kMostNames)
            names += "... -> ";
        const DescribedNode& first = model.Nodes()[circle.front()];
        findings.push_back(
            {Severity::kError, first.place, fmt::format("{}: {}{}", what, names, ShownName(first)), {}, rule});
    }
}

}  // namespace

/// Values that need themselves to be known, and categories that hold themselves.
std::vector<Finding> FindCycles(const DescriptionModel& model) {
    std::vector<Finding> findings;
    const auto isNeed = [](std::string_view name) {
        return std::find(kNeeds.begin(), kNeeds.end(), name) != kNeeds.end();
    };
    Report(findings, model, EdgesOf(model, isNeed), "a value or access rule depends on itself", "circle");
    Report(findings, model, EdgesOf(model, [](std::string_view name) { return name == "pFeature"; }),
           "a category holds itself", "category-circle");
    return findings;
}

}  // namespace tools
