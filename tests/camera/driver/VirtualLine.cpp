/* SPDX-License-Identifier: Apache-2.0 */
/*
 * VirtualLine: the host's side of a line in virtual time, with a camera at its other end
 */

#include "VirtualLine.h"

#include <algorithm>

#include "clser/ClSerial.h"

namespace marlow::test {

CLINT32 VirtualLine::clSerialRead(CLINT8* buffer, CLUINT32* size, CLUINT32 timeoutMs) {
    ++reads;
    readSizes.push_back(*size);
    longestRead = std::max(longestRead, timeoutMs);
    if (onRead)
        onRead(timeoutMs);
    if (readCode)
        return *readCode;
    if (claimsTooMuch) {
        *size += 1;
        return 0;
    }
    const Time limit = m_clock.Now() + std::chrono::milliseconds(timeoutMs);
    if (noise)
        return ReadNoise(buffer, *size, limit);
    const std::size_t wanted = std::min<std::size_t>(*size, mostPerCall);
    const bool isThere = m_bytes.size() >= wanted && m_bytes[wanted - 1].arrival <= limit;
    if (ignoresTimeouts && !(m_bytes.size() >= wanted && m_bytes[wanted - 1].arrival <= m_clock.Now())) {
        *size = 0;
        return 0;
    }
    if (!isThere) {
        m_clock.AdvanceTo(limit);
        return CL_ERR_TIMEOUT;
    }
    m_clock.AdvanceTo(m_bytes[wanted - 1].arrival);
    for (std::size_t i = 0; i < wanted; ++i) {
        const auto [value, arrival, rateFlag] = m_bytes.front();
        m_bytes.pop_front();
        buffer[i] = static_cast<CLINT8>(rateFlag == m_rate ? value : value ^ 0xA5);
    }
    *size = static_cast<CLUINT32>(wanted);
    return 0;
}

// Each byte takes its time on the line, and those that nobody reads wait.
CLINT32 VirtualLine::ReadNoise(CLINT8* buffer, CLUINT32 size, Time limit) {
    const Time end = m_noiseFrom + gencp::TransferTime(size, gencp::FindBaudRateByFlag(m_rate)->bitsPerSecond);
    m_clock.AdvanceTo(std::min(end, limit));
    if (end > limit)
        return CL_ERR_TIMEOUT;
    m_noiseFrom = end;
    std::generate_n(buffer, size, [this] { return static_cast<CLINT8>(noise()); });
    return 0;
}

CLINT32 VirtualLine::clSerialWrite(CLINT8* buffer, CLUINT32* size, CLUINT32 timeoutMs) {
    longestWrite = std::max(longestWrite, timeoutMs);
    if (writeCode)
        return *writeCode;
    if (claimsTooMuch) {
        *size += 1;
        return 0;
    }
    if (takes && *size > *takes) {
        m_packet.insert(m_packet.end(), buffer, buffer + *takes);
        *size = static_cast<CLUINT32>(*takes);
        return CL_ERR_TIMEOUT;
    }
    const std::size_t count = std::min<std::size_t>(*size, mostPerCall);
    m_packet.insert(m_packet.end(), buffer, buffer + count);
    *size = static_cast<CLUINT32>(count);
    const auto header = gencp::ParseHeader(m_packet);
    if (!header || m_packet.size() < header->PacketSize())
        return 0;
    const auto& rate = *gencp::FindBaudRateByFlag(m_rate);
    const Time end = m_clock.Now() + gencp::TransferTime(m_packet.size(), rate.bitsPerSecond);
    for (const auto& sent : m_camera.Take(std::move(m_packet), m_rate, end)) {
        const auto& sentRate = *gencp::FindBaudRateByFlag(sent.rateFlag);
        const Time begin = std::max(sent.begin, m_freeFrom);
        for (std::size_t i = 0; i < sent.bytes.size(); ++i)
            m_bytes.push_back(
                {sent.bytes[i], begin + gencp::TransferTime(i + 1, sentRate.bitsPerSecond), sent.rateFlag});
        m_freeFrom = m_bytes.back().arrival;
    }
    m_packet.clear();
    return 0;
}

CLINT32 VirtualLine::clGetSupportedBaudRates(CLUINT32* mask) {
    *mask = supported;
    return supportedCode;
}

CLINT32 VirtualLine::clSetBaudRate(CLUINT32 flag) {
    if (((flag & refusedRates) != 0) || (flag & supported) == 0)
        return CL_ERR_BAUD_RATE_NOT_SUPPORTED;
    ratesSet.push_back(flag);
    m_rate = flag;
    return 0;
}

/// Bytes that wait before anything that the camera will send.
void VirtualLine::AddStray(const Bytes& bytes) {
    for (const auto byte : bytes)
        m_bytes.push_back({byte, m_clock.Now(), m_rate});
}

}  // namespace marlow::test
