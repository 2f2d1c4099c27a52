/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Transport layers as applications and the factory see them
 */

#include "vanto/TransportLayer.h"

namespace Vanto {

CRefCounted::~CRefCounted() = default;

void CRefCounted::OnFinalRelease() {}

}  // namespace Vanto
