/* SPDX-License-Identifier: Apache-2.0 */
/*
 * An open camera's features, as a table and as JSON
 */
#pragma once

#include "GenApi/Types.h"

namespace tools {

class OpenDevice;
class Output;

void PrintFeatures(Output& output, const OpenDevice& device, GenApi::EVisibility visibility, bool tree);
void PrintFeaturesAsJson(Output& output, const OpenDevice& device, GenApi::EVisibility visibility);

}  // namespace tools
