/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Which camera of those that are there is meant
 */
#pragma once

#include <string>

#include "vanto/Camera.h"
#include "vanto/Info.h"

namespace Vanto {

CameraRecord RecordOf(const CDeviceInfo& info);
DeviceInfoList FindCameras();
CDeviceInfo ChooseOnly();
CDeviceInfo ChooseNamed(const std::string& name);
CDeviceInfo ChooseFitting(const CDeviceInfo& wanted);

}  // namespace Vanto
