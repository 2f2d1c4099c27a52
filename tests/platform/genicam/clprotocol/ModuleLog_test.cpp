/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the module's log
 */

#include "ModuleLog.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

#include "ForeignCall.h"

namespace {

using CLProtocol::Log;
using CLProtocol::SetLogSink;

struct Message {
    CLINT32 level;
    std::string category;
    std::string text;
};

class ModuleLog : public testing::Test {
public:
    ~ModuleLog() override { SetLogSink({}); }

protected:
    void Listen(CLINT32 level) {
        SetLogSink(
            [this](CLINT32 severity, const char* category, const char* text) {
                messages.push_back({severity, category, text});
            },
            level);
    }

    static void LogAsDriver(CLINT32 level, const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        CLProtocol::LogFromDriver(level, format, arguments);
        va_end(arguments);
    }

    std::vector<Message> messages;
};

TEST_F(ModuleLog, PassesOnMessagesUpToItsLevel) {
    Listen(CLProtocol::CLP_LOG_WARN);
    Log(CLProtocol::CLP_LOG_ERROR, "error %d of '%s'", 1, "x");
    Log(CLProtocol::CLP_LOG_WARN, "warning");
    Log(CLProtocol::CLP_LOG_INFO, "info");
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0].text, "error 1 of 'x'");
    EXPECT_EQ(messages[0].level, CLProtocol::CLP_LOG_ERROR);
    EXPECT_EQ(messages[0].category, "GenICam.CLProtocol");
    EXPECT_EQ(messages[1].text, "warning");
}

TEST_F(ModuleLog, IsSilentWithoutASink) {
    EXPECT_FALSE(CLProtocol::IsLogged(CLProtocol::CLP_LOG_FATAL));
    Listen(CLProtocol::CLP_LOG_DEBUG);
    SetLogSink({});
    Log(CLProtocol::CLP_LOG_FATAL, "fatal");
    EXPECT_TRUE(messages.empty());
    EXPECT_FALSE(CLProtocol::IsLogged(CLProtocol::CLP_LOG_FATAL));
}

TEST_F(ModuleLog, FormatsWhatDriversLog) {
    Listen(CLProtocol::CLP_LOG_DEBUG);
    const std::string driver = "/lib/driver.so";
    const CLProtocol::ForeignScope scope(driver, "clpReadRegister");
    LogAsDriver(CLProtocol::CLP_LOG_NOTICE, "%d %s %.1f\n", 7, "seven", 7.0);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].text, "/lib/driver.so: 7 seven 7.0");
    EXPECT_EQ(messages[0].level, CLProtocol::CLP_LOG_NOTICE);
    EXPECT_EQ(messages[0].category, "GenICam.CLProtocol.Driver");
}

TEST_F(ModuleLog, CutsLongMessagesOfDrivers) {
    Listen(CLProtocol::CLP_LOG_DEBUG);
    LogAsDriver(CLProtocol::CLP_LOG_INFO, "%s", std::string(100000, 'x').c_str());
    LogAsDriver(CLProtocol::CLP_LOG_INFO, nullptr);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].text, std::string(4095, 'x'));
}

TEST_F(ModuleLog, TreatsTextsAsData) {
    Listen(CLProtocol::CLP_LOG_DEBUG);
    Log(CLProtocol::CLP_LOG_INFO, "%s", "%s%n");
    LogAsDriver(CLProtocol::CLP_LOG_INFO, "%s", "%s%n");
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0].text, "%s%n");
    EXPECT_EQ(messages[1].text, "%s%n");
}

TEST_F(ModuleLog, StandsASinkThatThrowsOrLogs) {
    int calls = 0;
    SetLogSink(
        [&](CLINT32, const char*, const char*) {
            ++calls;
            Log(CLProtocol::CLP_LOG_ERROR, "again");
            throw std::runtime_error("sink");
        },
        CLProtocol::CLP_LOG_DEBUG);
    Log(CLProtocol::CLP_LOG_ERROR, "once");
    EXPECT_EQ(calls, 1);
    Log(CLProtocol::CLP_LOG_ERROR, "twice");
    EXPECT_EQ(calls, 2);
}

TEST_F(ModuleLog, MayBeSwitchedOffByItsSink) {
    int calls = 0;
    SetLogSink(
        [&](CLINT32, const char*, const char*) {
            ++calls;
            SetLogSink({});
        },
        CLProtocol::CLP_LOG_DEBUG);
    Log(CLProtocol::CLP_LOG_ERROR, "once");
    Log(CLProtocol::CLP_LOG_ERROR, "twice");
    EXPECT_EQ(calls, 1);
}

TEST_F(ModuleLog, WaitsForASinkInUse) {
    std::promise<void> entered;
    std::promise<void> mayLeave;
    std::atomic<bool> isLeft{false};
    SetLogSink(
        [&](CLINT32, const char*, const char*) {
            entered.set_value();
            mayLeave.get_future().wait_for(std::chrono::seconds(30));
            isLeft = true;
        },
        CLProtocol::CLP_LOG_DEBUG);
    std::thread logger([] { Log(CLProtocol::CLP_LOG_ERROR, "message"); });
    entered.get_future().wait();
    std::thread opener([&] { mayLeave.set_value(); });
    SetLogSink({});
    EXPECT_TRUE(isLeft);
    logger.join();
    opener.join();
}

TEST_F(ModuleLog, StandsManyThreads) {
    std::atomic<int> count{0};
    std::vector<std::thread> loggers;
    for (int i = 0; i < 4; ++i)
        loggers.emplace_back([] {
            for (int turn = 0; turn < 500; ++turn)
                Log(CLProtocol::CLP_LOG_ERROR, "%d", turn);
        });
    for (int turn = 0; turn < 50; ++turn)
        SetLogSink([&](CLINT32, const char*, const char*) { ++count; }, CLProtocol::CLP_LOG_ERROR);
    for (std::thread& logger : loggers)
        logger.join();
    EXPECT_LE(count, 2000);
}

}  // namespace
