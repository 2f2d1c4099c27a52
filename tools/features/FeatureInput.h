/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts as values of features, checked before anything is set
 */
#pragma once

#include <string>

#include "values/FeatureValueAccess.h"

namespace tools {

void CheckReadable(GenApi::INode& node);
void CheckWritable(GenApi::INode& node);
Vanto::FeatureValue ParsedValue(GenApi::INode& node, const std::string& text);
void CheckRange(GenApi::INode& node, const Vanto::FeatureValue& value);

}  // namespace tools
