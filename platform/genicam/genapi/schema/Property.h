/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One element or attribute of a node in the description
 */
#pragma once

#include <cstdint>

#include "schema/Schema.h"

namespace GenApi {

constexpr std::uint32_t kNoNode = 0xFFFFFFFF;

/// An element below a node, or an attribute of the element before it. The text lies in the map's text store.
struct Property {
    std::uint32_t text = 0;
    std::uint32_t length = 0;
    std::uint32_t node = kNoNode;  ///< the node that a reference names, or the nested node
    ETag tag = ETag::Unknown;
};

}  // namespace GenApi
