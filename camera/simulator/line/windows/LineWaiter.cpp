/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Waits for bytes on lines that are borrowed
 */

#include <algorithm>

#include "line/windows/BorrowedLine.h"

namespace MarlowSim {

namespace {

class SocketWaiter final : public LineWaiter {
public:
    /// A datagram to oneself is what wakes a thread that waits for sockets.
    SocketWaiter() {
        sockaddr_in address = Loopback(0);
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        int size = sizeof(address);
        u_long on = 1;
        if (::bind(m_wake.Get(), generic, size) != 0 || ::getsockname(m_wake.Get(), generic, &size) != 0 ||
            ::connect(m_wake.Get(), generic, size) != 0 ||
            ::ioctlsocket(m_wake.Get(), static_cast<long>(FIONBIO), &on) != 0) {
            ThrowSocketError("socket to wake a simulator");
        }
    }

    void Wait(std::span<Line* const> lines, std::optional<TimePoint> until) override {
        fd_set readable;
        FD_ZERO(&readable);
        FD_SET(m_wake.Get(), &readable);
        bool hasBytes = false;
        for (const Line* line : lines) {
            hasBytes = hasBytes || static_cast<const BorrowedLine*>(line)->HasBytes();
            FD_SET(static_cast<SOCKET>(line->Handle()), &readable);
        }
        if (!hasBytes) {
            timeval time = Left(until);
            ::select(0, &readable, nullptr, nullptr, &time);
        }
        for (char byte = 0; ::recv(m_wake.Get(), &byte, 1, 0) > 0;) {
        }
    }

    void Wake() noexcept override { ::send(m_wake.Get(), "", 1, 0); }

    void BePunctual() noexcept override { ::SetThreadPriority(::GetCurrentThread(), THREAD_PRIORITY_TIME_CRITICAL); }

private:
    static timeval Left(std::optional<TimePoint> until) {
        using std::chrono::microseconds;
        constexpr microseconds kLongest = std::chrono::hours(1);
        const microseconds left =
            until ? std::clamp(std::chrono::ceil<microseconds>(*until - Clock::now()), microseconds(0), kLongest)
                  : kLongest;
        timeval time{};
        time.tv_sec = static_cast<long>(left.count() / 1'000'000);
        time.tv_usec = static_cast<long>(left.count() % 1'000'000);
        return time;
    }

    Socket m_wake{SOCK_DGRAM};
};

}  // namespace

std::unique_ptr<LineWaiter> LineWaiter::Create() {
    return std::make_unique<SocketWaiter>();
}

}  // namespace MarlowSim
