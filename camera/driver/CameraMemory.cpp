/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CameraMemory: the camera's register space, cut into exchanges that fit a packet and the time-out
 */

#include "CameraMemory.h"

#include <algorithm>
#include <utility>

#include "DriverError.h"

namespace marlow {

namespace {

// An exchange is cut so that it ends so long before its time-out.
constexpr std::chrono::milliseconds kBlockMargin{10};
constexpr std::chrono::seconds kLongestWork{30};      // of a write, such as saving a user set
constexpr std::chrono::milliseconds kLookMargin{30};  // silent rates and ports cost it
constexpr std::size_t kAlignment = 4;                 // of registers; devices may refuse blocks that cut one

constexpr std::size_t kReadOverhead = 2 * gencp::kHeaderSize + gencp::kRangeSize;
constexpr std::size_t kWriteOverhead = 2 * gencp::kHeaderSize + gencp::kAddressSize + gencp::kWrittenLengthSize;

std::string Describe(const char* verb, std::uint64_t address, std::size_t length) {
    return fmt::format("{} {} bytes at 0x{:X}", verb, length, address);
}

Command ReadCommand(const gencp::MemoryRange& range) {
    return {gencp::kReadMem, gencp::EncodeRanges(std::span(&range, 1)), range.length,
            Describe("reading", range.address, range.length)};
}

Command WriteCommand(std::uint64_t address, gencp::ByteView data) {
    return {gencp::kWriteMem, gencp::EncodeWrite(address, data), gencp::kWrittenLengthSize,
            Describe("writing", address, data.size())};
}

void CheckLength(gencp::ByteView answer, std::size_t expected, const std::string& operation) {
    if (answer.size() != expected)
        throw DriverError(kBadAcknowledge, fmt::format("The camera answered {} with {} bytes instead of {}.", operation,
                                                       answer.size(), expected));
}

// A write is acknowledged with nothing, or with the length written.
void CheckWritten(gencp::ByteView answer, std::uint64_t address, std::size_t expected) {
    if (answer.empty())
        return;
    const auto lengths = gencp::DecodeWrittenLengths(answer);
    if (!lengths || lengths->size() != 1)
        throw DriverError(kBadAcknowledge, fmt::format("The camera acknowledged {} with {} bytes.",
                                                       Describe("writing", address, expected), answer.size()));
    if (lengths->front() != expected)
        throw DriverError(kBadAcknowledge, fmt::format("The camera carried out {} for {} bytes only.",
                                                       Describe("writing", address, expected), lengths->front()));
}

}  // namespace

/// Time-out, response time and resends of a register access.
Timing CameraMemory::UsualTiming() const {
    Timing timing;
    timing.limit = m_limit;
    timing.response = m_response;
    return timing;
}

/// For one look whether a camera is there: one that is answers a read of its response time within 50 ms (GenCP).
Timing CameraMemory::LookTiming() const {
    Timing timing;
    timing.limit = m_limit;
    timing.response = std::chrono::milliseconds(gencp::kFirstReadTimeoutMs);
    timing.margin = kLookMargin;
    timing.resends = 0;
    return timing;
}

/**
 * \brief Read consecutive bytes
 * \param[in] address Address of the first byte
 * \param[out] data Filled in full, or undefined after an exception
 *
 * \throw DriverError As Exchanger::Run; kBadAcknowledge when an answer has another length
 */
void CameraMemory::Read(std::uint64_t address, std::span<std::uint8_t> data) {
    while (!data.empty()) {
        const std::size_t size = std::min(data.size(), DataPerExchange(kReadOverhead, gencp::kMaxReadData));
        const auto answer = ReadOnce({address, static_cast<std::uint16_t>(size)}, UsualTiming());
        std::ranges::copy(answer, data.begin());
        data = data.subspan(size);
        address += size;
    }
}

/// All bytes of one register.
gencp::Bytes CameraMemory::Read(const gencp::Register& reg) {
    gencp::Bytes data(reg.length);
    Read(reg.address, data);
    return data;
}

/// One exchange, whatever its length and time.
gencp::Bytes CameraMemory::ReadOnce(const gencp::MemoryRange& range, const Timing& timing) {
    CheckNothingPends();
    auto command = ReadCommand(range);
    const std::string operation = command.operation;
    auto answer = m_exchanger.Run(std::move(command), timing);
    CheckLength(answer, range.length, operation);
    return answer;
}

/**
 * \brief Read several ranges, together where the device can
 * \param[in] ranges Each at most gencp::kMaxReadData bytes
 *
 * \return One block per range, in order
 */
std::vector<gencp::Bytes> CameraMemory::ReadAll(std::span<const gencp::MemoryRange> ranges) {
    std::vector<gencp::Bytes> blocks;
    while (blocks.size() < ranges.size()) {
        const auto rest = ranges.subspan(blocks.size());
        const std::size_t count = m_canStack ? StackFrom(rest) : 1;
        if (count < 2) {
            gencp::Bytes block(rest.front().length);
            Read(rest.front().address, block);
            blocks.push_back(std::move(block));
            continue;
        }
        try {
            std::ranges::move(ReadStackOnce(rest.first(count), UsualTiming()), std::back_inserter(blocks));
        } catch (const StatusError& error) {
            if (error.Status() != gencp::kStatusNotImplemented)
                throw;
            m_canStack = false;
        }
    }
    return blocks;
}

// How many of the ranges fit one exchange.
std::size_t CameraMemory::StackFrom(std::span<const gencp::MemoryRange> ranges) const {
    std::size_t count = 0;
    std::size_t data = 0;
    while (count < std::min(ranges.size(), gencp::kMaxRanges)) {
        data += ranges[count].length;
        const std::size_t overhead = 2 * gencp::kHeaderSize + (count + 1) * gencp::kRangeSize;
        if (data > DataPerExchange(overhead, gencp::kMaxReadData))
            break;
        ++count;
    }
    return count;
}

/// One exchange for several ranges, which must fit it, of a device that can do that.
std::vector<gencp::Bytes> CameraMemory::ReadStackOnce(std::span<const gencp::MemoryRange> ranges,
                                                      const Timing& timing) {
    CheckNothingPends();
    std::size_t total = 0;
    for (const auto& range : ranges)
        total += range.length;
    const std::string operation = fmt::format("reading {} ranges from 0x{:X}", ranges.size(), ranges.front().address);
    const auto answer =
        m_exchanger.Run({gencp::kReadMemStacked, gencp::EncodeRanges(ranges), total, operation}, timing);
    CheckLength(answer, total, operation);
    std::vector<gencp::Bytes> blocks;
    auto at = answer.begin();
    for (const auto& range : ranges) {
        blocks.emplace_back(at, at + range.length);
        at += range.length;
    }
    return blocks;
}

/**
 * \brief Write consecutive bytes
 * \param[in] address Address of the first byte
 * \param[in] data What to write
 *
 * \return False when the device calls the write pending at the time-out: ContinueWrite or AbandonWrite it
 * \throw DriverError As Exchanger::Run; a part of the data may have been written
 */
bool CameraMemory::Write(std::uint64_t address, gencp::ByteView data) {
    CheckNothingPends();
    m_writeAddress = address;
    m_writeRest.assign(data.begin(), data.end());
    return WriteRest();
}

/**
 * \brief Wait on for a pending write, and write what follows it
 *
 * \return False when it is still pending
 * \throw DriverError kNoWritePending; else as Write
 */
bool CameraMemory::ContinueWrite() {
    if (!m_exchanger.IsInFlight())
        throw DriverError(kNoWritePending, "No write is pending on this connection.");
    const auto answer = m_exchanger.Continue(m_line.GetClock().Now() + m_limit);
    if (!answer)
        return false;
    CheckWritten(*answer, m_writeAddress, m_writeInFlight);
    m_writeAddress += m_writeInFlight;
    m_writeRest.erase(m_writeRest.begin(), m_writeRest.begin() + static_cast<std::ptrdiff_t>(m_writeInFlight));
    return WriteRest();
}

/// Wait no longer for a pending write; its acknowledge will be dropped.
void CameraMemory::AbandonWrite() {
    m_exchanger.Abandon();
    m_writeRest.clear();
}

bool CameraMemory::WriteRest() {
    std::size_t done = 0;
    while (done < m_writeRest.size()) {
        const auto rest = gencp::ByteView(m_writeRest).subspan(done);
        m_writeInFlight = std::min(rest.size(), DataPerExchange(kWriteOverhead, gencp::kMaxWriteData));
        auto timing = UsualTiming();
        timing.pending = kLongestWork;
        const auto answer = m_exchanger.Start(WriteCommand(m_writeAddress, rest.first(m_writeInFlight)), timing,
                                              m_line.GetClock().Now() + m_limit);
        if (!answer) {
            m_writeRest.erase(m_writeRest.begin(), m_writeRest.begin() + static_cast<std::ptrdiff_t>(done));
            return false;
        }
        CheckWritten(*answer, m_writeAddress, m_writeInFlight);
        m_writeAddress += m_writeInFlight;
        done += m_writeInFlight;
    }
    m_writeRest.clear();
    return true;
}

/// One exchange that is waited for until it ends, pending or not.
void CameraMemory::WriteOnce(std::uint64_t address, gencp::ByteView data, const Timing& timing) {
    CheckNothingPends();
    CheckWritten(m_exchanger.Run(WriteCommand(address, data), timing), address, data.size());
}

// The most data whose exchange ends within the time-out at the present rate, in whole registers.
std::size_t CameraMemory::DataPerExchange(std::size_t overhead, std::size_t most) const {
    const auto budget = std::chrono::duration_cast<std::chrono::microseconds>(m_limit - m_response - kBlockMargin);
    const auto usable = static_cast<std::uint64_t>(std::max<std::int64_t>(budget.count(), 0));
    const std::uint64_t onLine =
        usable * m_line.Rate().bitsPerSecond / (gencp::kBitsPerByte * std::uint64_t{1'000'000});
    const std::uint64_t fits = onLine > overhead ? onLine - overhead : 0;
    const auto data = static_cast<std::size_t>(std::clamp<std::uint64_t>(fits, kAlignment, most));
    return data - data % kAlignment;
}

/// \throw DriverError kWriteStillPending: GenCP allows one command at a time
void CameraMemory::CheckNothingPends() const {
    if (m_exchanger.IsInFlight())
        throw DriverError(kWriteStillPending, "A write is still pending on this connection.");
}

}  // namespace marlow
