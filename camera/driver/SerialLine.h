/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SerialLine: the host's serial line, with deadlines and byte counts of the driver's own
 */
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

#include "CLProtocol/CLProtocolC.h"
#include "Clock.h"
#include "gencp/BaudRate.h"
#include "gencp/ByteOrder.h"

namespace marlow {

/// Thread-bound. Serial libraries return early, late, or with success and nothing done: nothing of that is trusted.
class SerialLine {
public:
    SerialLine(CLProtocol::ISerial& serial, Clock& clock) : m_serial(&serial), m_clock(clock) {}

    void Attach(CLProtocol::ISerial& serial);
    void SetStopCheck(std::function<void()> check) { m_stopCheck = std::move(check); }

    bool Write(gencp::ByteView bytes, Time deadline);
    std::size_t Read(std::span<std::uint8_t> buffer, Time deadline);
    gencp::Bytes TakeWaiting();
    std::uint64_t ReceivedBytes() const noexcept { return m_received; }

    std::uint32_t SupportedRates();
    void SetRate(const gencp::BaudRate& rate);
    const gencp::BaudRate& Rate() const noexcept { return m_rate; }
    Clock& GetClock() const noexcept { return m_clock; }

private:
    std::size_t ReadOnce(std::span<std::uint8_t> buffer, std::uint32_t timeoutMs);
    std::size_t WriteOnce(gencp::ByteView bytes, std::uint32_t timeoutMs);
    static constexpr std::chrono::milliseconds kLongestWait{0xFFFF};

    std::uint32_t RestMs(Time deadline, std::chrono::milliseconds most = kLongestWait) const;
    void PauseAfterEmptyCall(Time begin);

    CLProtocol::ISerial* m_serial;
    Clock& m_clock;
    std::function<void()> m_stopCheck;  // throws to end a probe
    gencp::BaudRate m_rate = gencp::kStartBaudRate;
    std::optional<std::uint32_t> m_supported;
    bool m_hasFixedRate = false;  // the library has no functions for rates
    std::uint64_t m_received = 0;
};

}  // namespace marlow
