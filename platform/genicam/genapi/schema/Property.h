/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One element or attribute of a node in the description
 */
#pragma once

#include <cstdint>

#include "schema/Schema.h"

namespace GenApi {

constexpr std::uint32_t kNoNode = 0xFFFFFFFF;

/// An element below a node, or an attribute of the element before it. Description knows its text and its node.
struct Property {
    /// What the value is.
    enum class EValue : std::uint8_t {
        Text,      ///< a place among the description's texts
        LongText,  ///< the same; the length stands there, before the text
        Name,      ///< the number of a name: an element that refers to a node
        Node       ///< the number of a node within this one
    };

    std::uint32_t value = 0;
    std::uint16_t length = 0;  ///< of a text
    ETag tag = ETag::Unknown;
    EValue kind = EValue::Text;
};
static_assert(sizeof(Property) == 8);

}  // namespace GenApi
