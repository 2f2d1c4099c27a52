/* SPDX-License-Identifier: Apache-2.0 */
/*
 * An open camera's features, as a table and as JSON
 */
#pragma once

#include <vector>

#include "features/FeatureFilter.h"

namespace tools {

class OpenDevice;
class Output;

/// Both return how many features could not be read.
std::size_t PrintFeatures(Output& output, const OpenDevice& device, const std::vector<TreeNode>& features, bool tree);
std::size_t PrintFeaturesAsJson(Output& output, const OpenDevice& device, const std::vector<TreeNode>& features);

}  // namespace tools
