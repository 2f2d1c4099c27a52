/* SPDX-License-Identifier: Apache-2.0 */
#include "TextRegister.h"

#include <gtest/gtest.h>

#include <random>
#include <string_view>

namespace {

using namespace marlow;
using namespace std::string_view_literals;

gencp::Bytes B(std::string_view text) {
    return {text.begin(), text.end()};
}

TEST(TextRegister, EndsAtTheTerminator) {
    EXPECT_EQ(DecodeToken(B("Heron\0rubbish"sv), TextEncoding::kAscii), "Heron");
    EXPECT_EQ(DecodeToken(B("\0x"sv), TextEncoding::kAscii), "");
}

TEST(TextRegister, FullRegisterHasNoTerminator) {
    EXPECT_EQ(DecodeToken(gencp::Bytes(64, 'x'), TextEncoding::kAscii), std::string(64, 'x'));
    EXPECT_EQ(TerminatedLength(gencp::Bytes(64, 'x'), TextEncoding::kUtf16), 64u);
}

TEST(TextRegister, NumbersStayNumbers) {
    EXPECT_EQ(DecodeToken(B("007.50 \xC3\xA4-B"), TextEncoding::kUtf8), "007.50 \xC3\xA4-B");
}

TEST(TextRegister, SeparatorsAndControlCharactersAreReplaced) {
    EXPECT_EQ(DecodeToken(B("a#b\tc\nd\x7F\x01"), TextEncoding::kAscii), "a#b_c_d__");
    EXPECT_EQ(DecodeToken(B("\xC2\x85x"), TextEncoding::kUtf8), "_x");
}

TEST(TextRegister, WhatIsNoUtf8IsReplacedByteByByte) {
    EXPECT_EQ(DecodeToken(B("a\xFF\xC3"), TextEncoding::kUtf8), "a__");
    EXPECT_EQ(DecodeToken(B("\xC0\x80x"), TextEncoding::kUtf8), "__x");
    EXPECT_EQ(DecodeToken(B("\xED\xA0\x80"), TextEncoding::kUtf8), "_");
    EXPECT_EQ(DecodeToken(B("\xE0\x80\x80"), TextEncoding::kUtf8), "___");
    EXPECT_EQ(DecodeToken(B("\xF0\x9F\x93\xB7"), TextEncoding::kAscii), "\xF0\x9F\x93\xB7");
    EXPECT_EQ(DecodeToken(B("\xF4\x90\x80\x80"), TextEncoding::kUtf8), "_");
}

TEST(TextRegister, Utf16IsBigEndian) {
    EXPECT_EQ(DecodeToken(B("\0H\0#\0\xE4\xD8\x3D\xDC\xF7\0\0\0x"sv), TextEncoding::kUtf16),
              "H#\xC3\xA4\xF0\x9F\x93\xB7");
}

TEST(TextRegister, SignsAtTheEndsOfEachLengthAreWrittenInIt) {
    EXPECT_EQ(DecodeToken(B("\0\x7E\0\xA0\x07\xFF\x08\0\xFF\xFF"sv), TextEncoding::kUtf16),
              "\x7E\xC2\xA0\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF");
    EXPECT_EQ(DecodeToken(B("\xD8\0\xDC\0\xDB\xFF\xDF\xFF"sv), TextEncoding::kUtf16),
              "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

TEST(TextRegister, HalfASurrogatePairIsReplaced) {
    EXPECT_EQ(DecodeToken(B("\xD8\x3D\0x"sv), TextEncoding::kUtf16), "_x");
    EXPECT_EQ(DecodeToken(B("\xDC\xF7\0x"sv), TextEncoding::kUtf16), "_x");
    EXPECT_EQ(DecodeToken(B("\0x\xD8\x3D"sv), TextEncoding::kUtf16), "x_");
    EXPECT_EQ(DecodeToken(B("\0x\0"sv), TextEncoding::kUtf16), "x");
}

TEST(TextRegister, AnyBytesAreDecoded) {
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        gencp::Bytes bytes(random() % 20);
        for (auto& byte : bytes)
            byte = static_cast<std::uint8_t>(random());
        for (const auto encoding : {TextEncoding::kAscii, TextEncoding::kUtf8, TextEncoding::kUtf16}) {
            const auto text = DecodeToken(bytes, encoding);
            EXPECT_EQ(DecodeToken(B(text), TextEncoding::kUtf8), text);  // valid, with nothing to replace
        }
    }
}

TEST(TextRegister, EncodingComesFromTheCapability) {
    EXPECT_EQ(EncodingOf(0x00), TextEncoding::kAscii);
    EXPECT_EQ(EncodingOf(0x10), TextEncoding::kUtf8);
    EXPECT_EQ(EncodingOf(0x20), TextEncoding::kUtf16);
    EXPECT_EQ(EncodingOf(0xF0), TextEncoding::kAscii);
}

}  // namespace
