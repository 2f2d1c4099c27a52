/* SPDX-License-Identifier: Apache-2.0 */
#include "vanto/TraceLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <stdexcept>
#include <thread>

#include "vanto/LogListener.h"

namespace {

using namespace Vanto::tracelog;
using testing::ElementsAre;

TEST(LogGetCatID, IsTheSameForTheSameName) {
    EXPECT_EQ(LogGetCatID("Test.Same"), LogGetCatID("Test.Same"));
    EXPECT_NE(LogGetCatID("Test.Same"), LogGetCatID("Test.same"));
    EXPECT_EQ(LogGetCatID("Test.Same")->GetName(), "Test.Same");
    EXPECT_EQ(LogGetCatID(nullptr)->GetName(), "");
}

TEST(LogTrace, IsOffWithoutListenersAndEnvironment) {
    EXPECT_FALSE(LogGetCatID("Test.Off")->IsOn(kError));
    LogTrace(LogGetCatID("Test.Off"), kError, "nobody hears %s", "this");
}

TEST(LogTrace, TellsFormatArgumentsAndResult) {
    const LogRecorder log("Test.Record:trace");
    LogTrace(LogGetCatID("Test.Record"), kInfo, "Port '%s' has %5d of %#x.", "COM1", 3, 255u);
    const auto messages = log.GetMessages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].category, "Test.Record");
    EXPECT_EQ(messages[0].level, kInfo);
    EXPECT_EQ(messages[0].format, "Port '%s' has %5d of %#x.");
    EXPECT_THAT(messages[0].arguments, ElementsAre("COM1", "3", "255"));
    EXPECT_EQ(messages[0].text, "Port 'COM1' has     3 of 0xff.");
}

TEST(LogTrace, TakesTextsAsData) {
    const LogRecorder log("Test.Data:trace");
    LogTrace(LogGetCatID("Test.Data"), kInfo, "<%s>", "%s%n{}{0}");
    EXPECT_EQ(log.GetMessages().at(0).text, "<%s%n{}{0}>");
}

TEST(LogTrace, StandsANullFormat) {
    const LogRecorder log("Test.Null:trace");
    LogTrace(LogGetCatID("Test.Null"), kInfo, nullptr);
    EXPECT_EQ(log.GetMessages().at(0).text, "");
}

TEST(LogSubscription, GetsWhatItsRulesAskFor) {
    const LogRecorder log("Test.Rules.A:warning,Test.Rules.*:trace");
    LogTrace(LogGetCatID("Test.Rules.A"), kInfo, "no");
    LogTrace(LogGetCatID("Test.Rules.A"), kWarning, "yes");
    LogTrace(LogGetCatID("Test.Rules.B"), kTrace, "yes");
    LogTrace(LogGetCatID("Test.Other"), kError, "no");
    EXPECT_EQ(log.CountText("yes"), 2u);
    EXPECT_EQ(log.CountText("yes", kWarning), 1u);
    EXPECT_EQ(log.CountFormat("no"), 0u);
}

TEST(LogSubscription, EachGetsItsOwn) {
    const LogRecorder all("Test.Own:trace");
    const LogRecorder errors("Test.Own:error");
    LogTrace(LogGetCatID("Test.Own"), kDebug, "debug");
    LogTrace(LogGetCatID("Test.Own"), kError, "error");
    EXPECT_EQ(all.GetMessages().size(), 2u);
    EXPECT_EQ(errors.GetMessages().size(), 1u);
}

TEST(LogSubscription, SwitchesCategoriesOnAndOffAgain) {
    const CategoryId before = LogGetCatID("Test.Switch.Before");
    {
        const LogRecorder log("Test.Switch.*:debug");
        EXPECT_TRUE(before->IsOn(kDebug));
        EXPECT_FALSE(before->IsOn(kTrace));
        EXPECT_TRUE(LogGetCatID("Test.Switch.Later")->IsOn(kDebug));
    }
    EXPECT_FALSE(before->IsOn(kError));
    EXPECT_FALSE(LogGetCatID("Test.Switch.Later")->IsOn(kError));
}

