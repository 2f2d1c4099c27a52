/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The feature tree of a description, as text and as JSON
 */
#pragma once

#include "description/DescriptionModel.h"
#include "output/Json.h"

namespace tools {

class Output;

void PrintFeatureTree(Output& output, const DescriptionModel& model);
Json FeatureTreeJson(const DescriptionModel& model);

}  // namespace tools
