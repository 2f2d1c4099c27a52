/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Which nodes of a description depend on which
 */
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "schema/Schema.h"

namespace GenApi {

class Description;

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

/// Values by node, side by side.
template <class T>
struct NodeTable {
    std::vector<std::uint32_t> first;  // of each node, and one past the end
    std::vector<T> values;

    std::span<const T> Of(std::uint32_t node) const noexcept {
        return std::span(values).subspan(first[node], first[node + 1] - first[node]);
    }
};

/// The nodes that depend on each node directly.
NodeTable<Invalidation> FindDependents(const Description& description);
/// The elements that refer to each node, in the order of the description.
NodeTable<Referrer> FindReferrers(const Description& description);

}  // namespace GenApi
