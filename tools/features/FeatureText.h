/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Words for what features are, and their values in JSON
 */
#pragma once

#include <string>

#include "GenApi/GenApi.h"
#include "output/Json.h"

namespace tools {

std::string KindText(const GenApi::INode& node);
std::string AccessText(GenApi::EAccessMode mode);
Json ValueJson(GenApi::INode& node);

}  // namespace tools
