/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The gate of the frame deliveries
 */

#include "VantoCLSer/stream/DeliveryGate.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <memory>

#include "vanto/LogListener.h"

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
        auto pass = std::make_unique<CDeliveryGate::Pass>(gate);
        inside.set_value();
        while (!stop) {
            pass.reset();
            pass = std::make_unique<CDeliveryGate::Pass>(gate);
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

/// A delivery on a thread of its own, which ends when it is told to or at the end of the test.
class Delivery {
public:
    explicit Delivery(
        CDeliveryGate& gate, std::function<void()> action = [] {})
        : m_done(std::async(std::launch::async, [this, &gate, action] {
              const CDeliveryGate::Pass pass(gate);
              m_isInside.set_value();
              m_mayLeave.get_future().wait();
              action();
          })) {
        m_isInside.get_future().wait();
    }
    ~Delivery() { End(); }
    void End() {
        if (m_done.valid()) {
            m_mayLeave.set_value();
            m_done.get();
        }
    }

private:
    std::promise<void> m_isInside;
    std::promise<void> m_mayLeave;
    std::future<void> m_done;
};

// Each delivery begins before the one before it ends: there is never a moment without any.
TEST(DeliveryGate, IsNotKeptWaitingByDeliveriesThatOverlap) {
    CDeliveryGate gate;
    auto delivery = std::make_unique<Delivery>(gate);
    auto wait = std::async(std::launch::async, [&] { return gate.WaitUntilIdle(20s); });
    while (wait.wait_for(0ms) != std::future_status::ready)
        delivery = std::make_unique<Delivery>(gate);
    EXPECT_TRUE(wait.get());
}

TEST(DeliveryGate, IsWaitedForByAllWhoFoundItBusy) {
    CDeliveryGate gate;
    Delivery delivery(gate);
    auto first = std::async(std::launch::async, [&] { return gate.WaitUntilIdle(20s); });
    auto second = std::async(std::launch::async, [&] { return gate.WaitUntilIdle(20s); });
    delivery.End();
    EXPECT_TRUE(first.get());
    EXPECT_TRUE(second.get());
}

TEST(DeliveryGate, WaitsForADeliveryWhoseOwnWaitIsOver) {
    CDeliveryGate gate;
    Delivery delivery(gate, [&] { EXPECT_TRUE(gate.WaitUntilIdle(0ms)); });
    delivery.End();
    const CDeliveryGate::Pass pass(gate);
    auto waited = std::async(std::launch::async, [&] { return gate.WaitUntilIdle(1ms); });
    EXPECT_FALSE(waited.get());
    EXPECT_TRUE(gate.WaitUntilIdle(0ms));
    waited = std::async(std::launch::async, [&] { return gate.WaitUntilIdle(1ms); });
    EXPECT_FALSE(waited.get());
}

// Who destroys a stream grabber within its own delivery waits for ever: here another thread ends the delivery.
TEST(DeliveryGate, SaysThatItCannotBeShutWithinADelivery) {
    const Vanto::tracelog::LogRecorder log("Vanto.CLSer.Stream:trace");
    CDeliveryGate gate(1ms);
    std::unique_ptr<CDeliveryGate::Pass> pass;
    auto shut = std::async(std::launch::async, [&] {
        pass = std::make_unique<CDeliveryGate::Pass>(gate);
        gate.Shut();
    });
    EXPECT_TRUE(log.WaitForText("The destruction of the stream grabber waits for 1 frame deliveries.", 20s));
    EXPECT_EQ(log.GetMessages().front().text,
              "The stream grabber is destroyed within the delivery of a frame, which waits for itself now. Destroy the "
              "device on another thread.");
    EXPECT_EQ(log.GetMessages().front().level, Vanto::tracelog::kError);
    pass.reset();
    shut.get();
}

TEST(DeliveryGate, RemindsOfTheDeliveriesThatKeepItOpen) {
    const Vanto::tracelog::LogRecorder log("Vanto.CLSer.Stream:trace");
    CDeliveryGate gate(1ms);
    Delivery first(gate);
    Delivery second(gate);
    auto shut = std::async(std::launch::async, [&] { gate.Shut(); });
    EXPECT_TRUE(log.WaitForText("The destruction of the stream grabber waits for 2 frame deliveries.", 20s));
    first.End();
    EXPECT_TRUE(log.WaitForText("The destruction of the stream grabber waits for 1 frame deliveries.", 20s));
    second.End();
    shut.get();
    EXPECT_EQ(log.GetMessages().front().level, Vanto::tracelog::kWarning);
}

TEST(DeliveryGate, IsShutWithoutAWordWhenNobodyDelivers) {
    const Vanto::tracelog::LogRecorder log("Vanto.CLSer.Stream:trace");
    CDeliveryGate gate(1ms);
    gate.Shut();
    EXPECT_TRUE(log.GetMessages().empty());
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
