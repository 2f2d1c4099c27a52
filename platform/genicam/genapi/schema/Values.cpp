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

template <class T, std::size_t N>
std::optional<T> Find(const Word<T> (&words)[N], std::string_view text) noexcept {
    for (const auto& [word, value] : words) {
        if (AreEqual(word, text))
            return value;
    }
    return std::nullopt;
}

// R and W are not of the schema; descriptions have them.
constexpr Word<EAccessMode> kAccessModes[] = {{"RO", RO}, {"RW", RW}, {"WO", WO}, {"NA", NA},
                                              {"NI", NI}, {"R", RO},  {"W", WO}};
constexpr Word<ECachingMode> kCachingModes[] = {
    {"NoCache", NoCache}, {"WriteThrough", WriteThrough}, {"WriteAround", WriteAround}};
constexpr Word<EEndianess> kEndianesses[] = {{"LittleEndian", LittleEndian}, {"BigEndian", BigEndian}};
constexpr Word<ESign> kSigns[] = {{"Unsigned", Unsigned}, {"Signed", Signed}};
constexpr Word<EVisibility> kVisibilities[] = {
    {"Beginner", Beginner}, {"Expert", Expert}, {"Guru", Guru}, {"Invisible", Invisible}};
constexpr Word<ERepresentation> kRepresentations[] = {
    {"Linear", Linear},       {"Logarithmic", Logarithmic}, {"Boolean", Boolean},      {"PureNumber", PureNumber},
    {"HexNumber", HexNumber}, {"IPV4Address", IPV4Address}, {"MACAddress", MACAddress}};
constexpr Word<EDisplayNotation> kNotations[] = {
    {"Automatic", fnAutomatic}, {"Fixed", fnFixed}, {"Scientific", fnScientific}};
constexpr Word<ESlope> kSlopes[] = {
    {"Increasing", Increasing}, {"Decreasing", Decreasing}, {"Varying", Varying}, {"Automatic", Automatic}};
constexpr Word<bool> kYesNo[] = {{"Yes", true},    {"No", false}, {"true", true},
                                 {"false", false}, {"1", true},   {"0", false}};
constexpr Word<ENameSpace> kNameSpaces[] = {{"Standard", Standard}, {"Custom", Custom}};

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

std::optional<EAccessMode> ParseAccessMode(std::string_view text) noexcept {
    return Find(kAccessModes, text);
}
std::optional<ECachingMode> ParseCachingMode(std::string_view text) noexcept {
    return Find(kCachingModes, text);
}
std::optional<EEndianess> ParseEndianess(std::string_view text) noexcept {
    return Find(kEndianesses, text);
}
std::optional<ESign> ParseSign(std::string_view text) noexcept {
    return Find(kSigns, text);
}
std::optional<EVisibility> ParseVisibility(std::string_view text) noexcept {
    return Find(kVisibilities, text);
}
std::optional<ERepresentation> ParseRepresentation(std::string_view text) noexcept {
    return Find(kRepresentations, text);
}
std::optional<EDisplayNotation> ParseDisplayNotation(std::string_view text) noexcept {
    return Find(kNotations, text);
}
std::optional<ESlope> ParseSlope(std::string_view text) noexcept {
    return Find(kSlopes, text);
}
std::optional<bool> ParseYesNo(std::string_view text) noexcept {
    return Find(kYesNo, text);
}
std::optional<ENameSpace> ParseNameSpace(std::string_view text) noexcept {
    return Find(kNameSpaces, text);
}

bool IsKnownWord(ETag element, std::string_view text) noexcept {
    switch (element) {
        case ETag::AccessMode:
        case ETag::ImposedAccessMode:
            return ParseAccessMode(text).has_value();
        case ETag::Cachable:
            return ParseCachingMode(text).has_value();
        case ETag::Endianess:
            return ParseEndianess(text).has_value();
        case ETag::Sign:
            return ParseSign(text).has_value();
        case ETag::Visibility:
        case ETag::ImposedVisibility:
            return ParseVisibility(text).has_value();
        case ETag::Representation:
            return ParseRepresentation(text).has_value();
        case ETag::DisplayNotation:
            return ParseDisplayNotation(text).has_value();
        case ETag::Slope:
            return ParseSlope(text).has_value();
        case ETag::Streamable:
        case ETag::IsDeprecated:
        case ETag::IsLinear:
        case ETag::IsSelfClearing:
        case ETag::SwapEndianess:
        case ETag::CacheChunkData:
            return ParseYesNo(text).has_value();
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
