/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The transport layer that is linked into the producer
 */
#pragma once

#include "vanto/TransportLayer.h"

namespace gentl {

void PrepareTransportLayer();
Vanto::ITransportLayer* CreateTransportLayer();
void DestroyTransportLayer(Vanto::ITransportLayer* layer);

}  // namespace gentl
