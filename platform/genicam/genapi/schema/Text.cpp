/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts of a description: blanks, numbers, characters that are not UTF-8
 */

#include "schema/Text.h"

#include <array>
#include <charconv>
#include <cstring>
#include <limits>

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

// Number of bytes of the UTF-8 character at next, 0 when there is none (RFC 3629: no overlong form, no surrogate).
std::size_t CharacterLength(std::string_view text, std::size_t next) noexcept {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(next);
    if (lead < 0x80)
        return 1;
    const std::size_t length = lead >= 0xF0 ? 4 : (lead >= 0xE0 ? 3 : 2);
    if (lead < 0xC2 || lead > 0xF4 || text.size() - next < length)
        return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(next + i) & 0xC0) != 0x80)
            return 0;
    }
    const unsigned second = byte(next + 1);
    const bool refused = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                         (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
    return refused ? 0 : length;
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

void AppendLatin1(std::string& result, char character) {
    const auto byte = static_cast<unsigned char>(character);
    result += static_cast<char>(0xC0 | (byte >> 6));
    result += static_cast<char>(0x80 | (byte & 0x3F));
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
        const std::size_t length = CharacterLength(text, next);
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
        AppendLatin1(result, text[bad]);
        next = bad + 1;
    }
}

std::string Latin1ToUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char character : text) {
        if (static_cast<unsigned char>(character) < 0x80)
            result += character;
        else
            AppendLatin1(result, character);
    }
    return result;
}

void AppendUtf8(std::string& text, std::uint32_t character) {
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0 | (character >> 6));
        text += static_cast<char>(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        text += static_cast<char>(0xE0 | (character >> 12));
        text += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (character & 0x3F));
    } else {
        text += static_cast<char>(0xF0 | (character >> 18));
        text += static_cast<char>(0x80 | ((character >> 12) & 0x3F));
        text += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (character & 0x3F));
    }
}

}  // namespace GenApi
