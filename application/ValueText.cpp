/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values as people write them
 */
#include "ValueText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

namespace Vanto {

namespace {

constexpr int kHexadecimal = 16;

char Lower(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

template <class Number, class... Format>
std::optional<Number> Whole(std::string_view digits, Format... format) {
    Number value{};
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, format...);
    return error == std::errc() && end == digits.data() + digits.size() ? std::optional(value) : std::nullopt;
}

std::optional<std::int64_t> PlainInteger(std::string_view text) {
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (negative || text.front() == '+'))
        text.remove_prefix(1);
    constexpr auto kHighest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const bool hexadecimal = text.size() > 2 && text[0] == '0' && Lower(text[1]) == 'x';
    const auto magnitude =
        hexadecimal ? Whole<std::uint64_t>(text.substr(2), kHexadecimal) : Whole<std::uint64_t>(text);
    // Hexadecimal digits are the bits of a register, so that the highest of 64 stands for the sign.
    if (!magnitude || ((negative || !hexadecimal) && *magnitude > kHighest + (negative ? 1 : 0)))
        return std::nullopt;
    return static_cast<std::int64_t>(negative ? ~*magnitude + 1 : *magnitude);
}

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

std::optional<double> Decimal(const Quantity& quantity) {
    std::string_view digits = quantity.number;
    if (digits.size() > 1 && digits.front() == '+' && digits[1] != '-')
        digits.remove_prefix(1);
    if (!Whole<double>(digits, std::chars_format::general))
        return std::nullopt;
    // The exponent is shifted in the text: no digit is lost on the way.
    const std::size_t mark = digits.find_first_of("eE");
    const auto given =
        mark == std::string_view::npos ? 0 : Whole<int>(digits.substr(digits[mark + 1] == '+' ? mark + 2 : mark + 1));
    if (!given)
        return std::nullopt;
    const std::string shifted = std::string(digits.substr(0, mark)) + "e" + std::to_string(*given + quantity.power);
    const auto value = Whole<double>(shifted, std::chars_format::general);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

}  // namespace

/// Without blanks and tabulators at its ends.
std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

bool EqualsIgnoringCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char one, char other) { return Lower(one) == Lower(other); });
}

/**
 * \brief An integer: decimal, hexadecimal after 0x, or a number with a unit that makes an integer
 * \param[in] unit The feature's unit, empty for none
 */
std::optional<std::int64_t> IntegerFromText(std::string_view text, std::string_view unit) {
    text = Trimmed(text);
    if (const auto plain = PlainInteger(text))
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
    text = Trimmed(text);
    if (const auto plain = PlainInteger(text))
        return static_cast<double>(*plain);
    const auto quantity = Split(text, unit);
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
    if (text.size() > 2 && text[0] == '0' && Lower(text[1]) == 'x')
        text.remove_prefix(2);
    std::vector<std::uint8_t> bytes;
    while (!text.empty()) {
        if (!bytes.empty() && (text.front() == ' ' || text.front() == ':'))
            text.remove_prefix(1);
        const auto byte = text.size() < 2 ? std::nullopt : Whole<std::uint8_t>(text.substr(0, 2), kHexadecimal);
        if (!byte)
            return std::nullopt;
        bytes.push_back(*byte);
        text.remove_prefix(2);
    }
    return bytes.empty() ? std::nullopt : std::optional(std::move(bytes));
}

/// The candidate that differs from a word in case only or in fewest letters; empty when none is close.
std::string SimilarWord(const std::string& word, const std::vector<std::string>& candidates) {
    constexpr std::size_t kLongest = 64;
    std::string closest;
    std::size_t limit = std::max<std::size_t>(word.size() / 3, 1) + 1;
    for (const std::string& candidate : candidates) {
        if (word.size() > kLongest || candidate.size() > kLongest)
            continue;
        std::vector<std::size_t> above(candidate.size() + 1);
        for (std::size_t column = 0; column < above.size(); ++column)
            above[column] = column;
        for (std::size_t line = 0; line < word.size(); ++line) {
            std::size_t diagonal = std::exchange(above[0], line + 1);
            for (std::size_t column = 0; column < candidate.size(); ++column) {
                const std::size_t changed = diagonal + (Lower(word[line]) != Lower(candidate[column]) ? 1 : 0);
                diagonal = above[column + 1];
                above[column + 1] = std::min({diagonal + 1, above[column] + 1, changed});
            }
        }
        if (above.back() < limit) {
            limit = above.back();
            closest = candidate;
        }
    }
    return closest;
}

}  // namespace Vanto
