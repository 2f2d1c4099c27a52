/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The host's end of a simulated camera's line
 */

#include "Host.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <map>
#include <stdexcept>

#include "gencp/Memory.h"

namespace MarlowSimTest {

namespace fs = std::filesystem;
using gencp::Bytes;
using gencp::Packet;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

TemporaryFolder::TemporaryFolder() {
    std::string name = (fs::temp_directory_path() / "simulator.XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    m_path = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code error;
    fs::remove_all(m_path, error);
}

Host::Host(const fs::path& link, std::uint32_t bitsPerSecond)
    : m_tty(::open(link.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
    termios settings{};
    if (m_tty < 0 || ::tcgetattr(m_tty, &settings) != 0) {
        throw std::runtime_error("cannot open " + link.string());
    }
    ::cfmakeraw(&settings);
    ::tcsetattr(m_tty, TCSANOW, &settings);
    ::tcflush(m_tty, TCIOFLUSH);
    SetBaudRate(bitsPerSecond);
}

Host::~Host() {
    ::close(m_tty);
}

void Host::SetBaudRate(std::uint32_t bitsPerSecond) const {
    static const std::map<std::uint32_t, speed_t> codes{{9600, B9600},     {19200, B19200},   {38400, B38400},
                                                        {57600, B57600},   {115200, B115200}, {230400, B230400},
                                                        {460800, B460800}, {921600, B921600}};
    termios settings{};
    ::tcgetattr(m_tty, &settings);
    ::cfsetspeed(&settings, codes.at(bitsPerSecond));
    ::tcsetattr(m_tty, TCSANOW, &settings);
}

void Host::SendBytes(gencp::ByteView bytes) const {
    if (::write(m_tty, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
        throw std::runtime_error("the line takes no bytes");
    }
}

/// Waits for bytes and appends them; false at the deadline or when the line hangs up.
bool Host::Fill(steady_clock::time_point deadline, Bytes& bytes) const {
    const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
    pollfd file{m_tty, POLLIN, 0};
    if (::poll(&file, 1, static_cast<int>(std::max(left, milliseconds(0)).count())) != 1) {
        return false;
    }
    std::array<std::uint8_t, 4096> buffer;
    const ssize_t count = ::read(m_tty, buffer.data(), buffer.size());
    if (count <= 0) {
        return false;
    }
    bytes.insert(bytes.end(), buffer.begin(), buffer.begin() + count);
    return true;
}

std::optional<Packet> Host::Receive(milliseconds timeout) {
    const auto deadline = steady_clock::now() + timeout;
    for (;;) {
        if (auto packet = m_parser.Next()) {
            return packet;
        }
        Bytes bytes;
        if (!Fill(deadline, bytes)) {
            return std::nullopt;
        }
        m_parser.Append(bytes);
    }
}

Bytes Host::ReceiveBytes(std::size_t count, milliseconds timeout) {
    const auto deadline = steady_clock::now() + timeout;
    Bytes bytes;
    while (bytes.size() < count && Fill(deadline, bytes)) {
    }
    return bytes;
}

bool Host::HasHungUp() const {
    pollfd file{m_tty, POLLIN, 0};
    return ::poll(&file, 1, 0) == 1 && (file.revents & POLLHUP) != 0;
}

bool Host::WaitForHangUp() const {
    pollfd file{m_tty, 0, 0};
    return ::poll(&file, 1, 20000) == 1 && (file.revents & POLLHUP) != 0;
}

std::optional<Packet> Host::Exchange(std::uint16_t command, gencp::ByteView scd, milliseconds timeout) {
    id = gencp::NextRequestId(id);
    SendBytes(gencp::BuildCommand(command, id, scd));
    return Receive(timeout);
}

Bytes Host::Read(gencp::Register where) {
    const gencp::MemoryRange range{where.address, static_cast<std::uint16_t>(where.length)};
    const auto answer = Exchange(gencp::kReadMem, gencp::EncodeRanges({&range, 1}));
    if (!answer || answer->header.requestId != id || gencp::IsError(answer->header.flags)) {
        throw std::runtime_error("no answer to a read");
    }
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
    if (!answer || answer->header.requestId != id) {
        throw std::runtime_error("no answer to a write");
    }
    return answer->header.flags;
}

}  // namespace MarlowSimTest
