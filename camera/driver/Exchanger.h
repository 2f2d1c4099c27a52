/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Exchanger: one GenCP command at a time, with its acknowledge, resends and pending acknowledges
 */
#pragma once

#include <optional>
#include <string>

#include "Clock.h"
#include "Logger.h"
#include "SerialLine.h"
#include "gencp/Packet.h"
#include "gencp/StreamParser.h"

namespace marlow {

/// A command, and what is needed to time it and to tell of it.
struct Command {
    std::uint16_t id = gencp::kReadMem;
    gencp::Bytes scd;
    std::size_t acknowledgeScd = 0;  ///< bytes that a good acknowledge has behind its header
    std::string operation;           ///< for messages, "reading 4 bytes at 0x1CC"
};

/// How long to wait for an acknowledge. However slow a device may be, all attempts together end 1.1 s after its last
/// sign of life, or with the second attempt where that is later: who waits for a camera that is gone is to hear of it.
struct Timing {
    Duration limit{};     ///< of one attempt, whatever else is computed
    Duration response{};  ///< the device's, at most
    /// What drivers of serial ports and a busy machine add to the time on the line.
    Duration margin = std::chrono::milliseconds(100);
    unsigned resends = gencp::kMaxResends;
    std::optional<Duration> impatience;  ///< all attempts but the last wait for the device no longer than that
    /// How long a device may call one command pending. A write may be a long work, nothing else is.
    Duration pending = std::chrono::seconds(1);
};

/// Thread-bound. A command is in flight from Start until it ends with an acknowledge, an exception or Abandon.
class Exchanger {
public:
    Exchanger(SerialLine& line, Logger& logger) : m_line(line), m_logger(logger) {}

    void Restart();
    gencp::Bytes Run(Command command, const Timing& timing);
    std::optional<gencp::Bytes> Start(Command command, const Timing& timing, Time limit);
    std::optional<gencp::Bytes> Continue(Time limit);
    void Abandon() noexcept { m_inFlight.reset(); }
    bool IsInFlight() const noexcept { return m_inFlight.has_value(); }
    /// Whether the newest command was heard of at all; true before the first one.
    bool IsAnswered() const noexcept { return m_isAnswered; }

private:
    struct InFlight {
        Command command;
        Timing timing;
        std::uint16_t requestId = 0;
        unsigned sent = 0;     // attempts since the last sign of life
        bool wasSent = false;  // with this request id
        bool isPending = false;
        unsigned refusals = 0;
        Time silentSince{};
        Time deadline{};
        Time giveUp{};
    };

    std::optional<gencp::Bytes> Await(Time limit);
    std::optional<gencp::Bytes> Handle(const gencp::Packet& packet);
    std::optional<gencp::Packet> Receive(Time until);
    std::optional<gencp::Packet> NextForCommand();
    bool IsForCommand(const gencp::PacketHeader& header) const;
    void NoteDelay(const gencp::Packet& packet);
    void Assign();
    void Send();
    void SendAgain();
    bool WasRefusedForNow(std::uint16_t status);
    bool IsTimeForAnother() const;
    Duration LongestSilence() const;
    Duration AttemptTime() const;
    [[noreturn]] void FailPending() const;
    [[noreturn]] void FailWithoutAnswer();

    SerialLine& m_line;
    Logger& m_logger;
    gencp::StreamParser m_parser;
    std::uint16_t m_nextId = gencp::kFirstRequestId;
    std::optional<InFlight> m_inFlight;
    bool m_isAnswered = true;
};

}  // namespace marlow
