/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Numbers in texts
 */
#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace base {

/**
 * \brief The number that a text is, from its first character to its last
 * \param[in] format For integers the base, else 10; for others std::chars_format
 * \return Nothing when the text has anything else, a sign '+' or blanks included, or the number does not fit
 */
template <class Number, class... Format>
std::optional<Number> ParseNumber(std::string_view text, Format... format) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, format...);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

}  // namespace base
