/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CameraMemory: the camera's register space, cut into exchanges that fit a packet and the time-out
 */
#pragma once

#include <span>
#include <vector>

#include "Exchanger.h"
#include "gencp/Memory.h"
#include "gencp/Registers.h"

namespace marlow {

/// Thread-bound.
class CameraMemory {
public:
    CameraMemory(SerialLine& line, Exchanger& exchanger) : m_line(line), m_exchanger(exchanger) {}

    void SetTimeout(Duration limit) { m_limit = limit; }
    Duration Timeout() const { return m_limit; }
    void SetResponseTime(Duration response) { m_response = response; }
    void SetCanStack(bool canStack) { m_canStack = canStack; }

    void Read(std::uint64_t address, std::span<std::uint8_t> data);
    gencp::Bytes Read(const gencp::Register& reg);
    std::vector<gencp::Bytes> ReadAll(std::span<const gencp::MemoryRange> ranges);
    gencp::Bytes ReadOnce(const gencp::MemoryRange& range, const Timing& timing);
    std::vector<gencp::Bytes> ReadStackOnce(std::span<const gencp::MemoryRange> ranges, const Timing& timing);

    bool Write(std::uint64_t address, gencp::ByteView data);
    bool ContinueWrite();
    void AbandonWrite();
    void WriteOnce(std::uint64_t address, gencp::ByteView data, const Timing& timing);
    Timing UsualTiming() const;
    Timing LookTiming() const;
    void CheckNothingPends() const;

private:
    std::size_t DataPerExchange(std::size_t overhead, std::size_t most) const;
    std::size_t StackFrom(std::span<const gencp::MemoryRange> ranges) const;
    bool WriteRest();

    SerialLine& m_line;
    Exchanger& m_exchanger;
    Duration m_limit{};
    Duration m_response = std::chrono::milliseconds(gencp::kFirstCommandTimeoutMs);
    bool m_canStack = false;
    // The write that runs: what it has not yet sent, and how much of it is in flight.
    std::uint64_t m_writeAddress = 0;
    gencp::Bytes m_writeRest;
    std::size_t m_writeInFlight = 0;
};

}  // namespace marlow
