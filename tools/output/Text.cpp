/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Text from outside, made fit for a terminal, and likeness of words
 */
#include "output/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "base/Utf8.h"
#include "output/CharacterWidth.h"

namespace tools {

namespace {

/// Bytes of the character at the beginning of a text, 0 when there is none to print. 0xC2 0x80 to 0xC2 0x9F are control
/// characters, too: some terminals obey them.
std::size_t SequenceLength(std::string_view text) {
    const std::size_t length = base::Utf8Length(text);
    return length == 2 && base::DecodeUtf8(text.substr(0, length)) < 0xA0 ? 0 : length;
}

std::string MadeVisible(std::string_view text, bool keepLines) {
    std::string result;
    while (!text.empty()) {
        const std::size_t length = SequenceLength(text);
        const auto byte = static_cast<unsigned char>(text.front());
        const bool kept =
            length > 0 && (!base::IsControl(text.front()) || (keepLines && (byte == '\n' || byte == '\t')));
        if (kept)
            result += text.substr(0, length);
        else
            result += fmt::format("\\x{:02X}", byte);
        text.remove_prefix(kept ? length : 1);
    }
    return result;
}

/// The character at the beginning of a text.
struct Glyph {
    std::size_t bytes;
    std::size_t columns;
};

Glyph FirstGlyph(std::string_view text) {
    if (text.starts_with("\033["))
        return {std::min(text.find('m'), text.size() - 1) + 1, 0};
    const std::size_t length = SequenceLength(text);
    return length == 0 ? Glyph{1, 1} : Glyph{length, CharacterWidth(base::DecodeUtf8(text.substr(0, length)))};
}

}  // namespace

/**
 * \brief One line of text that a terminal shows as it stands
 * \param[in] text Any bytes
 *
 * Control characters and bytes that are no UTF-8 become \\xNN, so that a text from a camera or a file can't steer
 * the terminal.
 */
std::string Printable(std::string_view text) {
    return MadeVisible(text, false);
}

/// The same, keeping line ends and tabs.
std::string PrintableLines(std::string_view text) {
    return MadeVisible(text, true);
}

/// Columns that a text takes on a terminal; sequences that choose colours take none.
std::size_t DisplayWidth(std::string_view text) {
    std::size_t columns = 0;
    while (!text.empty()) {
        const Glyph glyph = FirstGlyph(text);
        columns += glyph.columns;
        text.remove_prefix(glyph.bytes);
    }
    return columns;
}

/// A printable text cut to a width, with an ellipsis at its end where something is missing.
std::string Shortened(std::string_view text, std::size_t width) {
    if (DisplayWidth(text) <= width || width == 0)
        return std::string(text);
    std::size_t bytes = 0;
    for (std::size_t columns = 0; columns + 1 < width;) {
        const Glyph glyph = FirstGlyph(text.substr(bytes));
        columns += glyph.columns;
        if (columns + 1 > width)
            break;
        bytes += glyph.bytes;
    }
    return std::string(text.substr(0, bytes)) + "…";
}

/**
 * \brief Break a text at its blanks; line ends that it has stay
 * \param[in] width Columns of a line, the indent included; 0 for no limit
 * \param[in] indent Put before each line but the first
 * \param[in] column Columns of the first line that are taken already
 */
std::string Wrapped(std::string_view text, std::size_t width, std::string_view indent, std::size_t column) {
    std::string result;
    bool isLineStart = true;
    const auto breakLine = [&] {
        result.erase(result.find_last_not_of(' ') + 1);
        result.append("\n").append(indent);
        column = indent.size();
        isLineStart = true;
    };
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(" \n"), text.size());
        const std::size_t columns = DisplayWidth(text.substr(0, end));
        if (!isLineStart && width != 0 && column + 1 + columns > width) {
            breakLine();
        } else if (!isLineStart) {
            result += ' ';
            ++column;
        }
        result += text.substr(0, end);
        column += columns;
        isLineStart = false;
        if (end < text.size() && text[end] == '\n')
            breakLine();
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return result;
}

/// "did you mean 'X'?" or nothing.
std::string DidYouMean(std::string_view word, std::span<const std::string> candidates) {
    const std::string closest = ClosestWord(word, candidates);
    return closest.empty() ? std::string() : fmt::format("did you mean '{}'?", Printable(closest));
}

}  // namespace tools
