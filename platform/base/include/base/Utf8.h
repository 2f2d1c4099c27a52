/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Characters in UTF-8 (RFC 3629)
 */
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace base {

/// Bytes of the character that a text begins with; 0 when it begins with none, as overlong forms and surrogates are
/// none.
std::size_t Utf8Length(std::string_view text) noexcept;

/// The one character of a text that Utf8Length has measured.
char32_t DecodeUtf8(std::string_view character) noexcept;

void AppendUtf8(std::string& text, char32_t character);

}  // namespace base
