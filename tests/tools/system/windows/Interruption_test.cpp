/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what happens when the console of a command is closed
 */
#include "system/Interruption.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <thread>

namespace {

using namespace tools;

/// Stands for the rest of the system's handlers, which would end this program.
BOOL WINAPI GoOn(DWORD) {
    return TRUE;
}

/// What the system calls on a new thread of each program at the console.
void Notify(DWORD_PTR event) {
    const auto routine = reinterpret_cast<LPTHREAD_START_ROUTINE>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA("kernelbase"), "CtrlRoutine")));
    ASSERT_NE(routine, nullptr);
    routine(reinterpret_cast<void*>(event));
}

// The system ends a program whose console is closed as soon as the handler returns, whatever it returns.
TEST(Interruption, HoldsUpAClosedConsoleUntilTheCommandHasEnded) {
    ASSERT_TRUE(::SetConsoleCtrlHandler(GoOn, TRUE));
    std::atomic<bool> hasEnded{false};
    std::atomic<bool> wasCleanedUpBehindIt{false};
    {
        const Interruption interruption;
        const Interruption::CleanUp cleanUp([&] { wasCleanedUpBehindIt = hasEnded.load(); });
        std::optional<Interruption::Watch> watch(std::in_place);
        std::thread system(Notify, CTRL_CLOSE_EVENT);
        const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (!Interruption::Requested() && std::chrono::steady_clock::now() < until)
            std::this_thread::yield();
        hasEnded = true;
        watch.reset();
        system.join();
    }
    EXPECT_TRUE(wasCleanedUpBehindIt);
    ::SetConsoleCtrlHandler(GoOn, FALSE);
}

}  // namespace
