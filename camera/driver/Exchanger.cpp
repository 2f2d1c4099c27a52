/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Exchanger: one GenCP command at a time, with its acknowledge, resends and pending acknowledges
 */

#include "Exchanger.h"

#include <algorithm>
#include <array>
#include <utility>

#include "DriverError.h"
#include "gencp/BaudRate.h"
#include "gencp/Memory.h"

namespace marlow {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kMaxSilence{1100};  // all attempts together, while nothing is heard of the camera
// A command that was refused for the moment is asked for again so often, and after such a pause.
constexpr unsigned kMaxRefusals = 3;
constexpr milliseconds kRefusalPause{20};

constexpr auto kDebug = CLProtocol::CLP_LOG_DEBUG;
constexpr auto kNotice = CLProtocol::CLP_LOG_NOTICE;

}  // namespace

/**
 * \brief Begin a connection: what was received is forgotten, the next command has request id 0
 *
 * GenCP allows only a read that changes nothing with that id; a device always carries it out afresh, so that no
 * acknowledge of an earlier connection is taken for one of this.
 */
void Exchanger::Restart() {
    m_inFlight.reset();
    m_line.TakeWaiting();
    m_parser.Clear();
    m_nextId = gencp::kFirstRequestId;
}

/**
 * \brief Send a command and wait until it has ended
 * \param[in] command What to send
 * \param[in] timing How long each attempt may take
 *
 * \return SCD of the acknowledge; of the length that the device chose
 * \throw NoAnswerError No intact acknowledge to any attempt
 * \throw StatusError The device refused
 * \throw DriverError The serial library failed
 */
gencp::Bytes Exchanger::Run(Command command, const Timing& timing) {
    auto answer = Start(std::move(command), timing, Time::max());
    return std::move(answer).value();
}

/**
 * \brief As Run, but a command that the device calls pending is left in flight
 * \param[in] limit When to leave off waiting for a pending command; Time::max() never to leave it in flight
 *
 * \return Nothing when the command is pending: Continue or Abandon it
 */
std::optional<gencp::Bytes> Exchanger::Start(Command command, const Timing& timing, Time limit) {
    InFlight inFlight;
    inFlight.command = std::move(command);
    inFlight.timing = timing;
    inFlight.giveUp = m_line.GetClock().Now() + timing.pending;
    m_inFlight = std::move(inFlight);
    Assign();
    try {
        Send();
    } catch (...) {
        m_inFlight.reset();
        throw;
    }
    return Continue(limit);
}

/**
 * \brief Wait on for the command in flight
 * \param[in] limit As for Start
 *
 * REQUIRES: IsInFlight().
 */
std::optional<gencp::Bytes> Exchanger::Continue(Time limit) {
    try {
        auto answer = Await(limit);
        if (answer)
            m_inFlight.reset();
        return answer;
    } catch (...) {
        m_inFlight.reset();
        throw;
    }
}

std::optional<gencp::Bytes> Exchanger::Await(Time limit) {
    for (;;) {
        const Time until = m_inFlight->isPending ? std::min(m_inFlight->deadline, limit) : m_inFlight->deadline;
        if (const auto packet = Receive(until)) {
            if (auto answer = Handle(*packet))
                return answer;
            continue;
        }
        const Time now = m_line.GetClock().Now();
        if (m_inFlight->isPending && now >= m_inFlight->giveUp)
            FailPending();
        if (m_inFlight->isPending && now >= limit)
            return std::nullopt;
        SendAgain();
    }
}

// The answer, or nothing when there is more to wait for.
std::optional<gencp::Bytes> Exchanger::Handle(const gencp::Packet& packet) {
    m_isAnswered = true;
    if (packet.header.command == gencp::kPendingAck) {
        NoteDelay(packet);
        return std::nullopt;
    }
    const std::uint16_t status = packet.header.flags;
    if (!gencp::IsError(status))
        return packet.scd;
    if (!WasRefusedForNow(status))
        throw StatusError(status, m_inFlight->command.operation);
    m_line.GetClock().Sleep(kRefusalPause);
    Assign();
    Send();
    return std::nullopt;
}

// These say that the command was not carried out but may be when it comes again. It goes out as a new command: to the
// same request id the device would only repeat its refusal.
bool Exchanger::WasRefusedForNow(std::uint16_t status) {
    constexpr std::array kForNow{gencp::kStatusBusy, gencp::kStatusMessageTimeout, gencp::kStatusInvalidHeader};
    return std::ranges::find(kForNow, status) != kForNow.end() && m_inFlight->refusals++ < kMaxRefusals;
}

