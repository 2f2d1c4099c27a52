/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values as people write them
 */
#include "base/ValueText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/Number.h"
#include "base/Text.h"

namespace base {

namespace {

constexpr int kHexadecimal = 16;

/// Ten to the power of this is what the prefix stands for.
std::optional<int> PowerOfPrefix(std::string_view prefix) {
    struct Prefix {
        std::string_view text;
        int power;
    };
    constexpr Prefix kPrefixes[] = {{"", 0},   {"n", -9}, {"u", -6}, {"\u00B5", -6}, {"\u03BC", -6},
                                    {"m", -3}, {"k", 3},  {"M", 6},  {"G", 9}};
    for (const Prefix& one : kPrefixes)
        if (one.text == prefix)
            return one.power;
    return std::nullopt;
}

/// By which power of ten a unit is larger than another of the same base; none when they have nothing in common.
std::optional<int> PowerBetween(std::string_view from, std::string_view to) {
    if (from == to)
        return 0;
    for (std::size_t length = std::min(from.size(), to.size()); length != 0; --length) {
        if (from.substr(from.size() - length) != to.substr(to.size() - length))
            continue;
        const auto left = PowerOfPrefix(from.substr(0, from.size() - length));
        const auto right = PowerOfPrefix(to.substr(0, to.size() - length));
        if (left && right)
            return *left - *right;
    }
    return std::nullopt;
}

/// A number with its unit: "2 ms" is {"2", 3} where the feature's unit is "us".
struct Quantity {
    std::string_view number;
    int power = 0;
};

std::optional<Quantity> Split(std::string_view text, std::string_view unit) {
    const std::size_t last = text.find_last_of("0123456789.");
    if (last == std::string_view::npos || last + 1 == text.size())
        return Quantity{text};
    const auto power = PowerBetween(Trimmed(text.substr(last + 1)), unit);
    return power && !unit.empty() ? std::optional(Quantity{Trimmed(text.substr(0, last + 1)), *power}) : std::nullopt;
}

/// The text without the feature's own unit at its end: of hexadecimal digits nobody could tell where it begins.
std::string_view WithoutUnit(std::string_view text, std::string_view unit) {
    text = Trimmed(text);
    if (!unit.empty() && text.size() > unit.size() && text.ends_with(unit))
        text.remove_suffix(unit.size());
    return Trimmed(text);
}

std::optional<double> Decimal(const Quantity& quantity) {
    std::string_view digits = quantity.number;
    if (digits.size() > 1 && digits.front() == '+' && digits[1] != '-')
        digits.remove_prefix(1);
    if (!ParseNumber<double>(digits, std::chars_format::general))
        return std::nullopt;
    // The exponent is shifted in the text: no digit is lost on the way.
    const std::size_t mark = digits.find_first_of("eE");
    std::optional<std::int32_t> given = 0;
    if (mark != std::string_view::npos)
        given = ParseNumber<std::int32_t>(digits.substr(digits[mark + 1] == '+' ? mark + 2 : mark + 1));
    if (!given)
        return std::nullopt;
    const std::string shifted =
        std::string(digits.substr(0, mark)) + "e" + std::to_string(std::int64_t{*given} + quantity.power);
    const auto value = ParseNumber<double>(shifted, std::chars_format::general);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

}  // namespace

/**
 * \brief An integer: decimal, or hexadecimal after 0x
 *
 * Hexadecimal digits are 64 bits, so that 0xFFFFFFFFFFFFFFFF is -1: registers of that width hold any bits.
 *
 * \return Nothing when the text is no integer or has more than 64 bits
 */
std::optional<std::int64_t> IntegerFromText(std::string_view text) {
    text = Trimmed(text);
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (negative || text.front() == '+'))
        text.remove_prefix(1);
    constexpr auto kHighest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const bool hexadecimal = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const auto magnitude =
        hexadecimal ? ParseNumber<std::uint64_t>(text.substr(2), kHexadecimal) : ParseNumber<std::uint64_t>(text);
    // Hexadecimal digits are the bits of a register, so that the highest of 64 stands for the sign.
    if (!magnitude || ((negative || !hexadecimal) && *magnitude > kHighest + (negative ? 1 : 0)))
        return std::nullopt;
    return static_cast<std::int64_t>(negative ? ~*magnitude + 1 : *magnitude);
}

/**
 * \brief An integer: decimal, hexadecimal after 0x, or a number with a unit that makes an integer
 * \param[in] unit The feature's unit, empty for none
 */
std::optional<std::int64_t> IntegerFromText(std::string_view text, std::string_view unit) {
    if (const auto plain = IntegerFromText(WithoutUnit(text, unit)))
        return plain;
    const auto value = NumberFromText(text, unit);
    constexpr double kLimit = 9007199254740992.0;  // beyond this a double leaves integers out
    if (!value || std::abs(*value) > kLimit || *value != std::floor(*value))
        return std::nullopt;
    return static_cast<std::int64_t>(*value);
}

/**
 * \brief A finite number, with a unit or without: "2500", "2.5e3", "2.5 ms" where the feature's unit is "us"
 * \return Nothing when it is no number or its unit is no multiple of the feature's
 */
std::optional<double> NumberFromText(std::string_view text, std::string_view unit) {
    if (const auto plain = IntegerFromText(WithoutUnit(text, unit)))
        return static_cast<double>(*plain);
    const auto quantity = Split(Trimmed(text), unit);
    return quantity ? Decimal(*quantity) : std::nullopt;
}

/// on, true, yes, 1 and off, false, no, 0, in any case.
std::optional<bool> SwitchFromText(std::string_view text) {
    text = Trimmed(text);
    const auto isWord = [&](const char* one) { return EqualsIgnoringCase(text, one); };
    constexpr const char* kOn[] = {"on", "true", "yes", "1"};
    constexpr const char* kOff[] = {"off", "false", "no", "0"};
    if (std::any_of(std::begin(kOn), std::end(kOn), isWord))
        return true;
    if (std::any_of(std::begin(kOff), std::end(kOff), isWord))
        return false;
    return std::nullopt;
}

/// Bytes as pairs of hexadecimal digits, after 0x or not; blanks and colons may stand between the pairs.
std::optional<std::vector<std::uint8_t>> BytesFromText(std::string_view text) {
    text = Trimmed(text);
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
        text.remove_prefix(2);
    std::vector<std::uint8_t> bytes;
    while (!text.empty()) {
        if (!bytes.empty() && (text.front() == ' ' || text.front() == ':'))
            text.remove_prefix(1);
        const auto byte = text.size() < 2 ? std::nullopt : ParseNumber<std::uint8_t>(text.substr(0, 2), kHexadecimal);
        if (!byte)
            return std::nullopt;
        bytes.push_back(*byte);
        text.remove_prefix(2);
    }
    return bytes.empty() ? std::nullopt : std::optional(std::move(bytes));
}

}  // namespace base
