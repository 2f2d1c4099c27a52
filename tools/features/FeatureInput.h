/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts as values of features: checked and set
 */
#pragma once

#include <string>

#include "GenApi/GenApi.h"

namespace tools {

void CheckReadable(GenApi::INode& node);
void CheckWritable(GenApi::INode& node);
void CheckText(GenApi::INode& node, const std::string& text);
void CheckRange(GenApi::INode& node, const std::string& text);
void SetText(GenApi::INode& node, const std::string& text);

}  // namespace tools
