/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reads a description: the texts of elements and attributes
 */

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

#include "base/Utf8.h"
#include "load/Loader.h"
#include "schema/Text.h"

namespace GenApi {

std::string_view Loader::Decoded(std::string_view raw) {
    m_decoded.clear();
    if (raw.empty())
        return {};
    Decode(raw);
    Repair(PositionIn(raw));
    return m_decoded;
}

void Loader::Decode(std::string_view raw) {
    std::size_t next = 0;
    while (next < raw.size()) {
        const std::size_t reference = std::min(raw.find('&', next), raw.size());
        m_decoded += raw.substr(next, reference - next);
        next = reference;
        if (next < raw.size())
            next += DecodeReference(raw.substr(next));
    }
}

// Appends what a reference stands for; returns how many characters it has.
std::size_t Loader::DecodeReference(std::string_view rest) {
    constexpr std::array<std::pair<std::string_view, char>, 5> kEntities = {
        {{"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}, {"&quot;", '"'}, {"&apos;", '\''}}};
    for (const auto& [entity, character] : kEntities) {
        if (rest.starts_with(entity)) {
            m_decoded += character;
            return entity.size();
        }
    }
    const std::size_t end = rest.substr(0, 12).find(';');
    if (rest.starts_with("&#") && end != std::string_view::npos) {
        const std::string_view digits = rest.substr(2, end - 2);
        const bool isHexadecimal = digits.starts_with('x');
        const auto code = ParseInteger(isHexadecimal ? "0" + std::string(digits) : std::string(digits));
        if (code && *code > 0 && *code < 0x110000 && (*code < 0xD800 || *code > 0xDFFF)) {
            base::AppendUtf8(m_decoded, static_cast<char32_t>(*code));
            return end + 1;
        }
    }
    Warn(wkSyntax, PositionIn(rest), "", {"'&' is not part of a reference"});
    m_decoded += '&';
    return 1;
}

// Bytes that are not UTF-8 are taken as Latin-1.
void Loader::Repair(std::size_t position) {
    const std::size_t bad = FindInvalidUtf8(m_decoded);
    if (bad == std::string::npos)
        return;
    Warn(wkSyntax, position + bad, "", {"A character is not UTF-8; it is taken as Latin-1"});
    m_decoded = RepairUtf8(m_decoded);
}

// Comments and CDATA sections split a text.
std::string_view Loader::ReadMixedText() {
    const std::string_view element = m_scanner->Name();
    EXml found = m_scanner->Next();
    if (found == EXml::Close)
        return {};
    std::string_view first;
    if (found == EXml::Text) {
        first = m_scanner->Text();
        found = m_scanner->Next();
        if (found == EXml::Close)
            return first;
    }
    m_textPosition = PositionOf(element);
    return ReadPieces(element, first, found);
}

std::string_view Loader::ReadPieces(std::string_view element, std::string_view first, EXml found) {
    m_joined = first;
    for (; found != EXml::Close; found = m_scanner->Next()) {
        if (found == EXml::Text) {
            m_joined += m_scanner->Text();
        } else if (found == EXml::Section) {
            for (const char character : m_scanner->Text())
                m_joined += character == '&' ? std::string("&amp;") : std::string(1, character);
        } else if (found == EXml::Open) {
            Warn(wkUnknownElement, PositionOf(m_scanner->Name()), "",
                 {element, " has an unknown element ", m_scanner->Name()});
            m_scanner->Skip();
        }
    }
    return m_joined;
}

// Where a text stands; one of several pieces stands where its element begins.
std::size_t Loader::PositionIn(std::string_view text) const noexcept {
    const std::less<> isBefore;
    const bool isJoined =
        !isBefore(text.data(), m_joined.data()) && !isBefore(m_joined.data() + m_joined.size(), text.data());
    return isJoined ? m_textPosition + static_cast<std::size_t>(text.data() - m_joined.data()) : PositionOf(text);
}

}  // namespace GenApi
