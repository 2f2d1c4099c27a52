/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Which elements the schema has in which kinds of nodes
 */
#pragma once

#include "schema/Kinds.h"
#include "schema/Tags.h"

namespace GenApi {

/// True when an element has a meaning below a node of a kind.
bool HasElement(ENodeKind kind, ETag element) noexcept;
/// True when it also has a meaning whatever its text says: it is none of the schema's words.
bool TakesAnyText(ENodeKind kind, ETag element) noexcept;

}  // namespace GenApi
