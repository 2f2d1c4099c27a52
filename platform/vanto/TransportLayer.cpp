/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Devices and transport layers as applications and the factory see them
 */

#include "vanto/Device.h"

namespace Vanto {

CRefCounted::~CRefCounted() = default;

void CRefCounted::OnFinalRelease() {}

}  // namespace Vanto