void Exchanger::NoteDelay(const gencp::Packet& packet) {
    const auto delay = gencp::DecodePendingAck(packet.scd);
    if (!delay)
        return;
    const Time now = m_line.GetClock().Now();
    if (now >= m_inFlight->giveUp)
        FailPending();
    m_inFlight->isPending = true;
    m_inFlight->sent = 1;
    m_inFlight->deadline = std::min(now + milliseconds(*delay) + m_inFlight->timing.margin, m_inFlight->giveUp);
    m_inFlight->silentSince = m_inFlight->deadline;  // the time that it asked for is no silence
    m_logger.Log(kDebug, "{}: pending for {} ms", m_inFlight->command.operation, *delay);
}

// Nothing after the deadline, or at once when the acknowledge came damaged.
std::optional<gencp::Packet> Exchanger::Receive(Time until) {
    const std::size_t damaged = m_parser.DamagedPackets();
    std::array<std::uint8_t, gencp::kMaxPacketSize> buffer;
    for (;;) {
        if (auto packet = NextForCommand())
            return packet;
        if (m_parser.DamagedPackets() != damaged)
            return std::nullopt;
        // The exact count: some libraries wait out their time for anything else.
        const auto wanted = std::span(buffer).first(m_parser.BytesNeeded());
        const std::size_t count = m_line.Read(wanted, until);
        m_parser.Append(wanted.first(count));
        if (count > 0 && m_line.GetClock().Now() < until)
            continue;
        m_parser.Append(m_line.TakeWaiting());
        return NextForCommand();
    }
}

std::optional<gencp::Packet> Exchanger::NextForCommand() {
    while (auto packet = m_parser.Next()) {
        if (IsForCommand(packet->header))
            return packet;
        m_logger.Log(kDebug, "Dropped packet 0x{:04X} with request id {}", packet->header.command,
                     packet->header.requestId);
    }
    return std::nullopt;
}

bool Exchanger::IsForCommand(const gencp::PacketHeader& header) const {
    return header.channel == gencp::kControlChannel && header.requestId == m_inFlight->requestId &&
           (header.command == gencp::AcknowledgeOf(m_inFlight->command.id) || header.command == gencp::kPendingAck);
}

void Exchanger::Assign() {
    m_inFlight->requestId = m_nextId;
    m_inFlight->silentSince = m_line.GetClock().Now();
    m_inFlight->sent = 0;
    m_inFlight->wasSent = false;
    m_inFlight->isPending = false;
    m_nextId = gencp::NextRequestId(m_nextId);
}

void Exchanger::Send() {
    ++m_inFlight->sent;
    const auto& command = m_inFlight->command;
    const auto packet = gencp::BuildCommand(command.id, m_inFlight->requestId, command.scd, m_inFlight->wasSent);
    m_inFlight->wasSent = true;
    const Time end = m_line.GetClock().Now() + AttemptTime();
    m_inFlight->deadline = std::min(end, m_inFlight->silentSince + LongestSilence());
    m_line.Write(packet, m_inFlight->deadline);
}

void Exchanger::SendAgain() {
    if (!IsTimeForAnother())
        FailWithoutAnswer();
    m_logger.Log(kNotice, "{}: no intact acknowledge at {} baud, sending again", m_inFlight->command.operation,
                 m_line.Rate().bitsPerSecond);
    m_line.TakeWaiting();
    m_parser.Clear();
    Send();
}

// An attempt that is cut to less than half its time is of no use.
bool Exchanger::IsTimeForAnother() const {
    const Time end = m_inFlight->silentSince + LongestSilence();
    return m_inFlight->sent <= m_inFlight->timing.resends && m_line.GetClock().Now() + AttemptTime() / 2 <= end;
}

Duration Exchanger::LongestSilence() const {
    return std::max<Duration>(kMaxSilence, 2 * AttemptTime());
}

Duration Exchanger::AttemptTime() const {
    const auto& timing = m_inFlight->timing;
    const std::size_t bytes =
        2 * gencp::kHeaderSize + m_inFlight->command.scd.size() + m_inFlight->command.acknowledgeScd;
    const Duration transfer = gencp::TransferTime(bytes, m_line.Rate().bitsPerSecond);
    const bool isLast = m_inFlight->sent > timing.resends;
    const Duration wait = timing.impatience && !isLast ? *timing.impatience : timing.response + timing.margin;
    return std::min(timing.limit, transfer + wait);
}

void Exchanger::FailPending() const {
    throw DriverError(kStaysPending,
                      fmt::format("The camera calls {} pending for more than {} ms.", m_inFlight->command.operation,
                                  std::chrono::duration_cast<milliseconds>(m_inFlight->timing.pending).count()));
}

void Exchanger::FailWithoutAnswer() {
    m_isAnswered = false;
    throw NoAnswerError(fmt::format("No answer from the camera at {} baud to {}, sent {} times within {} ms each.",
                                    m_line.Rate().bitsPerSecond, m_inFlight->command.operation, m_inFlight->sent,
                                    std::chrono::duration_cast<milliseconds>(AttemptTime()).count()));
}

}  // namespace marlow
