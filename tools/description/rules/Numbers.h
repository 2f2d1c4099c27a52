/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Numbers as descriptions write them, and what fits into registers
 */
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string_view>

#include "description/DescriptionModel.h"

namespace tools {

/// A whole number of any register, signed or not.
struct WholeValue {
    bool isNegative = false;
    std::uint64_t magnitude = 0;

    friend bool operator==(const WholeValue&, const WholeValue&) = default;
    friend std::strong_ordering operator<=>(const WholeValue& left, const WholeValue& right) {
        if (left.isNegative != right.isNegative)
            return left.isNegative ? std::strong_ordering::less : std::strong_ordering::greater;
        return left.isNegative ? right.magnitude <=> left.magnitude : left.magnitude <=> right.magnitude;
    }
};

/// Decimal or hexadecimal; nothing for any other text.
std::optional<WholeValue> WholeNumber(std::string_view text);
/// The same where it counts bytes or bits.
std::optional<std::int64_t> SmallNumber(std::string_view text);
std::optional<double> RealNumber(std::string_view text);

/// What a register takes; everything, where the description leaves its shape to the camera or is wrong about it.
struct RegisterRange {
    bool isKnown = false;
    WholeValue minimum{};
    WholeValue maximum{};

    bool Contains(const WholeValue& value) const { return !isKnown || (minimum <= value && value <= maximum); }
};

RegisterRange RangeOf(const DescribedNode* node);

bool IsIntegerRegister(const DescribedNode& node);
bool IsBitField(const DescribedNode& node);

}  // namespace tools
