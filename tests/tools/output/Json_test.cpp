/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of JSON as the commands print it
 */
#include "output/Json.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <stdexcept>

namespace tools {
namespace {

TEST(Json, WritesEachKindOfValue) {
    EXPECT_EQ(ToLine(Json(nullptr)), "null");
    EXPECT_EQ(ToLine(Json(true)), "true");
    EXPECT_EQ(ToLine(Json("a\"b")), R"("a\"b")");
    EXPECT_EQ(ToLine(Json(std::string_view("ab"))), R"("ab")");
    EXPECT_EQ(ToLine(Json(0.1)), "0.1");
    EXPECT_EQ(ToLine(Json(1.0)), "1.0");
}

TEST(Json, WritesWholeNumbersOf64Bits) {
    EXPECT_EQ(ToLine(Json(std::numeric_limits<std::int64_t>::min())), "-9223372036854775808");
    EXPECT_EQ(ToLine(Json(std::numeric_limits<std::uint64_t>::max())), "18446744073709551615");
}

TEST(Json, KeepsTheOrderOfMembers) {
    Json json{{"b", 1}, {"a", 2}};
    json["c"] = 3;
    json["b"] = 4;
    EXPECT_EQ(ToLine(json), R"({"b":4,"a":2,"c":3})");
}

TEST(Json, HoldsObjectsInObjectsAndArrays) {
    EXPECT_EQ(ToLine(Json{{"a", {{"b", 1}}}}), R"({"a":{"b":1}})");
    EXPECT_EQ(ToLine(Json{{"a", Json::array({{{"b", 1}}})}}), R"({"a":[{"b":1}]})");
    EXPECT_EQ(ToLine(Json::array({Json("x"), Json(2)})), R"(["x",2])");
    EXPECT_EQ(ToLine(Json(std::vector<std::string>{"x", "y"})), R"(["x","y"])");
}

TEST(Json, OfNothingIsEmpty) {
    EXPECT_EQ(ToLine(Json::array()), "[]");
    EXPECT_EQ(ToLine(Json::object()), "{}");
}

TEST(Json, BecomesAnArrayWhenSomethingIsAdded) {
    Json json;
    json["list"].push_back("x");
    json["list"].push_back({{"a", 1}});
    EXPECT_EQ(ToLine(json), R"({"list":["x",{"a":1}]})");
    EXPECT_EQ(json.at("list").size(), 2U);
}

TEST(Json, IndentsItsText) {
    EXPECT_EQ(ToText(Json{{"a", 1}}), "{\n  \"a\": 1\n}");
}

TEST(Json, ReplacesWhatIsNoUtf8) {
    EXPECT_EQ(ToLine(Json("a\xFFz")), "\"a\xEF\xBF\xBDz\"");
}

TEST(Json, RefusesMembersThatAreNotThere) {
    const Json json{{"a", 1}};
    EXPECT_TRUE(json.contains("a"));
    EXPECT_FALSE(json.contains("b"));
    EXPECT_THROW(json.at("b"), std::out_of_range);
}

}  // namespace
}  // namespace tools
