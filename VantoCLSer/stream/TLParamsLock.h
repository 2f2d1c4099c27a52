/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Keeps the camera's features that a running grab relies on from being changed
 */
#pragma once

namespace GenApi {
struct INodeMap;
}

namespace Vanto {

/// Sets TLParamsLocked and makes the geometry features of the camera read-only, or undoes both. Throws RuntimeException
/// without a node map, PropertyException without the node TLParamsLocked.
void SetTLParamsLocked(GenApi::INodeMap* camera, bool locked);

}  // namespace Vanto
