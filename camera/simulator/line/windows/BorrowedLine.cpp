/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A line that marlow-lines lends
 */

#include "line/windows/BorrowedLine.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <cstring>

namespace MarlowSim {

namespace {

constexpr char kPorts[] = R"(HARDWARE\DEVICEMAP\SERIALCOMM)";
constexpr char kVariable[] = "MARLOW_LINES";
constexpr DWORD kLongestWait = 30'000;  // ms

std::uint16_t ServerPort() {
    const char* const text = std::getenv(kVariable);
    std::uint16_t port = 0;
    if (text == nullptr || std::from_chars(text, text + std::strlen(text), port).ec != std::errc()) {
        throw std::system_error(ENODEV, std::generic_category(),
                                std::string(kVariable) + " names no port of marlow-lines");
    }
    return port;
}

}  // namespace

PortEntry::PortEntry(const std::string& name) : m_device("\\Device\\" + name) {
    const LSTATUS status = ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, kPorts, m_device.c_str(), REG_SZ, name.c_str(),
                                             static_cast<DWORD>(name.size() + 1));
    if (status != ERROR_SUCCESS)
        throw std::system_error(status, std::system_category(), "entry of " + name);
}

PortEntry::~PortEntry() {
    ::RegDeleteKeyValueA(HKEY_LOCAL_MACHINE, kPorts, m_device.c_str());
}

BorrowedLine::BorrowedLine(const std::string& name) {
    Connect();
    const std::string reason = Ask(EncodeText(LineMessageType::kOpen, name)).Text();
    if (!reason.empty())
        throw std::system_error(EIO, std::generic_category(), reason);
    m_entry.emplace(name);
}

/// Comes back when the line has hung up and its link has gone.
BorrowedLine::~BorrowedLine() {
    m_entry.reset();
    try {
        Ask(Encode(LineMessageType::kClose));
    } catch (const std::exception&) {
        // Who lent the line is gone, and the line with it.
    }
}

void BorrowedLine::Connect() const {
    const sockaddr_in address = Loopback(ServerPort());
    if (::connect(m_socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0)
        ThrowSocketError("connection to marlow-lines");
    const BOOL on = TRUE;
    ::setsockopt(m_socket.Get(), IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof(on));
    ::setsockopt(m_socket.Get(), SOL_SOCKET, SO_SNDTIMEO, reinterpret_cast<const char*>(&kLongestWait),
                 sizeof(kLongestWait));
    ::setsockopt(m_socket.Get(), SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&kLongestWait),
                 sizeof(kLongestWait));
}

/// Waits for something to come; false when nothing will.
bool BorrowedLine::TakeWhatCame() const {
    std::array<char, 4096> buffer;
    const int count = ::recv(m_socket.Get(), buffer.data(), static_cast<int>(buffer.size()), 0);
    if (count <= 0)
        return false;
    m_received.insert(m_received.end(), buffer.begin(), buffer.begin() + count);
    while (auto message = TakeLineMessage(m_received)) {
        if (message->type == LineMessageType::kBytes) {
            m_fromHost.insert(m_fromHost.end(), message->content.begin(), message->content.end());
        } else {
            m_answer = std::move(message);
        }
    }
    return true;
}

bool BorrowedLine::SendAll(gencp::ByteView bytes) const {
    while (!bytes.empty()) {
        const int count =
            ::send(m_socket.Get(), reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()), 0);
        if (count <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

LineMessage BorrowedLine::Ask(const gencp::Bytes& question) const {
    m_answer.reset();
    bool isThere = SendAll(question);
    while (isThere && !m_answer)
        isThere = TakeWhatCame();
    if (!isThere)
        ThrowSocketError("answer of marlow-lines");
    return std::move(*m_answer);
}

std::size_t BorrowedLine::Receive(std::span<std::uint8_t> buffer) {
    u_long waiting = 0;
    while (::ioctlsocket(m_socket.Get(), static_cast<long>(FIONREAD), &waiting) == 0 && waiting > 0 && TakeWhatCame()) {
    }
    const std::size_t count = std::min(buffer.size(), m_fromHost.size());
    const auto end = m_fromHost.begin() + static_cast<std::ptrdiff_t>(count);
    std::copy(m_fromHost.begin(), end, buffer.begin());
    m_fromHost.erase(m_fromHost.begin(), end);
    return count;
}

void BorrowedLine::Send(gencp::ByteView bytes) {
    SendAll(Encode(LineMessageType::kBytes, bytes));
}

std::uint32_t BorrowedLine::HostBitsPerSecond() const {
    return Ask(Encode(LineMessageType::kHostRate)).Number();
}

bool BorrowedLine::IsRead() const {
    return Ask(Encode(LineMessageType::kIsRead)).Number() != 0;
}

/**
 * \brief Borrow a line
 * \param[in] link Its last part is the name of the line, and of the COM port
 */
std::unique_ptr<Line> Line::Create(const std::filesystem::path& link) {
    return std::make_unique<BorrowedLine>(link.filename().string());
}

}  // namespace MarlowSim
