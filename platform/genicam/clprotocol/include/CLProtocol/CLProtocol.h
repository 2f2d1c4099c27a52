/* SPDX-License-Identifier: Apache-2.0 */
/*
 * All of the CLProtocol module
 */
#pragma once

#include "CLProtocol/CLException.h"
#include "CLProtocol/CLPort.h"
#include "CLProtocol/DeviceID.h"
