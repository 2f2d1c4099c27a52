/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The bootstrap registers of a camera
 */
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

#include "camera/CameraModel.h"
#include "camera/Description.h"
#include "camera/RegisterFile.h"
#include "simulator/CameraOptions.h"

namespace MarlowSim {

void AddBootstrapRegisters(RegisterFile& file, const CameraModel& model, const CameraOptions& options,
                           const std::function<std::chrono::nanoseconds()>& upTime);
void AddManifest(RegisterFile& file, const DescriptionFile& description);

}  // namespace MarlowSim
