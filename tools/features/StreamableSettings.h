/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera's streamable features: collected, and set again
 */
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "GenApi/GenApi.h"
#include "base/SettingsFile.h"

namespace tools {

using base::SelectorState;
using base::Setting;

/// A setting that a camera did not take, and why.
struct Refusal {
    Setting setting;
    std::string reason;
};

std::vector<Setting> CollectSettings(GenApi::INodeMap& nodes, std::vector<std::string>& failures);
std::vector<Refusal> ApplySettings(GenApi::INodeMap& nodes, const std::vector<Setting>& settings,
                                   const std::function<void(std::size_t done, std::size_t all)>& progress);

}  // namespace tools
