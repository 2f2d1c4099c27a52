/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What is known of one feature, as JSON
 */
#pragma once

#include "GenApi/GenApi.h"
#include "output/Json.h"

namespace tools {

/// Name, kind, access, visibility and documentation: what the description says. Asks the camera for the access only.
Json FeatureJson(GenApi::INode& node);
/// Adds value, range and entries of a feature that is available. Throws what the camera refuses with.
void AddValueAndLimits(GenApi::INode& node, Json& json);

}  // namespace tools
