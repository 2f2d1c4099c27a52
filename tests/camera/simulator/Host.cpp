/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The host's end of a simulated camera's line
 */

#include "Host.h"

#include <stdexcept>

#include "gencp/Memory.h"

namespace MarlowSimTest {

using gencp::Bytes;
using gencp::Packet;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

Host::Host(const std::filesystem::path& link, std::uint32_t bitsPerSecond) : m_port(HostPort::Open(link)) {
    SetBaudRate(bitsPerSecond);
}

std::optional<Packet> Host::Receive(milliseconds timeout) {
    const auto deadline = steady_clock::now() + timeout;
    for (;;) {
        if (auto packet = m_parser.Next())
            return packet;
        Bytes bytes;
        if (!m_port->Fill(deadline, bytes))
            return std::nullopt;
        m_parser.Append(bytes);
    }
}

Bytes Host::ReceiveBytes(std::size_t count, milliseconds timeout) {
    const auto deadline = steady_clock::now() + timeout;
    Bytes bytes;
    while (bytes.size() < count && m_port->Fill(deadline, bytes)) {
    }
    return bytes;
}

std::optional<Packet> Host::Exchange(std::uint16_t command, gencp::ByteView scd, milliseconds timeout) {
    id = gencp::NextRequestId(id);
    SendBytes(gencp::BuildCommand(command, id, scd));
    return Receive(timeout);
}

Bytes Host::Read(gencp::Register where) {
    const gencp::MemoryRange range{where.address, static_cast<std::uint16_t>(where.length)};
    const auto answer = Exchange(gencp::kReadMem, gencp::EncodeRanges({&range, 1}));
    if (!answer || answer->header.requestId != id || gencp::IsError(answer->header.flags))
        throw std::runtime_error("no answer to a read");
    return answer->scd;
}

std::uint32_t Host::Number(gencp::Register where) {
    return gencp::Load32(Read(where), 0);
}

std::uint16_t Host::Write(gencp::Register where, std::uint64_t value) {
    Bytes data(8);
    gencp::Store64(data, 0, value);
    data.erase(data.begin(), data.end() - static_cast<std::ptrdiff_t>(where.length));
    const auto answer = Exchange(gencp::kWriteMem, gencp::EncodeWrite(where.address, data));
    if (!answer || answer->header.requestId != id)
        throw std::runtime_error("no answer to a write");
    return answer->header.flags;
}

}  // namespace MarlowSimTest
