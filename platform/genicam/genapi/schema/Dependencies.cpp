/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Which nodes of a description depend on which
 */

#include "schema/Dependencies.h"

#include "schema/Description.h"

namespace GenApi {

namespace {

struct Edge {
    std::uint32_t from = kNoNode;
    std::uint32_t to = kNoNode;
    EInvalidate extent = EInvalidate::Derived;
    bool rules = true;
};

// Elements through which the value of another node only gets into the value: who can be accessed, and within which
// limits, does not depend on it.
bool IsValueOnly(ETag tag) {
    switch (tag) {
        case ETag::pValue:
        case ETag::pValueCopy:
        case ETag::pValueIndexed:
        case ETag::pValueDefault:
        case ETag::pAddress:
        case ETag::AttributePOffset:
        case ETag::pCommandValue:
            return true;
        default:
            return false;
    }
}

// What one element of a node says about dependencies.
Edge EdgeOf(const Description& description, std::uint32_t self, const Property& property) {
    const std::uint32_t other = description.NodeOf(property);
    switch (property.tag) {
        case ETag::pInvalidator:
            return {other, self, EInvalidate::Content};
        case ETag::pSelected:
            return {self, other, EInvalidate::Selected};
        case ETag::Nested:
            // An enumeration depends on its entries, but the entries of a structure on the structure.
            return description.Node(self).kind == ENodeKind::Enumeration ? Edge{other, self, EInvalidate::Derived}
                                                                         : Edge{self, other, EInvalidate::Derived};
        case ETag::pError:
        case ETag::pBlockPolling:
            return {};
        default:
            break;
    }
    return IsRequiredReference(property.tag) ? Edge{other, self, EInvalidate::Derived, !IsValueOnly(property.tag)}
                                             : Edge{};
}

template <class Use>
void ForEachEdge(const Description& description, Use&& use) {
    for (std::uint32_t node = 0; node < description.NodeCount(); ++node) {
        if (description.Node(node).Is(kReplaced))
            continue;
        for (const Property& property : description.PropertiesOf(node)) {
            const Edge edge = EdgeOf(description, node, property);
            if (edge.from != kNoNode && edge.to != kNoNode && edge.from != edge.to)
                use(edge);
        }
    }
}

template <class Use>
void ForEachReference(const Description& description, Use&& use) {
    for (std::uint32_t node = 0; node < description.NodeCount(); ++node) {
        if (description.Node(node).Is(kReplaced))
            continue;
        for (const Property& property : description.PropertiesOf(node)) {
            const std::uint32_t other = description.NodeOf(property);
            if (other != kNoNode)
                use(other, Referrer{node, property.tag});
        }
    }
}

/// Sorts what \a forEach gives, which is a node and a value each time, by node; values keep their order.
template <class T, class ForEach>
NodeTable<T> Collect(std::size_t nodes, ForEach&& forEach) {
    NodeTable<T> table;
    table.first.assign(nodes + 1, 0);
    forEach([&](std::uint32_t node, const T&) { ++table.first[node + 1]; });
    for (std::size_t i = 1; i <= nodes; ++i)
        table.first[i] += table.first[i - 1];
    table.values.resize(table.first.back());
    std::vector<std::uint32_t> next(table.first.begin(), table.first.end() - 1);
    forEach([&](std::uint32_t node, const T& value) { table.values[next[node]++] = value; });
    return table;
}

}  // namespace

NodeTable<Invalidation> FindDependents(const Description& description) {
    return Collect<Invalidation>(description.NodeCount(), [&](auto&& add) {
        ForEachEdge(description, [&](const Edge& edge) {
            add(edge.from, Invalidation{edge.to, edge.extent, edge.rules});
        });
    });
}

NodeTable<Referrer> FindReferrers(const Description& description) {
    return Collect<Referrer>(description.NodeCount(), [&](auto&& add) { ForEachReference(description, add); });
}

}  // namespace GenApi
