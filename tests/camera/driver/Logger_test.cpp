/* SPDX-License-Identifier: Apache-2.0 */
#include "Logger.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using namespace marlow;

std::string g_text;
int g_calls = 0;  // not atomic: the logger calls one thread at a time
std::atomic<int> g_inside{0};
bool g_wasShared = false;
Logger* g_logger = nullptr;

void Take(CLINT32 level, const char* format, va_list arguments) {
    g_wasShared = g_wasShared || g_inside.fetch_add(1) != 0;
    char buffer[200];
    std::vsnprintf(buffer, sizeof(buffer), format, arguments);
    g_text = std::to_string(level) + " " + buffer;
    ++g_calls;
    --g_inside;
}

void TakeAndAsk(CLINT32 level, const char*, va_list) {
    g_text = std::to_string(level) + " " + std::to_string(g_logger->Function() != nullptr);
}

void Throw(CLINT32, const char*, va_list) {
    throw std::runtime_error("from the host");
}

struct LoggerTest : testing::Test {
    LoggerTest() {
        g_text.clear();
        g_calls = 0;
        g_wasShared = false;
        g_logger = &logger;
    }
    Logger logger;
};

TEST_F(LoggerTest, PassesLevelAndText) {
    logger.Set(Take);
    logger.Log(CLProtocol::CLP_LOG_WARN, "{} of {}", 1, "two");
    EXPECT_EQ(g_text, "400 1 of two");
}

TEST_F(LoggerTest, TextIsNoFormat) {
    logger.Set(Take);
    logger.Log(CLProtocol::CLP_LOG_WARN, "{}", "%s%n%d");
    EXPECT_EQ(g_text, "400 %s%n%d");
}

TEST_F(LoggerTest, LevelsBeyondTheWantedAreLeftOut) {
    logger.Set(Take);
    logger.SetLevel(CLProtocol::CLP_LOG_WARN);
    logger.Log(CLProtocol::CLP_LOG_INFO, "no");
    EXPECT_EQ(g_calls, 0);
    logger.Log(CLProtocol::CLP_LOG_ERROR, "yes");
    EXPECT_EQ(g_calls, 1);
}

TEST_F(LoggerTest, WithoutFunctionNothingHappens) {
    logger.Log(CLProtocol::CLP_LOG_FATAL, "no");
    logger.Set(Take);
    logger.Set(nullptr);
    logger.Log(CLProtocol::CLP_LOG_FATAL, "no");
    EXPECT_EQ(g_calls, 0);
}

TEST_F(LoggerTest, ExceptionsOfTheHostAreStopped) {
    logger.Set(Throw);
    EXPECT_NO_FATAL_FAILURE(logger.Log(CLProtocol::CLP_LOG_FATAL, "x"));
}

TEST_F(LoggerTest, HostMayAskTheDriverWhileItIsCalled) {
    logger.Set(TakeAndAsk);
    logger.Log(CLProtocol::CLP_LOG_FATAL, "x");
    EXPECT_EQ(g_text, "0 1");
}

TEST_F(LoggerTest, CallsOneThreadAtATime) {
    logger.Set(Take);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([this] {
            for (int n = 0; n < 200; ++n)
                logger.Log(CLProtocol::CLP_LOG_INFO, "message {}", n);
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(g_calls, 800);
    EXPECT_FALSE(g_wasShared);
}

}  // namespace
