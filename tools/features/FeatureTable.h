/* SPDX-License-Identifier: Apache-2.0 */
/*
 * An open camera's features, as a table and as JSON
 */
#pragma once

#include "GenApi/Types.h"

namespace tools {

class OpenDevice;
class Output;

/// Both return how many features could not be read.
std::size_t PrintFeatures(Output& output, const OpenDevice& device, GenApi::EVisibility visibility, bool tree);
std::size_t PrintFeaturesAsJson(Output& output, const OpenDevice& device, GenApi::EVisibility visibility);

}  // namespace tools
