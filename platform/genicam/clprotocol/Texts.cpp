/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Lists in texts, and texts that come from foreign libraries
 */

#include "Texts.h"

#include <algorithm>
#include <cstring>

#include "Base/GCException.h"
#include "base/Text.h"
#include "clser/ClSerial.h"

namespace CLProtocol {

namespace {

constexpr int kMaxAttempts = 4;  // a needed size that keeps growing is no answer

}  // namespace

/// What an exception says, without the place in the code that GenICam's say as well. It lives as long as \a error does.
const char* ReasonOf(const std::exception& error) noexcept {
    const auto* const own = dynamic_cast<const GenICam::GenericException*>(&error);
    return own != nullptr ? own->GetDescription() : error.what();
}

/// The parts with separators between.
std::string Join(const std::vector<std::string>& parts, char separator) {
    std::string text;
    for (const std::string& part : parts) {
        if (&part != &parts.front())
            text += separator;
        text += part;
    }
    return text;
}

/// Whether the first tokens of \a text are those of \a start.
bool BeginsWithTokens(std::string_view text, std::string_view start, char separator) {
    return text.starts_with(start) && (text.size() == start.size() || text[start.size()] == separator);
}

/// Whether a text has any control character of ASCII.
bool HasControlCharacters(std::string_view text) {
    return std::any_of(text.begin(), text.end(), base::IsControl);
}

/// The text with each control character, but those that are allowed, replaced by a blank.
std::string WithoutControlCharacters(std::string_view text, std::string_view allowed) {
    std::string result(text);
    std::replace_if(
        result.begin(), result.end(),
        [&](char character) { return base::IsControl(character) && allowed.find(character) == std::string_view::npos; },
        ' ');
    return result;
}

/**
 * \brief Ask a foreign function for a text of unknown size
 * \param[in] function Gives the text
 * \param[in] room Size of the buffer to begin with, and the size that is granted at most
 *
 * Whatever size the function reports, the text ends at its first NUL and within the buffer.
 *
 * \return The function's result; -10001 also when the text needs more than \a room or ever more
 */
ForeignText AskForText(const TextFunction& function, TextRoom room) {
    std::size_t capacity = room.first;
    for (int attempt = 0; attempt < kMaxAttempts; ++attempt) {
        std::string buffer(capacity + 1, '\0');
        auto size = static_cast<std::uint32_t>(capacity);
        const std::int32_t result = function(buffer.data(), &size);
        if (result >= 0) {
            buffer.resize(std::strlen(buffer.c_str()));
            return {result, std::move(buffer)};
        }
        if (result != CL_ERR_BUFFER_TOO_SMALL)
            return {result, {}};
        if (size <= capacity || size > room.most)
            break;
        capacity = size;
    }
    return {CL_ERR_BUFFER_TOO_SMALL, {}};
}

}  // namespace CLProtocol
