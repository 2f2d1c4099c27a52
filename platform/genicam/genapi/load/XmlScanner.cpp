/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reads XML piece by piece, without a tree of it
 */

#include "load/XmlScanner.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "schema/Text.h"

namespace GenApi {

namespace {

enum : std::uint8_t { kNameStart = 1, kNamePart = 2, kSpace = 4 };

constexpr std::array<std::uint8_t, 256> MakeClasses() {
    std::array<std::uint8_t, 256> classes{};
    for (std::size_t i = 0; i < classes.size(); ++i) {
        const auto character = static_cast<unsigned>(i);
        const bool isLetter = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
        if (isLetter || character == '_' || character == ':' || character >= 0x80)
            classes[i] = kNameStart | kNamePart;
        if ((character >= '0' && character <= '9') || character == '-' || character == '.')
            classes[i] = kNamePart;
        if (character == ' ' || character == '\t' || character == '\n' || character == '\r')
            classes[i] = kSpace;
    }
    return classes;
}

constexpr std::array<std::uint8_t, 256> kClasses = MakeClasses();

bool Is(const char* next, std::uint8_t wanted) noexcept {
    return (kClasses[static_cast<unsigned char>(*next)] & wanted) != 0;
}

const char* SkipBlanks(const char* next) noexcept {
    while (Is(next, kSpace))
        ++next;
    return next;
}

const char* SkipName(const char* next) noexcept {
    while (Is(next, kNamePart))
        ++next;
    return next;
}

std::string_view Between(const char* begin, const char* end) noexcept {
    return {begin, static_cast<std::size_t>(end - begin)};
}

bool StartsWith(const char* next, std::string_view start) noexcept {
    return std::strncmp(next, start.data(), start.size()) == 0;
}

// Where a character is among the next eight, null when it is none of them: next is then behind those.
const char* FindInWord(const char* begin, char wanted, const char*& next) noexcept {
    constexpr std::uint64_t kOnes = 0x0101010101010101U;
    std::uint64_t word = 0;
    std::memcpy(&word, begin, sizeof(word));
    const std::uint64_t difference = word ^ (kOnes * static_cast<unsigned char>(wanted));
    const std::uint64_t places = (difference - kOnes) & ~difference & (kOnes << 7);
    if (places == 0) {
        next = begin + sizeof(word);
        return nullptr;
    }
    // The lowest of the places is right, those above it may be too many: it has to be that of the first character.
    if constexpr (std::endian::native == std::endian::little)
        return begin + std::countr_zero(places) / 8;
    return std::find(begin, begin + sizeof(word), wanted);
}

}  // namespace

// Whatever follows a null byte is no part of the document: within an element that is as if the file were cut there.
XmlScanner::XmlScanner(std::string_view text, bool isFragment)
    : m_begin(text.data()),
      m_end(text.data() + std::min(text.find('\0'), text.size())),
      m_next(text.data()),
      m_isFragment(isFragment) {
    m_reference = FindOrEnd(m_begin, '&');
    constexpr std::size_t kUsual = 16;
    m_attributes.reserve(kUsual);
    m_open.reserve(kUsual);
}

void XmlScanner::Fail(const char* at, std::initializer_list<std::string_view> reason) const {
    throw XmlFault{PositionOf(at), Joined(reason)};
}

EXml XmlScanner::Next(std::string_view expected) {
    m_isAsExpected = false;
    if (m_isEmpty) {
        m_isEmpty = false;
        m_name = m_open.back();
        m_open.pop_back();
        return EXml::Close;
    }
    for (;;) {
        const char* const begin = m_next;
        const char* next = SkipBlanks(begin);
        if (*next != '<') {
            next = next != m_end ? Find(next, '<') : m_end;
            if (next == m_end)
                return AtEnd(next);
            m_next = next;
            m_piece = Between(begin, next);
            if (!m_open.empty())
                return EXml::Text;
            continue;  // outside the root, text means nothing
        }
        // Comparing with a guess is a fraction of looking at each character of a name.
        m_isAsExpected = !expected.empty() && IsNamed(next + 1, expected) && next[1 + expected.size()] == '>';
        if (m_isAsExpected) {
            m_attributes.clear();
            m_name = Between(next + 1, next + 1 + expected.size());
            return Begin(next + 2 + expected.size());
        }
        if (Is(next + 1, kNameStart))
            return Open(next + 1);
        if (next[1] == '/')
            return Close(next + 2);
        EXml found = EXml::End;
        m_next = Special(next + 1, found);
        if (found != EXml::End)
            return found;
    }
}

/**
 * \brief The next place of a character, the end of the text when there is none
 *
 * Says on the way whether an '&' was passed. Most texts and values are a word or two long: in those no function is
 * called, eight characters are looked at together, and a byte of a word is zero where the character is.
 */
const char* XmlScanner::Find(const char* next, char wanted) noexcept {
    const char* const begin = next;
    const char* found = nullptr;
    for (int word = 0; word < 2 && found == nullptr && m_end - next >= 8; ++word)
        found = FindInWord(next, wanted, next);
    if (found == nullptr)
        found = FindOrEnd(next, wanted);
    if (m_reference < begin)
        m_reference = FindOrEnd(begin, '&');
    m_mayRefer = m_reference < found;
    return found;
}

const char* XmlScanner::FindOrEnd(const char* next, char wanted) const noexcept {
    const void* const found = std::memchr(next, wanted, static_cast<std::size_t>(m_end - next));
    return found != nullptr ? static_cast<const char*>(found) : m_end;
}

bool XmlScanner::IsNamed(const char* next, std::string_view name) const noexcept {
    return static_cast<std::size_t>(m_end - next) > name.size() && AreEqual(next, name.data(), name.size());
}

bool XmlScanner::TakePlainText() {
    if (m_isEmpty)
        return false;
    const char* const begin = m_next;
    const char* const tag = Find(begin, '<');
    const bool isEnd = tag + 1 < m_end && tag[1] == '/' && IsNamed(tag + 2, m_name) && tag[2 + m_name.size()] == '>';
    if (!isEnd)
        return false;
    const char* const first = SkipBlanks(begin);
    m_piece = first != tag ? Between(begin, tag) : std::string_view();
    m_open.pop_back();
    m_next = tag + 3 + m_name.size();
    return true;
}

EXml XmlScanner::AtEnd(const char* next) {
    if (!m_open.empty())
        Fail(next, {"The element '", m_open.back(), "' has no end"});
    if (!m_hadElement && !m_isFragment)
        Fail(next, {"There is no element"});
    m_next = next;
    return EXml::End;
}

EXml XmlScanner::Open(const char* next) {
    const char* const name = next;
    next = SkipName(next);
    m_name = Between(name, next);
    m_attributes.clear();
    if (Is(next, kSpace)) {
        next = SkipBlanks(next);
        while (Is(next, kNameStart))
            next = SkipBlanks(ReadAttribute(next));
    }
    if (*next != '>' && *next != '/')
        Fail(next, {"The tag of '", m_name, "' has no end"});
    m_isEmpty = *next == '/';
    if (m_isEmpty && *++next != '>')
        Fail(next, {"'/' ends no tag"});
    return Begin(next + 1);
}

EXml XmlScanner::Begin(const char* next) {
    m_hadElement = true;
    m_open.push_back(m_name);
    m_next = next;
    return EXml::Open;
}

const char* XmlScanner::ReadAttribute(const char* next) {
    XmlAttribute attribute;
    const char* const name = next;
    next = SkipName(next);
    attribute.name = Between(name, next);
    next = SkipBlanks(next);
    if (*next != '=')
        Fail(next, {"The attribute '", attribute.name, "' has no value"});
    next = SkipBlanks(next + 1);
    if (*next != '"' && *next != '\'')
        Fail(next, {"The value of the attribute '", attribute.name, "' has no quotation marks"});
    const char quote = *next++;
    const char* const end = Find(next, quote);
    if (end == m_end)
        Fail(next, {"The value of the attribute '", attribute.name, "' has no end"});
    attribute.value = Between(next, end);
    attribute.mayRefer = m_mayRefer;
    m_attributes.push_back(attribute);
    if (Is(end + 1, kNameStart))
        Fail(end + 1, {"There is no blank between two attributes"});
    return end + 1;
}

EXml XmlScanner::Close(const char* next) {
    const char* const name = next;
    if (m_open.empty())
        Fail(name, {"There is an end of an element that has not begun"});
    const std::string_view open = m_open.back();
    if (!IsNamed(next, open) || Is(next + open.size(), kNamePart))
        Fail(name, {"The element '", open, "' ends as '", Between(name, SkipName(name)), "'"});
    next = SkipBlanks(next + open.size());
    if (*next != '>')
        Fail(next, {"The end tag of '", open, "' has no end"});
    m_name = open;
    m_open.pop_back();
    m_next = next + 1;
    return EXml::Close;
}

// Comments, sections, processing instructions, the document type; next stands behind the '<'.
const char* XmlScanner::Special(const char* next, EXml& found) {
    if (StartsWith(next, "!--"))
        return After(next + 3, "-->", "comment");
    if (StartsWith(next, "![CDATA[")) {
        const char* const end = After(next + 8, "]]>", "section");
        m_piece = Between(next + 8, end - 3);
        found = m_open.empty() ? EXml::End : EXml::Section;
        return end;
    }
    if (StartsWith(next, "!DOCTYPE") && m_open.empty()) {
        const char* const end = DocumentType(next + 8);
        m_piece = Between(next + 8, end - 1);
        found = EXml::DocumentType;
        return end;
    }
    if (*next == '?' && Is(next + 1, kNameStart))
        return After(next + 1, "?>", "processing instruction");
    Fail(next, {"'<' begins no tag"});
}

const char* XmlScanner::After(const char* next, std::string_view end, const char* what) const {
    const std::size_t found = Between(next, m_end).find(end);
    if (found == std::string_view::npos)
        Fail(next, {"A ", what, " has no end"});
    return next + found + end.size();
}

// Declarations within it are passed over, whatever they say.
const char* XmlScanner::DocumentType(const char* next) {
    const char* const begin = next;
    for (std::size_t depth = 1; depth > 0;) {
        const char character = *next;
        if (next >= m_end)
            Fail(begin, {"The document type has no end"});
        if (character == '"' || character == '\'')
            next = After(next + 1, std::string_view(next, 1), "text in the document type");
        else if (StartsWith(next, "<!--"))
            next = After(next + 4, "-->", "comment");
        else if (StartsWith(next, "<?"))
            next = After(next + 2, "?>", "processing instruction");
        else {
            depth += character == '<' ? 1 : 0;
            depth -= character == '>' ? 1 : 0;
            ++next;
        }
    }
    return next;
}

void XmlScanner::Skip() {
    const std::size_t depth = m_open.size();
    for (EXml found = Next(); found != EXml::Close || m_open.size() >= depth;)
        found = Next();
}

}  // namespace GenApi
