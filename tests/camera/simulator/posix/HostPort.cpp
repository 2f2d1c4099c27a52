/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The host's serial port: a pseudo-terminal
 */

#include "../HostPort.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <map>
#include <stdexcept>

namespace MarlowSimTest {

namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

class Tty final : public HostPort {
public:
    explicit Tty(const fs::path& link) : m_tty(::open(link.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
        termios settings{};
        if (m_tty < 0 || ::tcgetattr(m_tty, &settings) != 0)
            throw std::runtime_error("cannot open " + link.string());
        ::cfmakeraw(&settings);
        ::tcsetattr(m_tty, TCSANOW, &settings);
        ::tcflush(m_tty, TCIOFLUSH);
    }
    ~Tty() override { ::close(m_tty); }
    Tty(const Tty&) = delete;
    Tty& operator=(const Tty&) = delete;

    void SetBaudRate(std::uint32_t bitsPerSecond) override {
        static const std::map<std::uint32_t, speed_t> codes{{9600, B9600},     {19200, B19200},   {38400, B38400},
                                                            {57600, B57600},   {115200, B115200}, {230400, B230400},
                                                            {460800, B460800}, {921600, B921600}};
        termios settings{};
        ::tcgetattr(m_tty, &settings);
        ::cfsetspeed(&settings, codes.at(bitsPerSecond));
        ::tcsetattr(m_tty, TCSANOW, &settings);
    }

    void SendBytes(gencp::ByteView bytes) override {
        if (::write(m_tty, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
            throw std::runtime_error("the line takes no bytes");
    }

    bool Fill(steady_clock::time_point deadline, gencp::Bytes& bytes) override {
        const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
        pollfd file{m_tty, POLLIN, 0};
        if (::poll(&file, 1, static_cast<int>(std::max(left, milliseconds(0)).count())) != 1)
            return false;
        std::array<std::uint8_t, 4096> buffer;
        const ssize_t count = ::read(m_tty, buffer.data(), buffer.size());
        if (count <= 0)
            return false;
        bytes.insert(bytes.end(), buffer.begin(), buffer.begin() + count);
        return true;
    }

    bool HasHungUp() const override {
        pollfd file{m_tty, POLLIN, 0};
        return ::poll(&file, 1, 0) == 1 && (file.revents & POLLHUP) != 0;
    }

    bool WaitForHangUp() const override {
        pollfd file{m_tty, 0, 0};
        return ::poll(&file, 1, 20000) == 1 && (file.revents & POLLHUP) != 0;
    }

private:
    int m_tty;
};

}  // namespace

std::unique_ptr<HostPort> HostPort::Open(const fs::path& link) {
    return std::make_unique<Tty>(link);
}

bool HostPort::IsThere(const fs::path& link) {
    return fs::exists(fs::symlink_status(link));
}

}  // namespace MarlowSimTest
