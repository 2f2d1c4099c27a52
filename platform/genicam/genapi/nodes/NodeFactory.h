/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Makes the node of a kind
 */
#pragma once

#include "core/Node.h"
#include "schema/Arena.h"

namespace GenApi {

/// A new node in an arena.
CNode* MakeNode(const NodeSeed& seed, Arena& arena);

}  // namespace GenApi
