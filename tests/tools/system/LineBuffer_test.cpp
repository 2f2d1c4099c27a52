/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of lines out of pieces
 */
#include "system/LineBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

using tools::LineBuffer;

/// Gives the pieces one after the other, then nothing more.
class Pieces {
public:
    explicit Pieces(std::vector<std::string_view> pieces) : m_pieces(std::move(pieces)) {}

    std::size_t operator()(std::span<char> space) {
        if (m_next == m_pieces.size())
            return 0;
        const std::string_view piece = m_pieces[m_next++];
        std::ranges::copy(piece, space.begin());
        return piece.size();
    }

private:
    std::vector<std::string_view> m_pieces;
    std::size_t m_next = 0;
};

TEST(LineBuffer, GivesALineOnceItIsWhole) {
    LineBuffer buffer;
    Pieces pieces({"one\ntw", "", "o\n\nthree"});
    EXPECT_EQ(buffer.Next(pieces), "one");
    EXPECT_EQ(buffer.Next(pieces), std::nullopt);
    EXPECT_EQ(buffer.Next(pieces), "two");
    EXPECT_EQ(buffer.Next(pieces), "");
    EXPECT_EQ(buffer.Next(pieces), std::nullopt);
}

TEST(LineBuffer, GivesUpALineWithoutAnEnd) {
    LineBuffer buffer;
    std::size_t given = 0;
    EXPECT_EQ(buffer.Next([&](std::span<char> space) {
        std::ranges::fill(space, 'x');
        given += space.size();
        return space.size();
    }),
              std::nullopt);
    EXPECT_GT(given, 64U * 1024U);
    EXPECT_LE(given, 64U * 1024U + 4096U);
}

}  // namespace
