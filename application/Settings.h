/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera's streamable features: collected, and set again
 */
#pragma once

#include <functional>
#include <vector>

#include "base/SettingsFile.h"
#include "vanto/CameraError.h"
#include "vanto/FeatureMap.h"

namespace Vanto {

using base::SelectorState;
using base::Setting;

/// Called between two accesses; what it throws ends the work.
using Pause = std::function<void()>;

std::vector<Setting> CollectSettings(const FeatureMap& features, const Pause& pause, std::vector<SettingFault>& faults);
std::vector<SettingFault> ApplySettings(const FeatureMap& features, const Pause& pause,
                                        const std::vector<Setting>& settings);

}  // namespace Vanto
