/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What is known about features: values, kinds, ranges, entries
 */
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace Vanto {

using FeatureBytes = std::vector<std::uint8_t>;
/// A value of any feature. Enumerations have the name of their entry; commands and categories have no value.
using FeatureValue = std::variant<std::int64_t, double, bool, std::string, FeatureBytes>;

/// What kind of value a feature has.
enum class FeatureKind { kInteger, kFloat, kBoolean, kEnumeration, kString, kRegister, kCommand, kCategory, kOther };
/// What may be done with a feature at present.
enum class FeatureAccess { kNotImplemented, kNotAvailable, kWriteOnly, kReadOnly, kReadWrite };
/// For whom a feature is meant, from beginners to nobody.
enum class FeatureVisibility { kBeginner, kExpert, kGuru, kInvisible };

/// One entry of an enumeration.
struct FeatureEntry {
    std::string name;          ///<  as values have it
    std::int64_t value = 0;    ///<  what stands in the camera's register
    std::string displayName;   ///<  for people
    std::string description;   ///<  the documentation; may be empty
    bool isAvailable = false;  ///<  whether it can be set at present
};

/// What a number may be at present, both ends included.
struct FeatureRange {
    FeatureValue least;                ///<  the least one
    FeatureValue most;                 ///<  the greatest one
    std::optional<FeatureValue> step;  ///< from least on; none where every value between the ends is taken
    std::vector<FeatureValue> values;  ///< the only ones that are taken, where there is such a list
};

}  // namespace Vanto
