/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Interruption: Ctrl-C and closed console windows, turned into an orderly end
 */
#include "system/Interruption.h"

#include <windows.h>

#include <utility>

#include "system/InterruptionState.h"

namespace tools {

namespace {

std::function<void()> onFirstRequest;

/// Waits for the commands that watch, for less than the five seconds that the system waits for a program.
void WaitForWatches() {
    constexpr DWORD kPause = 10;  // ms
    constexpr ULONGLONG kLongest = 4500;
    const ULONGLONG begin = ::GetTickCount64();
    while (IsWatched() && ::GetTickCount64() - begin < kLongest)
        ::Sleep(kPause);
}

// The system calls it on a thread of its own. When it returns FALSE, the system ends the process; when the console is
// closed or the user leaves, it does so in any case.
BOOL WINAPI OnRequest(DWORD event) {
    const bool mayGoOn = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
    const bool isFirst = NoteRequest();
    if (isFirst && onFirstRequest)
        onFirstRequest();
    if (isFirst && IsWatched() && mayGoOn)
        return TRUE;
    if (!mayGoOn)
        WaitForWatches();
    const auto lock = RunCleanUps();
    return FALSE;
}

}  // namespace

class Interruption::Impl {
public:
    explicit Impl(std::function<void()> onRequest) {
        onFirstRequest = std::move(onRequest);
        ::SetConsoleCtrlHandler(OnRequest, TRUE);
    }
    ~Impl() { ::SetConsoleCtrlHandler(OnRequest, FALSE); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
};

Interruption::Interruption(std::function<void()> onRequest) : m_impl(std::make_unique<Impl>(std::move(onRequest))) {}
Interruption::~Interruption() = default;

}  // namespace tools
