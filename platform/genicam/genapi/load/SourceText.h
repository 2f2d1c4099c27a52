/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The text of a description on its way to the XML reader: encoding, lines, what stands before it
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace GenApi {

/// A line and a column, both from 1.
struct TextPlace {
    std::uint32_t line = 0;
    std::uint32_t column = 0;
};

/// A description as UTF-8, ready to be read in place, and the places of its lines. Reentrant.
class SourceText {
public:
    /// Takes a text in UTF-8, UTF-16 or a declared Latin-1.
    SourceText(std::string xml, std::string fileName);

    char* Data() noexcept { return m_text.data() + m_start; }
    std::size_t Size() const noexcept { return m_text.size() - m_start; }
    const std::string& FileName() const noexcept { return m_fileName; }
    /// Position of a character of the text that Data points into.
    std::size_t PositionOf(const char* character) const noexcept {
        return static_cast<std::size_t>(character - m_text.data());
    }
    TextPlace PlaceOf(std::size_t position) noexcept;
    bool HasJunkBefore() const noexcept { return m_hasJunk; }
    bool HasInvalidUtf8() const noexcept { return m_hasInvalidUtf8; }

private:
    void FindStart();
    void FindLines();

    std::string m_text;
    std::string m_fileName;
    std::size_t m_start = 0;
    bool m_hasJunk = false;
    bool m_hasInvalidUtf8 = false;
    std::vector<std::uint32_t> m_lineEnds;
    std::size_t m_cursor = 0;  // the line that was asked for last: most questions come in the order of the text
};

}  // namespace GenApi
