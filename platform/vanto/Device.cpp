/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Devices and transport layers as applications and the factory see them
 */

#include "vanto/Device.h"

#include "vanto/StreamGrabber.h"

namespace Vanto {

CRefCounted::~CRefCounted() = default;

void CRefCounted::OnFinalRelease() {}

// Here, so that there is one table of its operations, and that is the base library's.
IStreamGrabber::~IStreamGrabber() = default;

}  // namespace Vanto
