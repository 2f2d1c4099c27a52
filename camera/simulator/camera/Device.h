/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera as its serial line sees it: commands come in, acknowledges go out, the baud rate changes
 */
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>

#include "Time.h"
#include "camera/Firmware.h"
#include "gencp/BaudRate.h"
#include "gencp/Memory.h"
#include "gencp/Packet.h"
#include "simulator/CameraOptions.h"
#include "simulator/Statistics.h"

namespace MarlowSim {

/// Knows no line and no clock: all times come with the calls. Thread-bound.
class Device {
public:
    struct Outgoing {
        TimePoint ready;  ///< when it may go out
        gencp::Bytes packet;
        bool endsCommand = false;  ///< what its command asked of the line happens once it has gone out
    };

    /// \param[in] faults Delay and pending time; looked at anew for each command
    Device(const CameraOptions& options, const FaultSettings& faults, Statistics& statistics, TimePoint now);

    void Receive(const gencp::Packet& packet, TimePoint now);
    std::optional<Outgoing> TakeOutgoing();
    void HasSent(const Outgoing& outgoing, TimePoint now);
    void OnTime(TimePoint now);
    std::optional<TimePoint> NextEvent() const;

    void PowerOn(TimePoint now);
    std::uint32_t BitsPerSecond() const { return m_rate->bitsPerSecond; }
    Firmware& Registers() { return m_firmware; }

private:
    /// A new rate that the host has not confirmed yet.
    struct Trial {
        const gencp::BaudRate* oldRate;
        TimePoint end;
    };
    struct Running {
        gencp::Packet command;
        TimePoint end;
        TimePoint announced;  // until then the host waits
    };
    struct Answer {
        std::uint16_t status = gencp::kStatusSuccess;
        gencp::Bytes scd;
    };

    void Start(const gencp::Packet& command, TimePoint now);
    void Finish(const gencp::Packet& command, TimePoint now);
    void RepeatAnswer(TimePoint now);
    void AnnouncePending(TimePoint now);
    void Send(gencp::Bytes packet, TimePoint ready, bool endsCommand);
    bool IsSlow(const gencp::Packet& command) const;
    bool IsForeverOver() const;
    Answer Execute(const gencp::Packet& command, TimePoint now);
    Answer ReadMemory(const gencp::Packet& command, bool isStacked, TimePoint now);
    Answer WriteMemory(const gencp::Packet& command, bool isStacked, TimePoint now);
    std::uint16_t ReadOne(const gencp::MemoryRange& range, gencp::Bytes& data, TimePoint now);
    std::uint16_t WriteOne(std::uint64_t address, gencp::ByteView data, TimePoint now);
    void ObeyLineRequest(TimePoint now);
    void SetRate(const gencp::BaudRate* rate);

    const CameraOptions m_options;
    const FaultSettings& m_faults;
    Statistics& m_statistics;
    Firmware m_firmware;
    const gencp::BaudRate* m_rate;
    std::optional<Trial> m_trial;
    std::optional<Running> m_running;
    std::optional<std::uint16_t> m_lastId;  // of the last command that was taken
    gencp::Bytes m_lastAnswer;
    TimePoint m_lastAccess;
    std::deque<Outgoing> m_outgoing;
};

}  // namespace MarlowSim
