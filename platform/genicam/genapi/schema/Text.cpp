/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts of a description: blanks, numbers, characters that are not UTF-8
 */

#include "schema/Text.h"

#include <array>
#include <charconv>
#include <cstring>
#include <limits>
#include <system_error>

#include "base/Utf8.h"

namespace GenApi {

namespace {

struct Magnitude {
    bool negative = false;
    bool hexadecimal = false;
    bool tooLarge = false;
    std::uint64_t value = 0;
};

// Sign, base and digits of an integer; nothing when the text has anything else.
std::optional<Magnitude> ParseMagnitude(std::string_view text) noexcept {
    Magnitude result;
    text = Trimmed(text);
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        result.negative = text.front() == '-';
        text.remove_prefix(1);
    }
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        result.hexadecimal = true;
        text.remove_prefix(2);
    }
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, result.value, result.hexadecimal ? 16 : 10);
    if (text.empty() || stop != end || error == std::errc::invalid_argument)
        return std::nullopt;
    result.tooLarge = error == std::errc::result_out_of_range;
    return result;
}

constexpr auto kLargest = std::numeric_limits<std::int64_t>::max();
constexpr auto kSignBit = std::uint64_t{1} << 63;

std::optional<std::int64_t> Signed(const Magnitude& magnitude) noexcept {
    if (magnitude.tooLarge)
        return std::nullopt;
    if (magnitude.negative)
        return magnitude.value <= kSignBit ? std::optional(static_cast<std::int64_t>(0 - magnitude.value))
                                           : std::nullopt;
    if (magnitude.value >= kSignBit && !magnitude.hexadecimal)
        return std::nullopt;
    return static_cast<std::int64_t>(magnitude.value);
}

// How many ASCII characters the text begins with, in whole words at least: descriptions are nearly all ASCII. Blocks
// first, of which the compiler looks at sixteen characters with one instruction.
std::size_t CountPlain(std::string_view text) noexcept {
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    const auto isPlain = [&]<std::size_t N>(std::array<std::uint64_t, N> words, std::size_t at) {
        std::memcpy(words.data(), text.data() + at, sizeof(words));
        std::uint64_t all = 0;
        for (const std::uint64_t word : words)
            all |= word;
        return (all & kHighBits) == 0;
    };
    std::size_t next = 0;
    while (text.size() - next >= 128 && isPlain(std::array<std::uint64_t, 16>{}, next))
        next += 128;
    while (text.size() - next >= 8 && isPlain(std::array<std::uint64_t, 1>{}, next))
        next += 8;
    return next;
}

}  // namespace

std::string Shortened(std::string_view text) {
    constexpr std::size_t kLongest = 200;
    if (text.size() <= kLongest)
        return std::string(text);
    std::size_t end = kLongest;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    return std::string(text.substr(0, end)) + "...";
}

std::string Joined(std::initializer_list<std::string_view> pieces) {
    std::string text;
    for (const std::string_view piece : pieces)
        text += Shortened(piece);
    return text;
}

std::optional<std::int64_t> ParseInteger(std::string_view text) noexcept {
    const auto magnitude = ParseMagnitude(text);
    return magnitude ? Signed(*magnitude) : std::nullopt;
}

std::optional<std::int64_t> ParseSaturated(std::string_view text) noexcept {
    const auto magnitude = ParseMagnitude(text);
    if (!magnitude)
        return std::nullopt;
    if (!magnitude->negative && (magnitude->tooLarge || magnitude->value >= kSignBit))
        return kLargest;
    return magnitude->negative && magnitude->tooLarge ? std::numeric_limits<std::int64_t>::min() : Signed(*magnitude);
}

std::optional<double> ParseFloat(std::string_view text) noexcept {
    text = Trimmed(text);
    if (const auto magnitude = ParseMagnitude(text); magnitude && !magnitude->tooLarge) {
        const double value = static_cast<double>(magnitude->value);
        return magnitude->negative ? -value : value;
    }
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || stop != end || error != std::errc())
        return std::nullopt;
    return value;
}

std::size_t FindInvalidUtf8(std::string_view text, std::size_t from) noexcept {
    std::size_t next = from;
    while (next < text.size()) {
        next += CountPlain(text.substr(next));
        if (next >= text.size())
            break;
        const std::size_t length = base::Utf8Length(text.substr(next));
        if (length == 0)
            return next;
        next += length;
    }
    return std::string_view::npos;
}

std::string RepairUtf8(std::string_view text) {
    std::string result;
    std::size_t next = 0;
    for (;;) {
        const std::size_t bad = FindInvalidUtf8(text, next);
        result += text.substr(next, bad - next);
        if (bad == std::string_view::npos)
            return result;
        base::AppendUtf8(result, static_cast<unsigned char>(text[bad]));
        next = bad + 1;
    }
}

std::string Latin1ToUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char character : text)
        base::AppendUtf8(result, static_cast<unsigned char>(character));
    return result;
}

}  // namespace GenApi
