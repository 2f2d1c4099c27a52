/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what a line and the program that lends it say to each other
 */

#include "line/LineMessage.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace MarlowSim {
namespace {

TEST(LineMessages, ArriveAsTheyWereSent) {
    gencp::Bytes received = EncodeText(LineMessageType::kOpen, "cam0");
    const auto message = TakeLineMessage(received);
    ASSERT_TRUE(message);
    EXPECT_EQ(message->type, LineMessageType::kOpen);
    EXPECT_EQ(message->Text(), "cam0");
    EXPECT_TRUE(received.empty());
}

TEST(LineMessages, AreTakenOneByOne) {
    gencp::Bytes received = EncodeNumber(LineMessageType::kHostRate, 921600);
    const gencp::Bytes second = Encode(LineMessageType::kClose);
    received.insert(received.end(), second.begin(), second.end());
    EXPECT_EQ(TakeLineMessage(received)->Number(), 921600U);
    EXPECT_EQ(TakeLineMessage(received)->type, LineMessageType::kClose);
    EXPECT_FALSE(TakeLineMessage(received));
}

TEST(LineMessages, AreNotTakenBeforeTheyAreWhole) {
    const gencp::Bytes whole = Encode(LineMessageType::kBytes, gencp::Bytes{1, 2, 3});
    gencp::Bytes received;
    for (const std::uint8_t byte : whole) {
        EXPECT_FALSE(TakeLineMessage(received));
        received.push_back(byte);
    }
    EXPECT_EQ(TakeLineMessage(received)->content, (gencp::Bytes{1, 2, 3}));
}

TEST(LineMessages, WithoutANumberHaveNone) {
    gencp::Bytes received = Encode(LineMessageType::kHostRate, gencp::Bytes{1, 2, 3});
    EXPECT_EQ(TakeLineMessage(received)->Number(), 0U);
}

TEST(LineMessages, ThatAreTooLongAreRefused) {
    gencp::Bytes received{2, 0xFF, 0xFF, 0xFF, 0xFF};
    EXPECT_THROW(TakeLineMessage(received), std::runtime_error);
}

}  // namespace
}  // namespace MarlowSim
