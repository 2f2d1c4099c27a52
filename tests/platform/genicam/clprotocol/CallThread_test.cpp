/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the thread for foreign functions
 */

#include "CallThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <stdexcept>

#include "CLProtocol/CLException.h"
#include "CLProtocol/Diagnostics.h"
#include "ForeignCall.h"
#include "os/PerThread.h"

namespace {

using CLProtocol::CallThread;

const std::string kLibrary = "/lib/x.so";
const std::string kDriver = "/lib/driver.so";
const std::string kSerial = "/lib/clserxyz.so";

class Calls : public testing::Test {
public:
    Calls() { CLProtocol::SetPatience({50, 1000}); }
    ~Calls() override { CLProtocol::SetPatience({}); }
};

// Something that jobs wait for, even when their test is over.
struct Latch {
    std::promise<void> promise;
    std::shared_future<void> opened = promise.get_future().share();
};

TEST_F(Calls, RunJobsOnOneThreadOfTheirOwn) {
    CallThread thread;
    std::thread::id first;
    std::thread::id second;
    thread.Run([&] { first = std::this_thread::get_id(); });
    thread.Run([&] { second = std::this_thread::get_id(); });
    EXPECT_EQ(first, second);
    EXPECT_NE(first, std::this_thread::get_id());
}

// Tells when its thread ends.
struct EndOfThread {
    std::promise<void> promise;
    ~EndOfThread() { promise.set_value(); }
};

std::future<void> EndOfThreadOf(CallThread& thread) {
    std::future<void> hasEnded;
    thread.Run([&] { hasEnded = os::PerThread<EndOfThread>().promise.get_future(); });
    return hasEnded;
}

TEST_F(Calls, GiveTheirThreadBackWhileThereAreNone) {
    CallThread thread;
    for (int turn = 0; turn < 2; ++turn) {
        const std::future<void> hasEnded = EndOfThreadOf(thread);
        ASSERT_EQ(hasEnded.wait_for(std::chrono::minutes(1)), std::future_status::ready) << turn;
    }
}

TEST_F(Calls, PassOnExceptions) {
    CallThread thread;
    EXPECT_THROW(thread.Run([] { throw RUNTIME_EXCEPTION("text"); }), GenICam::RuntimeException);
    EXPECT_THROW(thread.Run([] { throw 1; }), int);
    bool isRun = false;
    thread.Run([&] { isRun = true; });
    EXPECT_TRUE(isRun);
}

TEST_F(Calls, FreeWhatAJobHoldsBeforeTheyReturn) {
    CallThread thread;
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> observer = held;
    thread.Run([held = std::move(held)] {});
    EXPECT_TRUE(observer.expired());
}

TEST_F(Calls, FreeOnTheirOwnThreadWhatARejectedJobHolds) {
    const auto latch = std::make_shared<Latch>();
    auto first = std::make_shared<std::promise<void>>();
    std::future<void> isFirstFreed = first->get_future();
    std::promise<std::thread::id> freedOn;
    CallThread thread;
    EXPECT_THROW(thread.Run([latch, first = std::move(first)] { latch->opened.wait(); }), CLProtocol::CLErrException);
    latch->promise.set_value();
    EXPECT_THROW(isFirstFreed.get(), std::future_error);  // that function has returned after all
    {
        std::shared_ptr<void> held(nullptr, [&](void*) { freedOn.set_value(std::this_thread::get_id()); });
        EXPECT_THROW(thread.Run([held = std::move(held)] {}), CLProtocol::CLErrException);
    }
    EXPECT_NE(freedOn.get_future().get(), std::this_thread::get_id());
}

TEST_F(Calls, GiveUpOnAFunctionThatDoesNotReturn) {
    const auto latch = std::make_shared<Latch>();
    auto held = std::make_shared<std::promise<void>>();
    std::future<void> isFreed = held->get_future();
    {
        CallThread thread;
        try {
            thread.Run([latch, held = std::move(held)] {
                const CLProtocol::ForeignScope scope(kLibrary, "clpHang");
                latch->opened.wait();
            });
            FAIL();
        } catch (const CLProtocol::CLErrException& error) {
            EXPECT_EQ(error.GetErrorCode(), -10004);
            EXPECT_STREQ(error.GetDescription(), "Function 'clpHang' of '/lib/x.so' does not return (-10004)");
        }
        EXPECT_TRUE(thread.IsStuck());
        EXPECT_THROW(thread.Run([] {}), CLProtocol::CLErrException);
    }
    latch->promise.set_value();
    // The promise breaks when the job that was left behind is freed.
    EXPECT_THROW(isFreed.get(), std::future_error);
}

TEST_F(Calls, WaitForWhatGivesSignsOfLife) {
    CallThread thread;
    std::atomic<bool> isDone{false};
    thread.Run([&] {
        for (int i = 0; i < 40; ++i) {
            const CLProtocol::ForeignScope scope(kLibrary, "clSerialRead");
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        isDone = true;
    });
    EXPECT_TRUE(isDone);
}

TEST_F(Calls, GiveUpInTheEndOnWhatNeverEnds) {
    const auto isOver = std::make_shared<std::atomic<bool>>(false);
    CallThread thread;
    EXPECT_THROW(thread.Run(
                     [isOver] {
                         while (!*isOver) {
                             const CLProtocol::ForeignScope scope(kLibrary, "clSerialRead");
                             std::this_thread::sleep_for(std::chrono::milliseconds(1));
                         }
                     },
                     CallThread::Milliseconds(0), CallThread::Milliseconds(200)),
                 CLProtocol::CLErrException);
    *isOver = true;
}

int Foreign(int value) {
    return value + 1;
}
int Throwing() {
    throw std::runtime_error("reason");
}
void ThrowingOdd() {
    throw 'x';
}

TEST_F(Calls, StopForeignExceptions) {
    EXPECT_EQ(CLProtocol::CallForeign("/lib/x.so", "f", &Foreign, 1), 2);
    try {
        CLProtocol::CallForeign("/lib/x.so", "g", &Throwing);
        FAIL();
    } catch (const GenICam::RuntimeException& error) {
        EXPECT_STREQ(error.GetDescription(), "Function 'g' of '/lib/x.so' threw an exception: reason");
    }
    EXPECT_THROW(CLProtocol::CallForeign("/lib/x.so", "h", &ThrowingOdd), GenICam::RuntimeException);
    EXPECT_EQ(CLProtocol::CurrentForeignLibrary(), "");
}

TEST_F(Calls, KnowTheInnermostLibrary) {
    const CLProtocol::ForeignScope outer(kDriver, "clpReadRegister");
    {
        const CLProtocol::ForeignScope inner(kSerial, "clSerialRead");
        EXPECT_EQ(CLProtocol::CurrentForeignLibrary(), "/lib/clserxyz.so");
    }
    EXPECT_EQ(CLProtocol::CurrentForeignLibrary(), "/lib/driver.so");
}

}  // namespace
