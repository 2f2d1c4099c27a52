/* SPDX-License-Identifier: Apache-2.0 */
/*
 * All that is known of one feature
 */
#pragma once

#include "GenApi/GenApi.h"
#include "output/Json.h"

namespace tools {

class Output;

/// What the description says of a feature and what the camera says of it at present. What can't be read stands as
/// text in "Error".
Json FeatureInfo(GenApi::INode& node);
/// Prints what FeatureInfo made, for people.
void PrintInfo(Output& output, const Json& info);

}  // namespace tools
