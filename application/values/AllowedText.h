/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a feature takes at present, as people read it
 */
#pragma once

#include <string>
#include <vector>

#include "GenApi/GenApi.h"

namespace Vanto {

/// Names of the entries that an enumeration has at present.
std::vector<std::string> EntryNames(GenApi::INode& node);
/// What a feature takes at present: its range, step and unit, or its entries. Asks the camera; throws GenericException.
std::string RangeText(GenApi::INode& node);
/// The same for a sentence about another failure; empty where the camera does not tell, or for no node.
std::string AllowedText(GenApi::INode* node) noexcept;

}  // namespace Vanto
