/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a description says of one feature before any camera is asked
 */
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "description/DescriptionModel.h"

namespace tools {

/// Facts as the file gives them. What only the camera knows is named by the node that will tell it.
struct FeatureFacts {
    std::string interfaceName;  ///< "Integer", "Float", "Enumeration" ...
    std::string access;         ///< "RO", "WO", "RW"
    std::string minimum;
    std::string maximum;
    std::string increment;
    std::string unit;
    std::string visibility;
    std::string documentation;                                    ///< the description, else the tool tip
    std::vector<std::string> entries;                             ///< of an enumeration
    std::vector<std::pair<std::string, std::string>> conditions;  ///< "available if" and the node that says so
};

FeatureFacts FactsOf(const DescriptionModel& model, const DescribedNode& node);
/// Range and unit, or the entries, in one line.
std::string RangeText(const FeatureFacts& facts);

}  // namespace tools
