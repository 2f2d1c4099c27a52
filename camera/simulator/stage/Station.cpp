/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera, its faults and its line together, in time
 */

#include "stage/Station.h"

#include <algorithm>
#include <array>

#include "gencp/BaudRate.h"
#include "gencp/Protocol.h"

namespace MarlowSim {

namespace {

using gencp::Bytes;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

constexpr milliseconds kPartialMargin{50};  // beyond the transfer time of a packet that does not become whole
constexpr milliseconds kChunkTime{4};       // of bytes that are handed to the host together
constexpr milliseconds kPullTime{200};      // for the host to read the last bytes before the cable is out
constexpr milliseconds kPullStep{1};

/// How many whole bytes a line carries in a time, at most \a size.
std::size_t BytesIn(nanoseconds time, std::uint32_t bitsPerSecond, std::size_t size) {
    // Time and size of a packet are rounded apart: its end is where the transfer time says.
    if (time >= gencp::TransferTime(size, bitsPerSecond))
        return size;
    const double bytes = std::chrono::duration<double>(time).count() * bitsPerSecond / gencp::kBitsPerByte;
    return std::min(size, static_cast<std::size_t>(std::max(bytes, 0.0)));
}

std::optional<TimePoint> Earlier(std::optional<TimePoint> left, std::optional<TimePoint> right) {
    return !left ? right : !right ? left : std::min(*left, *right);
}

}  // namespace

Station::Station(std::filesystem::path link, const CameraOptions& options, TimePoint now)
    : m_link(std::move(link)),
      m_options(options),
      m_chance(options.seed),
      m_device(std::make_unique<Device>(m_options, m_options.faults, m_statistics, now)),
      m_line(Line::Create(m_link)) {}

/**
 * \brief Do all that is due
 */
void Station::Advance(TimePoint now) {
    if (m_pullEnd && m_line && (m_line->IsRead() || now >= *m_pullEnd))
        Unplug();
    if (!m_line || m_pullEnd)
        return;
    EndCountdowns(now);
    // What the host wrote in time counts as in time, however late this thread runs: so it comes first.
    TakeFromLine(now);
    GiveUpPartial(now);
    m_device->OnTime(now);
    CollectFromCamera();
    SendToHost(now);
    SendNoise(now);
}

/// A countdown that was set to 0 has nothing to wait for.
void Station::EndCountdowns(TimePoint now) {
    FaultSettings& faults = m_options.faults;
    FaultSource::Fate fate;
    fate.silencesNow = faults.silentAfter == 0U;
    fate.isLast = faults.dropAfter == 0U;
    if (fate.silencesNow)
        faults.silentAfter.reset();
    if (fate.isLast)
        faults.dropAfter.reset();
    Obey(fate, now);
}

/**
 * \brief Give the time at which Advance has something to do if nothing comes before
 */
std::optional<TimePoint> Station::NextEvent() const {
    if (!m_line)
        return std::nullopt;
    if (m_pullEnd)
        return Clock::now() + kPullStep;
    std::optional<TimePoint> next = Earlier(m_device->NextEvent(), m_partialEnd);
    if (m_noiseEnd)
        next = Earlier(next, *m_noiseEnd + kChunkTime);
    if (!m_leaving.empty()) {
        const Leaving& front = m_leaving.front();
        next = Earlier(next, front.start ? NextChunk(front) : std::max(front.outgoing.ready, m_outputFree));
    }
    return next;
}

TimePoint Station::NextChunk(const Leaving& leaving) {
    const std::size_t step =
        std::max<std::size_t>(1, BytesIn(kChunkTime, leaving.bitsPerSecond, gencp::kMaxPacketSize));
    const std::size_t end = std::min(leaving.outgoing.packet.size(), leaving.sent + step);
    return *leaving.start + gencp::TransferTime(end, leaving.bitsPerSecond);
}

/// Bytes are handed on at once, with the time at which a real line would have carried them: the camera counts from that
/// one, so nothing is lost to a thread that wakes late.
void Station::TakeFromLine(TimePoint now) {
    std::array<std::uint8_t, 4096> buffer;
    while (const std::size_t count = m_line->Receive(buffer)) {
        m_statistics.bytesIn += count;
        const std::uint32_t hostRate = m_line->HostBitsPerSecond();
        const std::uint32_t ownRate = m_device->BitsPerSecond();
        const std::uint32_t lineRate = hostRate == 0 ? ownRate : hostRate;
        m_statistics.lineTime += gencp::TransferTime(count, lineRate);
        m_inputFree = m_options.paced ? std::max(m_inputFree, now) + gencp::TransferTime(count, lineRate) : now;
        if (m_options.faults.silent)
            continue;
        if (IsCarried(hostRate)) {
            m_parser.Append(gencp::ByteView(buffer).first(count));
        } else {
            m_statistics.noiseBytes += count;
            m_parser.Append(m_chance.Noise(std::max<std::size_t>(1, count * ownRate / lineRate)));
        }
        HandleParsed(m_inputFree);
    }
}

void Station::GiveUpPartial(TimePoint now) {
    if (!m_partialEnd || now < *m_partialEnd)
        return;
    while (m_parser.IsInsidePacket()) {
        m_partialBegin.reset();
        m_parser.GiveUpPartial();
        HandleParsed(now);
    }
}

void Station::HandleParsed(TimePoint at) {
    while (const auto packet = m_parser.Next()) {
        m_partialBegin.reset();
        HandleCommand(*packet, at);
    }
    WatchPartial(at);
}

/// A packet has its own transfer time to become whole; until its header is there, its beginning has that of a header.
void Station::WatchPartial(TimePoint at) {
    if (!m_parser.IsInsidePacket()) {
        m_partialBegin.reset();
        m_partialEnd.reset();
        return;
    }
    m_partialBegin = m_partialBegin.value_or(at);
    const auto header = m_parser.PartialHeader();
    const std::size_t size = header ? header->PacketSize() : gencp::kHeaderSize;
    m_partialEnd = *m_partialBegin + gencp::TransferTime(size, m_device->BitsPerSecond()) + kPartialMargin;
}

void Station::HandleCommand(const gencp::Packet& packet, TimePoint at) {
    if (m_pullEnd)
        return;
    ++m_statistics.packetsIn;
    const FaultSource::Fate fate = m_chance.Next(m_options.faults);
    if (fate.isLost || fate.isDamaged) {
        ++(fate.isLost ? m_statistics.lost : m_statistics.damaged);
    } else {
        m_device->Receive(packet, at);
        if (fate.isRepeated) {
            ++m_statistics.repeated;
            m_device->Receive(packet, at);
        }
    }
    Obey(fate, at);
}

/// What ends the camera's part: nothing of it goes out any more.
void Station::Obey(const FaultSource::Fate& fate, TimePoint now) {
    if (fate.silencesNow)
        m_options.faults.silent = true;
    if (fate.isLast) {
        m_pullEnd = now + kPullTime;
        m_leaving.clear();
    }
}

void Station::CollectFromCamera() {
    while (auto outgoing = m_device->TakeOutgoing()) {
        if (!m_pullEnd)
            Enqueue(std::move(*outgoing), m_chance.Next(m_options.faults));
    }
}

void Station::Enqueue(Device::Outgoing outgoing, const FaultSource::Fate& fate) {
    Leaving leaving;
    leaving.outgoing = std::move(outgoing);
    leaving.isCarried = !fate.isLost && !m_options.faults.silent && !m_options.faults.noise;
    if (fate.isLate)
        leaving.outgoing.ready += m_options.faults.lateTime;
    if (fate.isLost) {
        ++m_statistics.lost;
    } else if (fate.isDamaged) {
        ++m_statistics.damaged;
        leaving.outgoing.packet = m_chance.Damage(std::move(leaving.outgoing.packet));
    } else if (m_options.faults.nonsense) {
        leaving.outgoing.packet = m_chance.Noise(leaving.outgoing.packet.size());
    }
    leaving.isLast = fate.isLast;
    m_leaving.push_back(leaving);
    if (fate.isRepeated) {
        ++m_statistics.repeated;
        leaving.isOwn = false;
        m_leaving.push_back(std::move(leaving));
    }
    if (fate.silencesNow)
        m_options.faults.silent = true;
}

void Station::SendToHost(TimePoint now) {
    while (!m_leaving.empty() && Progress(m_leaving.front(), now)) {
        const Leaving done = std::move(m_leaving.front());
        m_leaving.pop_front();
        if (done.isOwn)
            m_device->HasSent(done.outgoing, m_outputFree);
        FaultSource::Fate fate;
        fate.isLast = done.isLast;
        Obey(fate, now);
    }
}

/// As much as the line carries, whether it is paced or not.
void Station::SendNoise(TimePoint now) {
    if (!m_options.faults.noise || !m_line) {
        m_noiseEnd.reset();
        return;
    }
    m_noiseEnd = m_noiseEnd.value_or(now);
    const std::uint32_t rate = m_device->BitsPerSecond();
    const std::size_t count = BytesIn(now - *m_noiseEnd, rate, gencp::kMaxPacketSize);
    m_line->Send(m_chance.Noise(count));
    m_statistics.noiseBytes += count;
    *m_noiseEnd += gencp::TransferTime(count, rate);
}

/// Sends what is due of a packet; true when all of it has gone.
bool Station::Progress(Leaving& leaving, TimePoint now) {
    if (!leaving.start) {
        const TimePoint start = std::max(leaving.outgoing.ready, m_outputFree);
        if (start > now)
            return false;
        leaving.start = start;
        leaving.bitsPerSecond = m_device->BitsPerSecond();
    }
    const std::size_t size = leaving.outgoing.packet.size();
    const std::size_t due = m_options.paced ? BytesIn(now - *leaving.start, leaving.bitsPerSecond, size) : size;
    Carry(leaving, leaving.sent, due);
    leaving.sent = due;
    if (due < size)
        return false;
    m_outputFree = m_options.paced ? *leaving.start + gencp::TransferTime(size, leaving.bitsPerSecond) : now;
    return true;
}

void Station::Carry(const Leaving& leaving, std::size_t begin, std::size_t end) {
    if (!leaving.isCarried || begin == end)
        return;
    const auto bytes = gencp::ByteView(leaving.outgoing.packet).subspan(begin, end - begin);
    m_statistics.bytesOut += bytes.size();
    m_statistics.lineTime += gencp::TransferTime(bytes.size(), m_device->BitsPerSecond());
    if (IsCarried(m_line->HostBitsPerSecond())) {
        m_line->Send(bytes);
    } else {
        m_statistics.noiseBytes += bytes.size();
        m_line->Send(m_chance.Noise(bytes.size()));
    }
}

/// Whether the other end gets bytes as they were sent.
bool Station::IsCarried(std::uint32_t hostRate) const {
    const std::uint32_t limit = m_options.faults.lineLimit;
    return hostRate == m_device->BitsPerSecond() && (limit == 0 || hostRate <= limit);
}

void Station::ClearLine() {
    m_parser.Clear();
    m_leaving.clear();
    m_partialBegin.reset();
    m_partialEnd.reset();
    m_pullEnd.reset();
    m_inputFree = {};
    m_outputFree = {};
}

/**
 * \brief Put the cable in: a new line under the same link
 * \throw std::system_error As Line::Create
 */
void Station::Plug(Power power, TimePoint now) {
    if (m_line)
        return;
    ClearLine();
    m_line = Line::Create(m_link);
    if (power == Power::kLost)
        m_device->PowerOn(now);
}

/**
 * \brief Pull the cable: the line hangs up and its link goes
 */
void Station::Unplug() {
    ClearLine();
    m_line.reset();
}

/**
 * \brief Put another camera at the end of the cable
 */
void Station::Exchange(const CameraOptions& options, TimePoint now) {
    CameraOptions next = options;
    auto device = std::make_unique<Device>(next, m_options.faults, m_statistics, now);
    m_options = std::move(next);
    m_device = std::move(device);
    m_chance = FaultSource(m_options.seed);
    ClearLine();
}

}  // namespace MarlowSim
