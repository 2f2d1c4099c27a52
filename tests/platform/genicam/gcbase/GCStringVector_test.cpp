/* SPDX-License-Identifier: Apache-2.0 */
#include "Base/GCStringVector.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using GenICam::gcstring_vector;

TEST(GCStringVector, HoldsTextsInTheirOrder) {
    gcstring_vector texts{"a", "b"};
    texts.push_back("c");
    EXPECT_EQ(texts.size(), 3u);
    EXPECT_EQ(texts.front(), "a");
    EXPECT_EQ(texts.back(), "c");
    EXPECT_EQ(texts[1], "b");
    EXPECT_EQ(texts.at(2), "c");
    EXPECT_THROW(texts.at(3), std::out_of_range);
    texts.pop_back();
    EXPECT_EQ(*texts.erase(texts.begin()), "b");
    EXPECT_EQ(texts, gcstring_vector{"b"});
}

TEST(GCStringVector, KnowsWhatItContains) {
    const gcstring_vector texts{"a", "b"};
    EXPECT_TRUE(texts.contains("a"));
    EXPECT_TRUE(texts.contains("b"));
    EXPECT_FALSE(texts.contains("c"));
    EXPECT_FALSE(gcstring_vector().contains(""));
}

TEST(GCStringVector, IsCutAndFilledUp) {
    gcstring_vector texts(2, "x");
    EXPECT_EQ(texts, (gcstring_vector{"x", "x"}));
    texts.resize(3, "y");
    EXPECT_EQ(texts, (gcstring_vector{"x", "x", "y"}));
    texts.resize(1);
    EXPECT_EQ(texts, gcstring_vector{"x"});
    EXPECT_NE(texts, gcstring_vector{"y"});
    gcstring_vector none;
    none.swap(texts);
    EXPECT_TRUE(texts.empty());
    none.clear();
    EXPECT_TRUE(none.empty());
}

}  // namespace
