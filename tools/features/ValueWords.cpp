/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values as people type them
 */
#include "features/ValueWords.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "output/Text.h"

namespace tools {

namespace {

bool HasHexPrefix(std::string_view word) {
    return word.size() > 2 && word[0] == '0' && (word[1] == 'x' || word[1] == 'X');
}

template <class Number, class... Format>
std::optional<Number> Whole(std::string_view digits, Format... format) {
    Number value{};
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, format...);
    return error == std::errc() && end == digits.data() + digits.size() ? std::optional(value) : std::nullopt;
}

}  // namespace

/**
 * \brief An integer: decimal, or hexadecimal after 0x
 *
 * Hexadecimal digits are 64 bits, so that 0xFFFFFFFFFFFFFFFF is -1: registers of that width hold any bits.
 *
 * \return Nothing when the word is no integer or has more than 64 bits
 */
std::optional<std::int64_t> IntegerFromWord(std::string_view word) {
    word = Trimmed(word);
    bool negative = false;
    if (!word.empty() && (word.front() == '-' || word.front() == '+')) {
        negative = word.front() == '-';
        word.remove_prefix(1);
    }
    constexpr int kHexadecimal = 16;
    constexpr auto kHighest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const bool hexadecimal = HasHexPrefix(word);
    const auto magnitude =
        hexadecimal ? Whole<std::uint64_t>(word.substr(2), kHexadecimal) : Whole<std::uint64_t>(word);
    if (!magnitude || ((negative || !hexadecimal) && *magnitude > kHighest + (negative ? 1 : 0)))
        return std::nullopt;
    return static_cast<std::int64_t>(negative ? ~*magnitude + 1 : *magnitude);
}

/// A finite number with a point, an exponent where wanted, or an integer in hexadecimal.
std::optional<double> NumberFromWord(std::string_view word) {
    word = Trimmed(word);
    if (const auto integer = IntegerFromWord(word))
        return static_cast<double>(*integer);
    if (word.size() > 1 && word.front() == '+' && word[1] != '-')
        word.remove_prefix(1);
    const auto value = Whole<double>(word, std::chars_format::general);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

/// on, true, yes, 1 and off, false, no, 0, in any case.
std::optional<bool> SwitchFromWord(std::string_view word) {
    word = Trimmed(word);
    const auto isWord = [&](const char* one) { return EqualsIgnoringCase(word, one); };
    constexpr const char* kOn[] = {"on", "true", "yes", "1"};
    constexpr const char* kOff[] = {"off", "false", "no", "0"};
    if (std::any_of(std::begin(kOn), std::end(kOn), isWord))
        return true;
    if (std::any_of(std::begin(kOff), std::end(kOff), isWord))
        return false;
    return std::nullopt;
}

/// Bytes as pairs of hexadecimal digits, after 0x or not; blanks and colons may stand between the pairs.
std::optional<std::vector<std::uint8_t>> BytesFromWord(std::string_view word) {
    word = Trimmed(word);
    if (HasHexPrefix(word))
        word.remove_prefix(2);
    std::vector<std::uint8_t> bytes;
    while (!word.empty()) {
        if (!bytes.empty() && (word.front() == ' ' || word.front() == ':'))
            word.remove_prefix(1);
        constexpr int kHexadecimal = 16;
        const auto byte = word.size() < 2 ? std::nullopt : Whole<std::uint8_t>(word.substr(0, 2), kHexadecimal);
        if (!byte)
            return std::nullopt;
        bytes.push_back(*byte);
        word.remove_prefix(2);
    }
    return bytes.empty() ? std::nullopt : std::optional(std::move(bytes));
}

/// Hexadecimal digits without anything between them, as BytesFromWord takes them.
std::string HexText(const std::vector<std::uint8_t>& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes)
        text += fmt::format("{:02x}", byte);
    return text;
}

/// The word without the unit at its end and the blanks before it: "2500 us" is 2500 where the unit is "us".
std::string_view WithoutUnit(std::string_view word, std::string_view unit) {
    word = Trimmed(word);
    if (!unit.empty() && word.size() > unit.size() && word.ends_with(unit))
        word.remove_suffix(unit.size());
    return Trimmed(word);
}

}  // namespace tools
