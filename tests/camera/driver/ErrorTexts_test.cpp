/* SPDX-License-Identifier: Apache-2.0 */
#include "ErrorTexts.h"

#include <gtest/gtest.h>

#include <thread>

#include "DriverError.h"

namespace {

using namespace marlow;
using CLProtocol::CLP_LAST_ERROR;

TEST(ErrorTexts, AreFoundByCodeOrAsTheLast) {
    ErrorTexts texts;
    texts.Remember(1, -5, "five");
    EXPECT_EQ(texts.Find(1, -5), "five");
    EXPECT_EQ(texts.Find(1, CLP_LAST_ERROR), "five");
    EXPECT_EQ(texts.Find(1, -6), std::nullopt);
}

TEST(ErrorTexts, BelongToACookie) {
    ErrorTexts texts;
    texts.Remember(1, -5, "of one");
    texts.Remember(2, -5, "of two");
    EXPECT_EQ(texts.Find(1, CLP_LAST_ERROR), "of one");
    EXPECT_EQ(texts.Find(2, -5), "of two");
    EXPECT_EQ(texts.Find(0, -5), std::nullopt);
}

TEST(ErrorTexts, OwnThreadComesBeforeOthers) {
    ErrorTexts texts;
    texts.Remember(1, -5, "mine");
    std::thread([&] {
        texts.Remember(1, -5, "theirs");
        EXPECT_EQ(texts.Find(1, -5), "theirs");
    }).join();
    EXPECT_EQ(texts.Find(1, -5), "mine");
}

TEST(ErrorTexts, AnotherThreadsFailureIsBetterThanNone) {
    ErrorTexts texts;
    std::thread([&] { texts.Remember(1, -5, "theirs"); }).join();
    EXPECT_EQ(texts.Find(1, CLP_LAST_ERROR), "theirs");
}

TEST(ErrorTexts, KeepTheNewestOnly) {
    ErrorTexts texts;
    for (CLUINT32 cookie = 1; cookie <= 2000; ++cookie)
        texts.Remember(cookie, -5, "text");
    EXPECT_FALSE(texts.Find(1, -5));
    EXPECT_TRUE(texts.Find(2000, -5));
    texts.Clear();
    EXPECT_FALSE(texts.Find(2000, -5));
}

TEST(ErrorTexts, ForgetTheOldestOf513) {
    ErrorTexts texts;
    for (CLUINT32 cookie = 1; cookie <= 512; ++cookie)
        texts.Remember(cookie, -5, "text");
    EXPECT_TRUE(texts.Find(1, -5));
    texts.Remember(513, -5, "text");
    EXPECT_FALSE(texts.Find(1, -5));
    EXPECT_TRUE(texts.Find(2, -5));
}

TEST(DriverCode, OfStatusesAtTheEndsOfTheNumberedOnes) {
    EXPECT_EQ(CodeOfStatus(0x8000), -30100);
    EXPECT_EQ(CodeOfStatus(0x803F), -30163);
    EXPECT_EQ(CodeOfStatus(0x8040), -30180);
    EXPECT_EQ(CodeText(-30100), "The camera refused a command.");
    EXPECT_EQ(CodeText(-30163), "The camera refused a command.");
    EXPECT_EQ(CodeText(-30164), "");
    EXPECT_EQ(CodeText(-30099), "");
    EXPECT_EQ(CodeText(-10004), "");
}

TEST(DriverCode, OfAStatusIsInTheDriversRange) {
    for (unsigned status = 0x8000; status <= 0xFFFF; ++status) {
        const CLINT32 code = CodeOfStatus(static_cast<std::uint16_t>(status));
        EXPECT_LE(code, CLProtocol::CLP_DRIVER_ERROR_FIRST);
        EXPECT_GE(code, CLProtocol::CLP_DRIVER_ERROR_LAST);
        EXPECT_FALSE(CodeText(code).empty()) << status;
    }
}

TEST(DriverCode, OfNamedStatusesAreDistinct) {
    EXPECT_EQ(CodeOfStatus(0x8001), -30101);
    EXPECT_EQ(CodeOfStatus(0x800F), -30115);
    EXPECT_EQ(CodeOfStatus(0x8FFF), -30199);
    EXPECT_EQ(CodeOfStatus(0x8123), -30180);
    EXPECT_EQ(CodeOfStatus(0xA001), -30181);
    EXPECT_EQ(CodeOfStatus(0xC001), -30182);
}

}  // namespace
