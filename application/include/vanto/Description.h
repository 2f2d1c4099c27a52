/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a camera description in a file says, without a camera
 */
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "vanto/CameraError.h"
#include "vanto/Feature.h"

namespace Vanto {

/// A feature as the description has it. What only a camera can tell is not here.
struct DescribedFeature {
    std::string name;                                             ///< as programs use it
    FeatureKind kind = FeatureKind::kOther;                       ///< what kind of value it has
    std::string category;                                         ///< the path of its category: "AnalogControl/Gains"
    std::string displayName;                                      ///< for people
    std::string toolTip;                                          ///< one sentence; may be empty
    std::string description;                                      ///< the documentation; may be empty
    std::string unit;                                             ///< "us"; empty for none
    FeatureVisibility visibility = FeatureVisibility::kBeginner;  ///< for whom it is meant
    std::vector<std::string> selectors;                           ///< features that select what this one is about
    std::vector<std::pair<std::string, std::int64_t>> entries;    ///< of an enumeration, with their values
};

/// What a description file says.
struct Description {
    std::string vendor;                      ///< the camera's maker
    std::string model;                       ///< the camera's model
    std::string toolTip;                     ///< one sentence; may be empty
    std::vector<DescribedFeature> features;  ///< in the order of the description, without the categories
    std::vector<std::string> warnings;       ///< faults that did not keep it from being loaded: "line 12: ..."
};

VANTOAPPLICATION_API Description DescribeFile(const std::string& path);

}  // namespace Vanto
