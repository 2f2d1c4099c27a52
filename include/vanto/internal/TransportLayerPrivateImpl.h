/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a library of a transport layer needs to make a class from CTransportLayerBase
 */
#pragma once

#include "vanto/internal/TransportLayerCreation.h"
#include "vanto/internal/TransportLayerLookup.h"
