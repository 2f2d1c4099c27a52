/* SPDX-License-Identifier: Apache-2.0 */
/*
 * All of GenApi
 */
#pragma once

#include "GenApi/Diagnostics.h"
#include "GenApi/IDeviceInfo.h"
#include "GenApi/NodeCallback.h"
#include "GenApi/NodeMapRef.h"
#include "GenApi/Pointer.h"
#include "GenApi/Synch.h"
