/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The host's end of a simulated camera's line
 */
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "HostPort.h"
#include "gencp/Packet.h"
#include "gencp/Registers.h"
#include "gencp/StreamParser.h"

namespace MarlowSimTest {

class Host {
public:
    explicit Host(const std::filesystem::path& link, std::uint32_t bitsPerSecond = 9600);

    void SetBaudRate(std::uint32_t bitsPerSecond) const { m_port->SetBaudRate(bitsPerSecond); }
    void SendBytes(gencp::ByteView bytes) const { m_port->SendBytes(bytes); }
    /// The next whole packet; nothing after the time or when the line hangs up.
    std::optional<gencp::Packet> Receive(std::chrono::milliseconds timeout = std::chrono::seconds(20));
    /// Bytes as they come, until there are so many or the time is over.
    gencp::Bytes ReceiveBytes(std::size_t count, std::chrono::milliseconds timeout);
    bool HasHungUp() const { return m_port->HasHungUp(); }
    bool WaitForHangUp() const { return m_port->WaitForHangUp(); }

    /// One command and its acknowledge, with the next request id.
    std::optional<gencp::Packet> Exchange(std::uint16_t command, gencp::ByteView scd,
                                          std::chrono::milliseconds timeout = std::chrono::seconds(20));
    gencp::Bytes Read(gencp::Register where);
    std::uint32_t Number(gencp::Register where);
    std::uint16_t Write(gencp::Register where, std::uint64_t value);

    std::uint16_t id = 0;

private:
    std::unique_ptr<HostPort> m_port;
    gencp::StreamParser m_parser;
};

}  // namespace MarlowSimTest
