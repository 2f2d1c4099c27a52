/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts of the bootstrap registers, as tokens of a DeviceID
 */

#include "TextRegister.h"

#include <algorithm>

#include "base/Utf8.h"
#include "gencp/Registers.h"

namespace marlow {

namespace {

constexpr char32_t kInvalid = 0xFFFFFFFF;
constexpr char32_t kLastCodePoint = 0x10FFFF;
constexpr char kSubstitute = '_';

bool IsSurrogate(char32_t sign) {
    return sign >= 0xD800 && sign <= 0xDFFF;
}

// The tab separates identifiers; control characters would spoil any line they are printed in.
bool IsAllowed(char32_t sign) {
    return sign >= 0x20 && sign <= kLastCodePoint && !IsSurrogate(sign) && !(sign >= 0x7F && sign < 0xA0);
}

void AppendSign(std::string& text, char32_t sign) {
    if (IsAllowed(sign))
        base::AppendUtf8(text, sign);
    else
        text += kSubstitute;
}

// Takes one sign off the front; one byte when they are no UTF-8. Overlong forms are none; a surrogate is one
// sign, which becomes one substitute.
char32_t TakeUtf8(gencp::ByteView& bytes) {
    const std::uint8_t first = bytes.front();
    const std::size_t length = first < 0x80 ? 1 : first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    char32_t sign = length == 1 ? first : first & (0x7F >> length);
    bool isValid = first < 0x80 || (first >= 0xC2 && first < 0xF5 && bytes.size() >= length);
    for (std::size_t i = 1; isValid && i < length; ++i) {
        isValid = (bytes[i] & 0xC0) == 0x80;
        sign = (sign << 6) | (bytes[i] & 0x3Fu);
    }
    isValid = isValid && sign >= kLeast[length];
    bytes = bytes.subspan(isValid ? length : 1);
    return isValid ? sign : kInvalid;
}

char32_t TakeUtf16(gencp::ByteView& bytes) {
    const char32_t first = gencp::Load16(bytes, 0);
    bytes = bytes.subspan(2);
    if (first < 0xD800 || first > 0xDBFF || bytes.size() < 2)
        return first;
    const char32_t second = gencp::Load16(bytes, 0);
    if (second < 0xDC00 || second > 0xDFFF)
        return kInvalid;
    bytes = bytes.subspan(2);
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

}  // namespace

/// Encoding of all text registers, from the device capability register (GenCP, bits 4 to 7).
TextEncoding EncodingOf(std::uint64_t deviceCapability) noexcept {
    switch ((deviceCapability >> gencp::capability::kEncodingShift) & gencp::capability::kEncodingMask) {
        case gencp::capability::kEncodingUtf16:
            return TextEncoding::kUtf16;
        case gencp::capability::kEncodingUtf8:
            return TextEncoding::kUtf8;
        default:
            return TextEncoding::kAscii;
    }
}

/**
 * \brief Length of a register's text
 * \param[in] bytes A register or its beginning
 * \param[in] encoding How to look for the terminator
 *
 * \return Bytes before the terminator; all of them when there is none
 */
std::size_t TerminatedLength(gencp::ByteView bytes, TextEncoding encoding) noexcept {
    const std::size_t step = encoding == TextEncoding::kUtf16 ? 2 : 1;
    std::size_t length = 0;
    for (; length + step <= bytes.size(); length += step) {
        if (bytes[length] == 0 && bytes[length + step - 1] == 0)
            return length;
    }
    return bytes.size();
}

/**
 * \brief A register's text for a token of a DeviceID
 * \param[in] bytes The register, with or without terminator
 * \param[in] encoding Of the register
 *
 * \return UTF-8; control characters and what is no text in that encoding are replaced by '_'
 */
std::string DecodeToken(gencp::ByteView bytes, TextEncoding encoding) {
    bytes = bytes.first(TerminatedLength(bytes, encoding));
    std::string text;
    if (encoding == TextEncoding::kUtf16) {
        while (bytes.size() >= 2)
            AppendSign(text, TakeUtf16(bytes));
        return text;
    }
    while (!bytes.empty())
        AppendSign(text, TakeUtf8(bytes));
    return text;
}

}  // namespace marlow
