/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Words of the schema: access modes, representations and the like
 */

#include "schema/Values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <utility>

#include "Base/GCFormat.h"
#include "base/Number.h"
#include "schema/Text.h"

namespace GenApi {

namespace {

template <class T>
using Word = std::pair<std::string_view, T>;

/// The words for the values of a type.
template <class T>
constexpr std::array<Word<T>, 0> kWords;
// R and W are not of the schema; descriptions have them.
template <>
constexpr auto kWords<EAccessMode> = std::to_array<Word<EAccessMode>>(
    {{"RO", RO}, {"RW", RW}, {"WO", WO}, {"NA", NA}, {"NI", NI}, {"R", RO}, {"W", WO}});
template <>
constexpr auto kWords<ECachingMode> = std::to_array<Word<ECachingMode>>({{"NoCache", NoCache},
                                                                         {"WriteThrough", WriteThrough},
                                                                         {"WriteAround", WriteAround}});
template <>
constexpr auto kWords<EEndianess> = std::to_array<Word<EEndianess>>({{"LittleEndian", LittleEndian},
                                                                     {"BigEndian", BigEndian}});
template <>
constexpr auto kWords<ESign> = std::to_array<Word<ESign>>({{"Unsigned", Unsigned}, {"Signed", Signed}});
template <>
constexpr auto kWords<EVisibility> = std::to_array<Word<EVisibility>>(
    {{"Beginner", Beginner}, {"Expert", Expert}, {"Guru", Guru}, {"Invisible", Invisible}});
template <>
constexpr auto kWords<ERepresentation> = std::to_array<Word<ERepresentation>>({{"Linear", Linear},
                                                                               {"Logarithmic", Logarithmic},
                                                                               {"Boolean", Boolean},
                                                                               {"PureNumber", PureNumber},
                                                                               {"HexNumber", HexNumber},
                                                                               {"IPV4Address", IPV4Address},
                                                                               {"MACAddress", MACAddress}});
template <>
constexpr auto kWords<EDisplayNotation> = std::to_array<Word<EDisplayNotation>>({{"Automatic", fnAutomatic},
                                                                                 {"Fixed", fnFixed},
                                                                                 {"Scientific", fnScientific}});
template <>
constexpr auto kWords<ESlope> = std::to_array<Word<ESlope>>(
    {{"Increasing", Increasing}, {"Decreasing", Decreasing}, {"Varying", Varying}, {"Automatic", Automatic}});
template <>
constexpr auto kWords<bool> = std::to_array<Word<bool>>(
    {{"Yes", true}, {"No", false}, {"true", true}, {"false", false}, {"1", true}, {"0", false}});
template <>
constexpr auto kWords<ENameSpace> = std::to_array<Word<ENameSpace>>({{"Standard", Standard}, {"Custom", Custom}});

// Numbers of one base between separators, the first being the most significant.
std::optional<std::int64_t> ParseGroups(std::string_view text, char separator, std::size_t groups, int radix) noexcept {
    std::uint64_t result = 0;
    for (std::size_t group = 0; group < groups; ++group) {
        const std::size_t end = text.find(separator);
        const bool isLast = group + 1 == groups;
        if ((end == std::string_view::npos) != isLast)
            return std::nullopt;
        const auto value = base::ParseNumber<unsigned>(text.substr(0, end), radix);
        if (!value || *value > 255)
            return std::nullopt;
        result = (result << 8) | *value;
        text.remove_prefix(isLast ? text.size() : end + 1);
    }
    return static_cast<std::int64_t>(result);
}

unsigned ByteOf(std::int64_t value, unsigned index) noexcept {
    return static_cast<unsigned>((static_cast<std::uint64_t>(value) >> (8 * index)) & 0xFF);
}

}  // namespace

template <class T>
std::optional<T> ParseWord(std::string_view text) noexcept {
    for (const auto& [word, value] : kWords<T>) {
        if (AreEqual(word, text))
            return value;
    }
    return std::nullopt;
}

template std::optional<EAccessMode> ParseWord(std::string_view) noexcept;
template std::optional<ECachingMode> ParseWord(std::string_view) noexcept;
template std::optional<EEndianess> ParseWord(std::string_view) noexcept;
template std::optional<ESign> ParseWord(std::string_view) noexcept;
template std::optional<EVisibility> ParseWord(std::string_view) noexcept;
template std::optional<ERepresentation> ParseWord(std::string_view) noexcept;
template std::optional<EDisplayNotation> ParseWord(std::string_view) noexcept;
template std::optional<ESlope> ParseWord(std::string_view) noexcept;
template std::optional<bool> ParseWord(std::string_view) noexcept;
template std::optional<ENameSpace> ParseWord(std::string_view) noexcept;

bool IsKnownWord(ETag element, std::string_view text) noexcept {
    switch (element) {
        case ETag::AccessMode:
        case ETag::ImposedAccessMode:
            return ParseWord<EAccessMode>(text).has_value();
        case ETag::Cachable:
            return ParseWord<ECachingMode>(text).has_value();
        case ETag::Endianess:
            return ParseWord<EEndianess>(text).has_value();
        case ETag::Sign:
            return ParseWord<ESign>(text).has_value();
        case ETag::Visibility:
        case ETag::ImposedVisibility:
            return ParseWord<EVisibility>(text).has_value();
        case ETag::Representation:
            return ParseWord<ERepresentation>(text).has_value();
        case ETag::DisplayNotation:
            return ParseWord<EDisplayNotation>(text).has_value();
        case ETag::Slope:
            return ParseWord<ESlope>(text).has_value();
        case ETag::Streamable:
        case ETag::IsDeprecated:
        case ETag::IsLinear:
        case ETag::IsSelfClearing:
        case ETag::SwapEndianess:
        case ETag::CacheChunkData:
            return ParseWord<bool>(text).has_value();
        default:
            return true;
    }
}

std::string IntegerToText(std::int64_t value, ERepresentation representation) {
    switch (representation) {
        case HexNumber:
            return GenICam::FormatText("0x%I64x", static_cast<std::uint64_t>(value));
        case IPV4Address:
            return GenICam::FormatText("%u.%u.%u.%u", ByteOf(value, 3), ByteOf(value, 2), ByteOf(value, 1),
                                       ByteOf(value, 0));
        case MACAddress:
            return GenICam::FormatText("%02x:%02x:%02x:%02x:%02x:%02x", ByteOf(value, 5), ByteOf(value, 4),
                                       ByteOf(value, 3), ByteOf(value, 2), ByteOf(value, 1), ByteOf(value, 0));
        default:
            break;
    }
    std::array<char, 24> digits{};
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    return std::string(digits.data(), end);
}

std::optional<std::int64_t> TextToInteger(std::string_view text, ERepresentation representation) {
    text = Trimmed(text);
    if (representation == IPV4Address && text.find('.') != std::string_view::npos)
        return ParseGroups(text, '.', 4, 10);
    if (representation == MACAddress && text.find(':') != std::string_view::npos)
        return ParseGroups(text, ':', 6, 16);
    return ParseInteger(text);
}

/**
 * \brief A number as its notation writes it
 * \param[in] precision Number of significant digits, after the point for fixed and scientific notation
 */
std::string FloatToText(double value, EDisplayNotation notation, std::int64_t precision) {
    if (!std::isfinite(value))
        return std::isnan(value) ? "NaN" : (value > 0.0 ? "INF" : "-INF");
    const int digits = static_cast<int>(std::clamp<std::int64_t>(precision, 0, 60));
    const std::chars_format format = notation == fnFixed        ? std::chars_format::fixed
                                     : notation == fnScientific ? std::chars_format::scientific
                                                                : std::chars_format::general;
    std::array<char, 400> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value, format, digits);
    return std::string(text.data(), end);
}

}  // namespace GenApi
