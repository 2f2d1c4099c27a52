/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A line that marlow-lines lends
 */
#pragma once

#include <string>

#include "line/Line.h"
#include "line/LineMessage.h"
#include "line/windows/Socket.h"

namespace MarlowSim {

/// The entry by which the machine's programs find a COM port, as long as this lives.
class PortEntry {
public:
    explicit PortEntry(const std::string& name);
    ~PortEntry();
    PortEntry(const PortEntry&) = delete;
    PortEntry& operator=(const PortEntry&) = delete;

private:
    const std::string m_device;
};

class BorrowedLine final : public Line {
public:
    explicit BorrowedLine(const std::string& name);
    ~BorrowedLine() override;
    BorrowedLine(const BorrowedLine&) = delete;
    BorrowedLine& operator=(const BorrowedLine&) = delete;

    std::size_t Receive(std::span<std::uint8_t> buffer) override;
    void Send(gencp::ByteView bytes) override;
    std::uint32_t HostBitsPerSecond() const override;
    bool IsRead() const override;
    int Handle() const override { return static_cast<int>(m_socket.Get()); }

    /// Whether bytes came with an answer: nobody who waits for the socket is told of them.
    bool HasBytes() const { return !m_fromHost.empty(); }

private:
    void Connect() const;
    LineMessage Ask(const gencp::Bytes& question) const;
    bool TakeWhatCame() const;
    bool SendAll(gencp::ByteView bytes) const;

    Socket m_socket{SOCK_STREAM};
    mutable gencp::Bytes m_received;
    mutable gencp::Bytes m_fromHost;
    mutable std::optional<LineMessage> m_answer;
    std::optional<PortEntry> m_entry;
};

}  // namespace MarlowSim
