/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reads XML piece by piece, without a tree of it
 */
#pragma once

#include <cstddef>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace GenApi {

/// An attribute as it stands in the text: references to characters are not replaced.
struct XmlAttribute {
    std::string_view name;
    std::string_view value;
    bool mayRefer = false;  ///< there may be references to characters in the value
};

/// What a scanner finds.
enum class EXml { Open, Close, Text, Section, DocumentType, End };

/// Thrown where a text is not XML.
struct XmlFault {
    std::size_t position;
    std::string reason;
};

/**
 * \brief Elements, attributes and texts of a document in their order
 *
 * Descriptions are much larger than what is kept of them, so no tree of a document is built. Well-formed as XML 1.0
 * wants it are: tags, their nesting, attributes, comments, sections, processing instructions. Nothing is expanded or
 * fetched. Texts of blanks alone are left out. A null byte ends the document. Reentrant.
 */
class XmlScanner {
public:
    /// \param[in] text Stays; a null byte follows its last character
    /// \param[in] isFragment Elements and text side by side, without a root
    XmlScanner(std::string_view text, bool isFragment);

    /// The next piece; of an empty element first its begin, then its end. Throws XmlFault.
    /// \param[in] expected The name that the next element probably has: where it has that and no attribute, nobody has
    /// to look for the end of the name. May be empty
    EXml Next(std::string_view expected = {});
    /// True when the element that has just begun is what was expected.
    bool IsAsExpected() const noexcept { return m_isAsExpected; }
    /// True when there is nothing but a text in the element that has just begun: then that is read, and its end.
    bool TakePlainText();
    /// Goes behind the end of the element that has just begun.
    void Skip();
    /// Name of the element that begins or ends.
    std::string_view Name() const noexcept { return m_name; }
    /// Text, section or document type.
    std::string_view Text() const noexcept { return m_piece; }
    /// False when there is no reference to a character in the text.
    bool MayRefer() const noexcept { return m_mayRefer; }
    /// Of the element that has just begun.
    std::span<const XmlAttribute> Attributes() const noexcept { return m_attributes; }
    std::size_t PositionOf(const char* character) const noexcept {
        return static_cast<std::size_t>(character - m_begin);
    }

private:
    const char* Find(const char* next, char wanted) noexcept;
    const char* FindOrEnd(const char* next, char wanted) const noexcept;
    bool IsNamed(const char* next, std::string_view name) const noexcept;
    EXml Open(const char* next);
    EXml Begin(const char* next);
    const char* ReadAttribute(const char* next);
    EXml Close(const char* next);
    const char* Special(const char* next, EXml& found);
    const char* DocumentType(const char* next);
    const char* After(const char* next, std::string_view end, const char* what) const;
    EXml AtEnd(const char* next);
    [[noreturn]] void Fail(const char* at, std::initializer_list<std::string_view> reason) const;

    const char* const m_begin;
    const char* const m_end;
    const char* m_next;
    const char* m_reference = nullptr;  // the first '&' behind what was read last
    const bool m_isFragment;
    bool m_mayRefer = false;  // an '&' was passed
    bool m_isEmpty = false;   // the element that has just begun ends at once
    bool m_hadElement = false;
    bool m_isAsExpected = false;
    std::string_view m_name;
    std::string_view m_piece;
    std::vector<XmlAttribute> m_attributes;
    std::vector<std::string_view> m_open;
};

}  // namespace GenApi
