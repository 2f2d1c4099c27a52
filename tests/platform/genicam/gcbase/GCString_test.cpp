/* SPDX-License-Identifier: Apache-2.0 */
#include "Base/GCString.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <unordered_set>

namespace {

using GenICam::gcstring;

TEST(GCString, IsEmptyForNoText) {
    const char* const nothing = nullptr;
    gcstring text(nothing);
    EXPECT_EQ(text, "");
    EXPECT_TRUE(text == nothing);
    text = "abc";
    text += nothing;
    EXPECT_EQ(text, "abc");
    text = nothing;
    EXPECT_TRUE(text.empty());
    text = "abc";
    EXPECT_TRUE(text.assign(nothing).empty());
}

/// Whether all five ways to compare give the same answer, and the turned ones the other.
template <class Operator>
bool Compares(const char* left, const char* right, Operator op) {
    const bool result = op(gcstring(left), gcstring(right));
    EXPECT_EQ(op(gcstring(left), std::string(right)), result);
    EXPECT_EQ(op(std::string(left), gcstring(right)), result);
    EXPECT_EQ(op(gcstring(left), right), result);
    EXPECT_EQ(op(left, gcstring(right)), result);
    return result;
}

TEST(GCString, ComparesWithEveryKindOfText) {
    // Texts whose lengths or bytes differ by one: a comparison may answer with just that.
    const char* const texts[] = {"", "A", "B", "a", "ab"};
    for (std::size_t left = 0; left < std::size(texts); ++left) {
        for (std::size_t right = 0; right < std::size(texts); ++right) {
            EXPECT_EQ(Compares(texts[left], texts[right], std::equal_to<>()), left == right);
            EXPECT_EQ(Compares(texts[left], texts[right], std::not_equal_to<>()), left != right);
            EXPECT_EQ(Compares(texts[left], texts[right], std::less<>()), left < right);
            EXPECT_EQ(Compares(texts[left], texts[right], std::less_equal<>()), left <= right);
            EXPECT_EQ(Compares(texts[left], texts[right], std::greater<>()), left > right);
            EXPECT_EQ(Compares(texts[left], texts[right], std::greater_equal<>()), left >= right);
        }
    }
    EXPECT_LT(gcstring("a").compare("b"), 0);
    EXPECT_GT(gcstring("a").compare("B"), 0);
    EXPECT_EQ(gcstring("a").compare("a"), 0);
}

TEST(GCString, FindsCharactersAndTexts) {
    const gcstring text("abcabc");
    EXPECT_EQ(text.find('a'), 0u);
    EXPECT_EQ(text.find('a', 1), 3u);
    EXPECT_EQ(text.find("bc"), 1u);
    EXPECT_EQ(text.find("bc", 2), 4u);
    EXPECT_EQ(text.find(gcstring("abc")), 0u);
    EXPECT_EQ(text.find(gcstring("abc"), 1), 3u);
    EXPECT_EQ(text.find("z"), gcstring::_npos());
    EXPECT_EQ(text.find_first_of("cb"), 1u);
    EXPECT_EQ(text.find_first_of("ab", 2), 3u);
    EXPECT_EQ(text.find_first_of("az"), 0u);
    EXPECT_EQ(text.find_first_not_of("ab"), 2u);
    EXPECT_EQ(text.find_first_not_of("z"), 0u);
    EXPECT_EQ(text.find_first_not_of("c", 2), 3u);
}

TEST(GCString, GivesPartsOfItself) {
    const gcstring text("abc");
    EXPECT_EQ(text.substr(), "abc");
    EXPECT_EQ(text.substr(1), "bc");
    EXPECT_EQ(text.substr(1, 1), "b");
    EXPECT_EQ(text.substr(3), "");
    EXPECT_THROW(static_cast<void>(text.substr(4)), std::out_of_range);
}

TEST(GCString, GrowsByTextsAndCharacters) {
    gcstring text("a");
    text += 'b';
    text += "c";
    text += gcstring("d");
    EXPECT_EQ(text.append("e").append(2, 'f'), "abcdeff");
    EXPECT_EQ(gcstring("a") + gcstring("b") + "c", "abc");
    EXPECT_EQ("x" + gcstring("y"), "xy");
}

TEST(GCString, BecomesWhatIsAssigned) {
    gcstring text("before");
    EXPECT_EQ(text.assign("abc", 2), "ab");
    EXPECT_EQ(text.assign(3, 'x'), "xxx");
    EXPECT_EQ(text.assign(gcstring("y")), "y");
    gcstring other("z");
    text.swap(other);
    EXPECT_EQ(text, "z");
    EXPECT_EQ(other, "y");
    text.clear();
    EXPECT_TRUE(text.empty());
}

TEST(GCString, HoldsBytesOfEveryKind) {
    gcstring text("a\0b", 3);
    EXPECT_EQ(text.size(), 3u);
    EXPECT_EQ(text.length(), 3u);
    text.resize(5);
    EXPECT_EQ(text.view(), std::string_view("a\0b\0\0", 5));
    text.resize(1);
    EXPECT_STREQ(text.c_str(), "a");
    EXPECT_EQ(gcstring(2, 'c'), "cc");
    EXPECT_GT(text.max_size(), 1000u);
}

TEST(GCString, IsWrittenAndHashedByItsBytes) {
    std::ostringstream out;
    out << gcstring("abc");
    EXPECT_EQ(out.str(), "abc");
    const std::unordered_set<gcstring> texts{"a", "b", "a"};
    EXPECT_EQ(texts.size(), 2u);
    EXPECT_TRUE(texts.contains("b"));
}

}  // namespace