TEST(LogSubscription, AListenerMayLog) {
    const CategoryId category = LogGetCatID("Test.Nested");
    const LogRecorder other("Test.Nested:trace");
    std::atomic<int> calls{0};
    const LogSubscription subscription(
        [&](const LogMessage& message) {
            ++calls;
            LogTrace(category, kInfo, "heard '%s'", message.text);
        },
        "Test.Nested:trace");
    LogTrace(category, kInfo, "first");
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(other.CountText("heard 'first'"), 1u);
}

TEST(LogSubscription, SwallowsWhatAListenerThrows) {
    const LogSubscription subscription([](const LogMessage&) { throw std::runtime_error("listener"); },
                                       "Test.Throw:trace");
    const LogRecorder other("Test.Throw:trace");
    LogTrace(LogGetCatID("Test.Throw"), kInfo, "text");
    EXPECT_EQ(other.CountText("text"), 1u);
}

TEST(LogSubscription, MayEndInItsOwnListener) {
    std::optional<LogSubscription> subscription;
    int calls = 0;
    subscription.emplace(
        [&](const LogMessage&) {
            ++calls;
            subscription.reset();
        },
        "Test.Self:trace");
    LogTrace(LogGetCatID("Test.Self"), kInfo, "one");
    LogTrace(LogGetCatID("Test.Self"), kInfo, "two");
    EXPECT_EQ(calls, 1);
}

TEST(LogSubscription, NoCallRunsAfterItsEnd) {
    const CategoryId category = LogGetCatID("Test.Race");
    std::atomic<bool> stop{false};
    std::vector<std::jthread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            while (!stop)
                LogTrace(category, kInfo, "message %d", 1);
        });
    }
    for (int i = 0; i < 200; ++i) {
        std::atomic<int> running{0};
        auto alive = std::make_unique<int>(0);
        std::optional<LogSubscription> subscription;
        subscription.emplace(
            [&](const LogMessage&) {
                ++running;
                EXPECT_GE(reinterpret_cast<std::uintptr_t>(alive.get()), 1u);
                --running;
            },
            "Test.Race:trace");
        std::this_thread::yield();
        subscription.reset();
        alive.reset();
        EXPECT_EQ(running, 0);
    }
    stop = true;
}

TEST(LogRecorder, WaitsForAText) {
    const LogRecorder log("Test.Wait:trace");
    const std::jthread writer([] { LogTrace(LogGetCatID("Test.Wait"), kInfo, "there %d", 1); });
    EXPECT_TRUE(log.WaitForText("there 1", std::chrono::seconds(30)));
    EXPECT_FALSE(log.WaitForText("never", std::chrono::milliseconds(1)));
}

TEST(LogRecorder, ForgetsWhenCleared) {
    LogRecorder log("Test.Clear:trace");
    LogTrace(LogGetCatID("Test.Clear"), kInfo, "text");
    log.Clear();
    EXPECT_TRUE(log.GetMessages().empty());
}

TEST(LogTrace, LosesNothingFromManyThreads) {
    const LogRecorder log("Test.Threads.*:info");
    const auto work = [](int thread) {
        const std::string name = "Test.Threads." + std::to_string(thread % 2);
        for (int i = 0; i < 500; ++i) {
            LogTrace(LogGetCatID(name.c_str()), kInfo, "%d of %s at %g", i, name, 0.5);
            LogTrace(LogGetCatID(name.c_str()), kDebug, "not wanted %d", i);
        }
    };
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back(work, i);
    }
    EXPECT_EQ(log.GetMessages().size(), 2000u);
    EXPECT_EQ(log.CountText("499 of Test.Threads.0 at 0.5"), 2u);
}

}  // namespace
