/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values of features as text: shown, checked and set
 */
#pragma once

#include <string>

#include "GenApi/GenApi.h"
#include "output/Json.h"

namespace tools {

std::string KindText(const GenApi::INode& node);
std::string AccessText(GenApi::EAccessMode mode);
std::string RangeText(GenApi::INode& node);
std::string NumberText(GenApi::INode& node, double value);
std::string ValueText(GenApi::INode& node);
Json ValueJson(GenApi::INode& node);

/// Whether a value of the kind can be read and set at all; commands and categories have none.
bool HasValue(const GenApi::INode& node);
void CheckReadable(GenApi::INode& node);
void CheckWritable(GenApi::INode& node);
void CheckText(GenApi::INode& node, const std::string& text);
void CheckRange(GenApi::INode& node, const std::string& text);
void SetText(GenApi::INode& node, const std::string& text);

}  // namespace tools
