/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The gate of the frame deliveries
 */

#include "VantoCLSer/stream/DeliveryGate.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <optional>

namespace {

using namespace std::chrono_literals;
using Vanto::CDeliveryGate;

TEST(DeliveryGate, LetsDeliveriesPass) {
    CDeliveryGate gate;
    const CDeliveryGate::Pass first(gate);
    const CDeliveryGate::Pass second(gate);
    EXPECT_TRUE(first);
    EXPECT_TRUE(second);
}

TEST(DeliveryGate, LetsNobodyPassOnceItIsShut) {
    CDeliveryGate gate;
    gate.Shut();
    const CDeliveryGate::Pass pass(gate);
    EXPECT_FALSE(pass);
}

TEST(DeliveryGate, IsShutWhenTheLastDeliveryHasEnded) {
    CDeliveryGate gate;
    std::promise<void> inside;
    std::promise<void> mayLeave;
    auto delivery = std::async(std::launch::async, [&] {
        const CDeliveryGate::Pass pass(gate);
        inside.set_value();
        mayLeave.get_future().wait();
    });
    inside.get_future().wait();
    auto shut = std::async(std::launch::async, [&] { gate.Shut(); });
    EXPECT_EQ(shut.wait_for(20ms), std::future_status::timeout);
    mayLeave.set_value();
    EXPECT_EQ(shut.wait_for(20s), std::future_status::ready);
}

TEST(DeliveryGate, TellsWhenNobodyDelivers) {
    CDeliveryGate gate;
    EXPECT_TRUE(gate.WaitUntilIdle(0ms));
    std::promise<void> inside;
    std::promise<void> mayLeave;
    auto delivery = std::async(std::launch::async, [&] {
        const CDeliveryGate::Pass pass(gate);
        inside.set_value();
        mayLeave.get_future().wait();
    });
    inside.get_future().wait();
    EXPECT_FALSE(gate.WaitUntilIdle(1ms));
    mayLeave.set_value();
    EXPECT_TRUE(gate.WaitUntilIdle(20s));
}

TEST(DeliveryGate, IsNotKeptWaitingByDeliveriesThatBeginLater) {
    CDeliveryGate gate;
    std::atomic<bool> stop{false};
    std::promise<void> inside;
    auto delivery = std::async(std::launch::async, [&] {
        std::optional<CDeliveryGate::Pass> pass(gate);
        inside.set_value();
        while (!stop) {
            pass.reset();
            pass.emplace(gate);
        }
    });
    inside.get_future().wait();
    EXPECT_TRUE(gate.WaitUntilIdle(20s));
    stop = true;
}

TEST(DeliveryGate, DoesNotLetADeliveryWaitForItself) {
    CDeliveryGate gate;
    CDeliveryGate other;
    const CDeliveryGate::Pass pass(gate);
    EXPECT_TRUE(gate.WaitUntilIdle(0ms));
    {
        const CDeliveryGate::Pass inner(other);
        EXPECT_TRUE(other.WaitUntilIdle(0ms));
        EXPECT_TRUE(gate.WaitUntilIdle(0ms));
    }
    EXPECT_TRUE(gate.WaitUntilIdle(0ms));
}

// What its thread closes, another delivery may still write to.
TEST(DeliveryGate, LetsADeliveryWaitForOthers) {
    CDeliveryGate gate;
    const CDeliveryGate::Pass pass(gate);
    std::promise<void> inside;
    std::promise<void> mayLeave;
    auto delivery = std::async(std::launch::async, [&] {
        const CDeliveryGate::Pass other(gate);
        inside.set_value();
        mayLeave.get_future().wait();
    });
    inside.get_future().wait();
    EXPECT_FALSE(gate.WaitUntilIdle(1ms));
    mayLeave.set_value();
    EXPECT_TRUE(gate.WaitUntilIdle(20s));
}

TEST(DeliveryGate, LetsTwoDeliveriesNotWaitForEachOther) {
    CDeliveryGate gate;
    const CDeliveryGate::Pass pass(gate);
    std::promise<void> inside;
    auto delivery = std::async(std::launch::async, [&] {
        const CDeliveryGate::Pass other(gate);
        inside.set_value();
        return gate.WaitUntilIdle(24h);
    });
    inside.get_future().wait();
    EXPECT_TRUE(gate.WaitUntilIdle(24h));
}

}  // namespace
