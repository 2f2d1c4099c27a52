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

/// The value that a word of the schema stands for: one of its enumerations, or a bool for a yes or no.
template <class T>
std::optional<T> ParseWord(std::string_view text) noexcept;
/// False when the text of an element must be one of some words and is none of them.
bool IsKnownWord(ETag element, std::string_view text) noexcept;

/// An integer as its representation writes it.
std::string IntegerToText(std::int64_t value, ERepresentation representation);
/// The integer of a text: decimal, hexadecimal, an IP address where the representation is one, a MAC address likewise.
std::optional<std::int64_t> TextToInteger(std::string_view text, ERepresentation representation);
std::string FloatToText(double value, EDisplayNotation notation, std::int64_t precision);

}  // namespace GenApi
