/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Devices and transport layers as applications and the factory see them
 */
#pragma once

#include "vanto/TransportLayer.h"
#include "vanto/VantoDevice.h"
