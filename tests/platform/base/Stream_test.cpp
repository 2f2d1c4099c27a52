/* SPDX-License-Identifier: Apache-2.0 */
#include "base/Stream.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace {

using base::ReadAll;

TEST(Stream, IsReadToItsEndNulsIncluded) {
    const std::string text = std::string(200'000, 'x') + '\0' + "y";
    std::istringstream stream(text);
    EXPECT_EQ(ReadAll(stream), text);
    EXPECT_FALSE(stream.bad());
    EXPECT_EQ(ReadAll(stream), "");
}

TEST(Stream, MayBeAsLongAsIsAccepted) {
    for (const std::size_t size : {0U, 1U, 65536U, 65537U, 200'000U}) {
        std::istringstream stream(std::string(size, 'x'));
        EXPECT_EQ(ReadAll(stream, size).value_or("too long").size(), size);
    }
}

TEST(Stream, IsGivenUpWhenItIsLonger) {
    for (const std::size_t size : {1U, 65536U, 65537U, 200'000U}) {
        std::istringstream stream(std::string(size, 'x'));
        EXPECT_EQ(ReadAll(stream, size - 1), std::nullopt) << size;
    }
}

TEST(Stream, SaysThatReadingFailed) {
    struct Failing : std::streambuf {
        int_type underflow() override { throw std::runtime_error("no more"); }
    } buffer;
    std::istream stream(&buffer);
    EXPECT_EQ(ReadAll(stream), "");
    EXPECT_TRUE(stream.bad());
}

}  // namespace
