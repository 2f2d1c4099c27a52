/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Words of the schema: access modes, representations and the like
 */
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "GenApi/Types.h"
#include "schema/Schema.h"

namespace GenApi {

std::optional<EAccessMode> ParseAccessMode(std::string_view text) noexcept;
std::optional<ECachingMode> ParseCachingMode(std::string_view text) noexcept;
std::optional<EEndianess> ParseEndianess(std::string_view text) noexcept;
std::optional<ESign> ParseSign(std::string_view text) noexcept;
std::optional<EVisibility> ParseVisibility(std::string_view text) noexcept;
std::optional<ERepresentation> ParseRepresentation(std::string_view text) noexcept;
std::optional<EDisplayNotation> ParseDisplayNotation(std::string_view text) noexcept;
std::optional<ESlope> ParseSlope(std::string_view text) noexcept;
std::optional<bool> ParseYesNo(std::string_view text) noexcept;
std::optional<ENameSpace> ParseNameSpace(std::string_view text) noexcept;
/// False when the text of an element must be one of some words and is none of them.
bool IsKnownWord(ETag element, std::string_view text) noexcept;

/// An integer as its representation writes it.
std::string IntegerToText(std::int64_t value, ERepresentation representation);
/// The integer of a text: decimal, hexadecimal, an IP address where the representation is one, a MAC address likewise.
std::optional<std::int64_t> TextToInteger(std::string_view text, ERepresentation representation);
std::string FloatToText(double value, EDisplayNotation notation, std::int64_t precision);

}  // namespace GenApi
