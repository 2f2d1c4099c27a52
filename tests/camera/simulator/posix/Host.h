/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The host's end of a simulated camera's line
 */
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "gencp/Packet.h"
#include "gencp/Registers.h"
#include "gencp/StreamParser.h"

namespace MarlowSimTest {

/// A folder of its own for each test, gone afterwards.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

class Host {
public:
    explicit Host(const std::filesystem::path& link, std::uint32_t bitsPerSecond = 9600);
    ~Host();
    Host(const Host&) = delete;

    void SetBaudRate(std::uint32_t bitsPerSecond) const;
    void SendBytes(gencp::ByteView bytes) const;
    /// The next whole packet; nothing after the time or when the line hangs up.
    std::optional<gencp::Packet> Receive(std::chrono::milliseconds timeout = std::chrono::seconds(20));
    /// Bytes as they come, until there are so many or the time is over.
    gencp::Bytes ReceiveBytes(std::size_t count, std::chrono::milliseconds timeout);
    bool HasHungUp() const;
    /// Waits until the line hangs up; false when it does not.
    bool WaitForHangUp() const;

    /// One command and its acknowledge, with the next request id.
    std::optional<gencp::Packet> Exchange(std::uint16_t command, gencp::ByteView scd,
                                          std::chrono::milliseconds timeout = std::chrono::seconds(20));
    gencp::Bytes Read(gencp::Register where);
    std::uint32_t Number(gencp::Register where);
    std::uint16_t Write(gencp::Register where, std::uint64_t value);

    std::uint16_t id = 0;

private:
    bool Fill(std::chrono::steady_clock::time_point deadline, gencp::Bytes& bytes) const;

    int m_tty;
    gencp::StreamParser m_parser;
};

}  // namespace MarlowSimTest
