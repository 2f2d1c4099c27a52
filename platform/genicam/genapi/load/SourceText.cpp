/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The text of a description on its way to the XML reader: encoding, lines, what stands before it
 */

#include "load/SourceText.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "base/Text.h"
#include "base/Utf8.h"
#include "schema/Text.h"

namespace GenApi {

namespace {

std::string Utf16ToUtf8(std::string_view text, bool isBigEndian) {
    const auto unitAt = [&](std::size_t at) {
        const auto first = static_cast<unsigned char>(text[at]);
        const auto second = static_cast<unsigned char>(text[at + 1]);
        return static_cast<std::uint32_t>(isBigEndian ? (first << 8) | second : (second << 8) | first);
    };
    std::string result;
    result.reserve(text.size() / 2);
    for (std::size_t at = 0; at + 1 < text.size(); at += 2) {
        std::uint32_t character = unitAt(at);
        const bool isPair = character >= 0xD800 && character < 0xDC00 && at + 3 < text.size();
        if (isPair && unitAt(at + 2) >= 0xDC00 && unitAt(at + 2) < 0xE000) {
            character = 0x10000 + ((character - 0xD800) << 10) + (unitAt(at + 2) - 0xDC00);
            at += 2;
        }
        base::AppendUtf8(result, character >= 0xD800 && character < 0xE000 ? 0xFFFD : character);
    }
    return result;
}

// The encoding that the XML declaration names, in small letters.
std::string DeclaredEncoding(std::string_view text) {
    const std::size_t begin = text.substr(0, 1024).find("<?xml");
    if (begin == std::string_view::npos)
        return {};
    const std::string_view declaration = text.substr(begin, text.find("?>", begin) - begin);
    const std::size_t encoding = declaration.find("encoding");
    const std::size_t open = encoding == std::string_view::npos ? encoding : declaration.find_first_of("\"'", encoding);
    if (open == std::string_view::npos)
        return {};
    const std::size_t close = declaration.find(declaration[open], open + 1);
    if (close == std::string_view::npos)
        return {};
    return base::LowerCase(declaration.substr(open + 1, close - open - 1));
}

// The text as UTF-8; empty when it is that already.
std::string Converted(const std::string& text) {
    using namespace std::string_view_literals;
    if (text.starts_with("\xFF\xFE"sv))
        return Utf16ToUtf8(std::string_view(text).substr(2), false);
    if (text.starts_with("\xFE\xFF"sv))
        return Utf16ToUtf8(std::string_view(text).substr(2), true);
    if (text.starts_with("<\0"sv))
        return Utf16ToUtf8(text, false);
    if (text.starts_with("\0<"sv))
        return Utf16ToUtf8(text, true);
    const std::string encoding = DeclaredEncoding(text);
    if (encoding == "iso-8859-1" || encoding == "latin1" || encoding == "windows-1252")
        return Latin1ToUtf8(text);
    return {};
}

constexpr std::size_t kLanes = 16;

// The sum of sixteen bytes, four at a time.
std::uint32_t SumOf(const std::array<std::uint8_t, kLanes>& bytes) noexcept {
    constexpr std::uint64_t kEven = 0x00FF00FF00FF00FFU;
    constexpr std::uint64_t kOnes = 0x0001000100010001U;
    std::uint64_t sum = 0;
    for (std::size_t at = 0; at < kLanes; at += sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + at, sizeof(word));
        sum += (word & kEven) + ((word >> 8) & kEven);
    }
    return static_cast<std::uint32_t>((sum * kOnes) >> 48);
}

// Sixteen counters side by side, in blocks that none of them can overflow in: the compiler counts with one instruction
// for all of them.
std::uint32_t CountLines(std::string_view text) noexcept {
    std::uint32_t count = 0;
    while (text.size() >= kLanes) {
        const std::size_t rounds = std::min<std::size_t>(text.size() / kLanes, 255);
        std::array<std::uint8_t, kLanes> found{};
        for (std::size_t round = 0; round < rounds; ++round) {
            for (std::size_t lane = 0; lane < kLanes; ++lane)
                found[lane] = static_cast<std::uint8_t>(found[lane] + (text[round * kLanes + lane] == '\n' ? 1 : 0));
        }
        count += SumOf(found);
        text.remove_prefix(rounds * kLanes);
    }
    return count + static_cast<std::uint32_t>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace

SourceText::SourceText(const std::string& xml)
    : m_converted(Converted(xml)), m_text(m_converted.empty() ? xml : m_converted) {
    FindStart();
    m_hasInvalidUtf8 = FindInvalidUtf8(m_text) != std::string::npos;
}

// Cameras send blanks, a byte order mark or a line of their own before the declaration.
void SourceText::FindStart() {
    if (m_text.starts_with("\xEF\xBB\xBF"))
        m_start = 3;
    std::size_t tag = m_text.find('<', m_start);
    const std::size_t declaration = m_text.find("<?xml", m_start);
    const bool isTag = tag != std::string::npos && tag + 1 < m_text.size() &&
                       (m_text[tag + 1] == '!' || m_text[tag + 1] == '?' || tag == declaration);
    if (declaration != std::string::npos && !isTag && declaration < m_text.find("<RegisterDescription"))
        tag = declaration;
    if (tag == std::string::npos || tag == m_start)
        return;
    m_start = tag;
    m_hasJunk = true;
}

void SourceText::FindLines() {
    m_lineEnds.reserve(m_text.size() / 40 + 1);
    const char* const begin = m_text.data();
    const char* const end = begin + m_text.size();
    const char* next = begin;
    while (next < end) {
        next = static_cast<const char*>(std::memchr(next, '\n', static_cast<std::size_t>(end - next)));
        if (next == nullptr)
            return;
        m_lineEnds.push_back(static_cast<std::uint32_t>(next - begin));
        ++next;
    }
}

TextPlace SourceText::PlaceOf(std::size_t position) {
    if (position < m_lineStart && m_lineEnds.empty())
        FindLines();
    if (!m_lineEnds.empty()) {
        const auto end = std::lower_bound(m_lineEnds.begin(), m_lineEnds.end(), position);
        m_line = static_cast<std::uint32_t>(end - m_lineEnds.begin()) + 1;
        m_lineStart = end != m_lineEnds.begin() ? *(end - 1) + std::size_t{1} : 0;
    } else if (position > m_position) {
        const std::string_view between = m_text.substr(m_position, position - m_position);
        if (const std::uint32_t lines = CountLines(between); lines != 0) {
            m_line += lines;
            m_lineStart = m_position + between.rfind('\n') + 1;
        }
        m_position = position;
    }
    return {m_line, static_cast<std::uint32_t>(position - m_lineStart + 1)};
}

}  // namespace GenApi
