/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The node map of parameters that every transport layer has
 */
#pragma once

#include "vanto/VantoTypes.h"

namespace GenApi {
struct INodeMap;
}

namespace Vanto {

VANTOBASE_API GenApi::INodeMap* CreateDefaultTransportLayerParams();
VANTOBASE_API void DestroyDefaultTransportLayerParams(GenApi::INodeMap* nodeMap) noexcept;

}  // namespace Vanto
