/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera as its serial line sees it: commands come in, acknowledges go out, the baud rate changes
 */

#include "camera/Device.h"

#include <algorithm>
#include <utility>

#include "gencp/Memory.h"
#include "gencp/Protocol.h"

namespace MarlowSim {

namespace {

using namespace gencp;
using std::chrono::milliseconds;

constexpr milliseconds kConfirmTime{kBaudRateConfirmMs};
// A pending acknowledge announces little at a time, so that a host that believes the first one only is found out.
constexpr milliseconds kPendingStep{200};
constexpr milliseconds kPendingMargin{100};

/// The status for the first of some bytes that is refused, else success.
std::uint16_t RefusalOf(const std::map<std::uint64_t, std::uint16_t>& refused, std::uint64_t address,
                        std::size_t length) {
    const auto first = refused.lower_bound(address);
    return first != refused.end() && first->first - address < length ? first->second : kStatusSuccess;
}

}  // namespace

Device::Device(const CameraOptions& options, const FaultSettings& faults, Statistics& statistics, TimePoint now)
    : m_options(options),
      m_faults(faults),
      m_statistics(statistics),
      m_firmware(options, now),
      m_rate(&kStartBaudRate),
      m_lastAccess(now) {
    PowerOn(now);
}

/**
 * \brief Start anew, at the baud rate of the options
 */
void Device::PowerOn(TimePoint now) {
    m_rate = FindBaudRateBySpeed(m_options.baud);
    m_firmware.PowerOn(m_rate->flag, now);
    m_trial.reset();
    m_running.reset();
    m_lastId.reset();
    m_lastAnswer.clear();
    m_outgoing.clear();
    m_lastAccess = now;
}

/**
 * \brief Take an intact packet from the line
 * \param[in] now When its last byte came
 */
void Device::Receive(const Packet& packet, TimePoint now) {
    if (packet.header.IsAcknowledge() || packet.header.channel != kControlChannel)
        return;
    m_lastAccess = now;
    const std::uint16_t id = packet.header.requestId;
    if (id != kFirstRequestId && m_lastId == id) {
        ++m_statistics.resent;
        RepeatAnswer(now);
    } else if (m_running && !m_faults.alwaysPending) {
        Send(BuildAcknowledge(AcknowledgeOf(packet.header.command), kStatusBusy, id, {}), now, false);
    } else {
        Start(packet, now);
    }
}

void Device::RepeatAnswer(TimePoint now) {
    if (m_running) {
        AnnouncePending(now);
    } else if (!m_lastAnswer.empty()) {
        Send(m_lastAnswer, now, false);
    }
}

void Device::Start(const Packet& command, TimePoint now) {
    m_lastId = command.header.requestId;
    m_lastAnswer.clear();
    if (m_faults.alwaysPending) {
        m_running = Running{command, TimePoint::max(), now};
        AnnouncePending(now);
    } else if (m_faults.pending.count() > 0 && IsSlow(command)) {
        m_running = Running{command, now + m_faults.pending, now};
        AnnouncePending(now);
    } else {
        Finish(command, now);
    }
}

// The fault that made a command pending without end was taken away.
bool Device::IsForeverOver() const {
    return m_running->end == TimePoint::max() && !m_faults.alwaysPending;
}

void Device::AnnouncePending(TimePoint now) {
    const TimePoint end = std::min(m_running->end, now + kPendingStep);
    const milliseconds step = std::max(std::chrono::ceil<milliseconds>(end - now), milliseconds(1));
    m_running->announced = now + step;
    const auto timeout = static_cast<std::uint16_t>((step + kPendingMargin).count());
    Send(BuildAcknowledge(kPendingAck, kStatusSuccess, m_running->command.header.requestId, EncodePendingAck(timeout)),
         now, false);
}

void Device::Finish(const Packet& command, TimePoint now) {
    const Answer answer = Execute(command, now);
    if ((command.header.flags & kFlagRequestAck) == 0) {
        ObeyLineRequest(now);
        return;
    }
    m_lastAnswer =
        BuildAcknowledge(AcknowledgeOf(command.header.command), answer.status, command.header.requestId, answer.scd);
    Send(m_lastAnswer, now, true);
}

void Device::Send(Bytes packet, TimePoint ready, bool endsCommand) {
    m_outgoing.push_back({ready + m_faults.delay, std::move(packet), endsCommand});
}

/**
 * \brief Give the next packet for the line, which may have to wait until it is ready
 */
std::optional<Device::Outgoing> Device::TakeOutgoing() {
    if (m_outgoing.empty())
        return std::nullopt;
    Outgoing outgoing = std::move(m_outgoing.front());
    m_outgoing.pop_front();
    return outgoing;
}

/**
 * \brief Learn that the last byte of a packet has left
 */
void Device::HasSent(const Outgoing& outgoing, TimePoint now) {
    ++m_statistics.packetsOut;
    if (outgoing.endsCommand)
        ObeyLineRequest(now);
}

bool Device::IsSlow(const Packet& command) const {
    const auto write = DecodeWrite(command.scd);
    return command.header.command == kWriteMem && write && m_firmware.IsSlow(write->address);
}

Device::Answer Device::Execute(const Packet& command, TimePoint now) {
    ++m_statistics.executed;
    switch (command.header.command) {
        case kReadMem:
            return ReadMemory(command, false, now);
        case kWriteMem:
            return WriteMemory(command, false, now);
        case kReadMemStacked:
            return m_options.stacked ? ReadMemory(command, true, now) : Answer{kStatusNotImplemented, {}};
        case kWriteMemStacked:
            return m_options.stacked ? WriteMemory(command, true, now) : Answer{kStatusNotImplemented, {}};
        default:
            return {kStatusNotImplemented, {}};
    }
}

Device::Answer Device::ReadMemory(const Packet& command, bool isStacked, TimePoint now) {
    const auto ranges = DecodeRanges(command.scd);
    if (!ranges || (!isStacked && ranges->size() != 1))
        return {kStatusInvalidParameter, {}};
    Answer answer;
    for (const MemoryRange& range : *ranges) {
        Bytes data;
        if (range.length == 0 || answer.scd.size() + range.length > kMaxReadData)
            return {kStatusInvalidParameter, {}};
        answer.status = ReadOne(range, data, now);
        if (IsError(answer.status))
            return {answer.status, {}};
        answer.scd.insert(answer.scd.end(), data.begin(), data.end());
    }
    return answer;
}

Device::Answer Device::WriteMemory(const Packet& command, bool isStacked, TimePoint now) {
    // A write with the first id could not be told from one that was sent again.
    if (command.header.requestId == kFirstRequestId)
        return {kStatusInvalidParameter, {}};
    std::vector<MemoryWrite> writes;
    if (auto decoded = DecodeStackedWrites(command.scd); isStacked && decoded) {
        writes = std::move(*decoded);
    } else if (auto single = DecodeWrite(command.scd); !isStacked && single) {
        writes.push_back(std::move(*single));
    } else {
        return {kStatusInvalidParameter, {}};
    }
    Answer answer;
    std::vector<std::uint16_t> lengths;
    for (const MemoryWrite& write : writes) {
        if (!IsError(answer.status))
            answer.status = WriteOne(write.address, write.data, now);
        lengths.push_back(static_cast<std::uint16_t>(IsError(answer.status) ? 0 : write.data.size()));
    }
    if (isStacked || m_options.writtenLength)
        answer.scd = EncodeWrittenLengths(lengths);
    return answer;
}

std::uint16_t Device::ReadOne(const MemoryRange& range, Bytes& data, TimePoint now) {
    const std::uint16_t refusal = RefusalOf(m_faults.refusedReads, range.address, range.length);
    return IsError(refusal) ? refusal : m_firmware.Read(range.address, range.length, data, now);
}

std::uint16_t Device::WriteOne(std::uint64_t address, ByteView data, TimePoint now) {
    const std::uint16_t refusal = RefusalOf(m_faults.refusedWrites, address, data.size());
    const std::uint16_t status = IsError(refusal) ? refusal : m_firmware.Write(address, data, now);
    if (!IsError(status))
        ++m_statistics.writes[address];
    return status;
}

void Device::SetRate(const BaudRate* rate) {
    m_rate = rate;
    m_firmware.SetBaudRateFlag(rate->flag);
}

void Device::ObeyLineRequest(TimePoint now) {
    const Firmware::LineRequest request = m_firmware.TakeLineRequest();
    if (request.isReset) {
        PowerOn(now);
        SetRate(&kStartBaudRate);
    } else if (request.isReleased) {
        m_trial.reset();
        SetRate(&kStartBaudRate);
    } else if (request.baudRateFlag == m_rate->flag) {
        m_trial.reset();  // the confirming write, or one that changes nothing
    } else if (request.baudRateFlag) {
        m_trial = Trial{m_trial ? m_trial->oldRate : m_rate, now + kConfirmTime};
        SetRate(FindBaudRateByFlag(*request.baudRateFlag));
    }
}

/**
 * \brief Do what is due
 */
void Device::OnTime(TimePoint now) {
    if (m_running && (now >= m_running->end || IsForeverOver())) {
        const Packet command = std::move(m_running->command);
        m_running.reset();
        Finish(command, now);
    } else if (m_running && now >= m_running->announced) {
        AnnouncePending(now);
    }
    if (m_trial && now >= m_trial->end) {
        SetRate(m_trial->oldRate);
        m_trial.reset();
    }
    const auto heartbeat = m_firmware.HeartbeatTimeout();
    if (heartbeat && now >= m_lastAccess + *heartbeat) {
        m_firmware.ReleaseControl();
        m_trial.reset();
        SetRate(&kStartBaudRate);
    }
}

/**
 * \brief Give the time at which OnTime has something to do if nothing comes before
 */
std::optional<TimePoint> Device::NextEvent() const {
    std::optional<TimePoint> next;
    const auto consider = [&next](TimePoint time) { next = next ? std::min(*next, time) : time; };
    if (m_running)
        consider(std::min(m_running->end, m_running->announced));
    if (m_trial)
        consider(m_trial->end);
    if (const auto heartbeat = m_firmware.HeartbeatTimeout())
        consider(m_lastAccess + *heartbeat);
    return next;
}

}  // namespace MarlowSim
