/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Numbers as descriptions write them, and what fits into registers
 */
#include "description/rules/Numbers.h"

#include <cmath>
#include <cstdlib>

#include "base/Number.h"

namespace tools {

namespace {

constexpr std::int64_t kBitsPerByte = 8;
constexpr std::int64_t kLongest = 8;  // bytes of an integer

std::optional<std::int64_t> BitsOf(const DescribedNode& node, std::int64_t length) {
    if (!IsBitField(node))
        return length * kBitsPerByte;
    if (node.Find("Bit") != nullptr)
        return 1;
    const auto low = SmallNumber(node.Text("LSB"));
    const auto high = SmallNumber(node.Text("MSB"));
    if (!low || !high)
        return std::nullopt;
    return std::abs(*low - *high) + 1;
}

}  // namespace

std::optional<WholeValue> WholeNumber(std::string_view text) {
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+'))
        text.remove_prefix(1);
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (isHexadecimal)
        text.remove_prefix(2);
    const auto number = base::ParseNumber<std::uint64_t>(text, isHexadecimal ? 16 : 10);
    return number ? std::optional(WholeValue{isNegative && *number != 0, *number}) : std::nullopt;
}

std::optional<std::int64_t> SmallNumber(std::string_view text) {
    constexpr std::uint64_t kLargest = 0x7FFFFFFF;
    const auto value = WholeNumber(text);
    if (!value || value->magnitude > kLargest)
        return std::nullopt;
    const auto magnitude = static_cast<std::int64_t>(value->magnitude);
    return value->isNegative ? -magnitude : magnitude;
}

std::optional<double> RealNumber(std::string_view text) {
    if (const auto whole = WholeNumber(text))
        return (whole->isNegative ? -1.0 : 1.0) * static_cast<double>(whole->magnitude);
    const auto number = base::ParseNumber<double>(text);
    return number && !std::isnan(*number) ? number : std::nullopt;
}

bool IsIntegerRegister(const DescribedNode& node) {
    return node.kind == "IntReg" || IsBitField(node);
}

bool IsBitField(const DescribedNode& node) {
    return node.kind == "MaskedIntReg" || node.kind == "StructEntry";
}

/// Of a register, which may be null.
RegisterRange RangeOf(const DescribedNode* node) {
    const auto length = node != nullptr ? SmallNumber(node->Text("Length")) : std::nullopt;
    if (!length || !IsIntegerRegister(*node) || *length < 1 || *length > kLongest)
        return {};
    const auto bits = BitsOf(*node, *length);
    if (!bits || *bits < 1 || *bits > *length * kBitsPerByte)
        return {};
    // All ones of so many bits; a shift by 64 would be none.
    const std::uint64_t ones = ~std::uint64_t{0} >> (64 - *bits);
    if (node->Text("Sign") == "Signed")
        return {true, {true, ones / 2 + 1}, {false, ones / 2}};
    return {true, {false, 0}, {false, ones}};
}

}  // namespace tools
