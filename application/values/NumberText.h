/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Numbers of features as people read them
 */
#pragma once

#include <cstdint>
#include <string>

#include "GenApi/GenApi.h"

namespace Vanto {

bool IsAddress(GenApi::IInteger& integer);
std::string IntegerText(GenApi::IInteger& integer, std::int64_t value);
std::string NumberText(GenApi::INode& node, double value);

}  // namespace Vanto
