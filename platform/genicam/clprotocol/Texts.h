/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Lists in texts, and texts that come from foreign libraries
 */
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace CLProtocol {

std::string Join(const std::vector<std::string>& parts, char separator);
bool BeginsWithTokens(std::string_view text, std::string_view start, char separator);
bool HasControlCharacters(std::string_view text);
std::string WithoutControlCharacters(std::string_view text, std::string_view allowed = {});
const char* ReasonOf(const std::exception& error) noexcept;

/// Asks a foreign function for a text: it takes a buffer and the buffer's size, which it changes.
using TextFunction = std::function<std::int32_t(char* buffer, std::uint32_t* size)>;

/// Result of a function that gives a text; the text is empty unless the result is no error.
struct ForeignText {
    std::int32_t result;
    std::string text;
};

/// How much room a text gets, NUL included: at first, and when it asks for more.
struct TextRoom {
    std::size_t first;
    std::size_t most;
};

ForeignText AskForText(const TextFunction& function, TextRoom room);

}  // namespace CLProtocol
