/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The text of a description on its way to the XML reader: encoding, lines, what stands before it
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace GenApi {

/// A line and a column, both from 1.
struct TextPlace {
    std::uint32_t line = 0;
    std::uint32_t column = 0;
};

/// A description as UTF-8, and the places of its lines. Reentrant.
class SourceText {
public:
    /// \param[in] xml In UTF-8, UTF-16 or a declared Latin-1; stays as long as this
    explicit SourceText(const std::string& xml);
    SourceText(const SourceText&) = delete;
    SourceText& operator=(const SourceText&) = delete;

    /// What there is to read; a null byte follows.
    std::string_view Text() const noexcept { return m_text.substr(m_start); }
    /// Position of a character of the text.
    std::size_t PositionOf(const char* character) const noexcept {
        return static_cast<std::size_t>(character - m_text.data());
    }
    /// The place of a position. Quick for one behind the last one that was asked for, or in its line.
    TextPlace PlaceOf(std::size_t position);
    bool HasJunkBefore() const noexcept { return m_hasJunk; }
    bool HasInvalidUtf8() const noexcept { return m_hasInvalidUtf8; }

private:
    void FindStart();
    void FindLines();

    std::string m_converted;
    std::string_view m_text;
    std::size_t m_start = 0;
    bool m_hasJunk = false;
    bool m_hasInvalidUtf8 = false;
    // The place that was asked for last.
    std::size_t m_position = 0;
    std::size_t m_lineStart = 0;
    std::uint32_t m_line = 1;
    std::vector<std::uint32_t> m_lineEnds;  // found when a question goes back to an earlier line
};

}  // namespace GenApi
