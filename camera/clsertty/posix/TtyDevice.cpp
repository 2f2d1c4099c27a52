/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A serial line that is a tty
 */

#include "TtyDevice.h"

#include <fcntl.h>
#include <linux/serial.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <thread>

#include "BaudRates.h"
#include "PortHolder.h"
#include "SerialError.h"
#include "TtyKind.h"
#include "clser/ClSerial.h"
#include "os/posix/Descriptor.h"
#include "os/posix/FileDescriptor.h"

namespace ClSerTty {

namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

constexpr std::uint32_t kFirstBaudRate = 9600;
constexpr std::int64_t kBitsPerByte = 10;
constexpr milliseconds kSendMargin{200};  // what a driver or USB adapter may take beyond the line's own time
constexpr Deadline kNoWait{};             // long past

struct Speed {
    std::uint32_t bitsPerSecond;
    speed_t code;
};

constexpr std::array<Speed, 8> kSpeeds{{{9600, B9600},
                                        {19200, B19200},
                                        {38400, B38400},
                                        {57600, B57600},
                                        {115200, B115200},
                                        {230400, B230400},
                                        {460800, B460800},
                                        {921600, B921600}}};

std::string Reason(int error) {
    return std::generic_category().message(error);
}

bool IsTryAgain(int error) {
    return error == EAGAIN || error == EINTR;
}

timespec TimeLeft(Deadline deadline) {
    const auto left = std::max(nanoseconds::zero(), nanoseconds(deadline - Clock::now()));
    const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
    timespec time{};
    time.tv_sec = static_cast<time_t>(seconds.count());
    time.tv_nsec = static_cast<long>((left - seconds).count());
    return time;
}

[[noreturn]] void ThrowCannotOpen(const PortInfo& port, int error) {
    const std::string text =
        "The serial port '" + port.name + "' (" + port.path + ") cannot be opened: " + Reason(error);
    if (error == EACCES || error == EPERM) {
        throw SerialError(CL_ERR_INVALID_INDEX,
                          text +
                              ". Join the group that owns it, usually 'dialout' (sudo usermod -aG "
                              "dialout $USER, then log in again).");
    }
    throw SerialError(CL_ERR_INVALID_INDEX, text + ".");
}

}  // namespace

std::unique_ptr<SerialDevice> SerialDevice::Open(const PortInfo& port) {
    return std::make_unique<TtyDevice>(port);
}

TtyDevice::TtyDevice(const PortInfo& port)
    : m_title("'" + port.name + "' (" + port.path + ")"),
      m_tty(os::AboveStandardDescriptors(::open(port.path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))) {
    if (!m_tty.IsOpen()) {
        const int error = errno;
        struct stat status {};
        if (error == EBUSY && ::stat(port.path.c_str(), &status) == 0)
            ThrowInUse(status);
        ThrowCannotOpen(port, error);
    }
    m_cancel = os::FileDescriptor(os::AboveStandardDescriptors(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)));
    if (!m_cancel.IsOpen())
        throw std::system_error(errno, std::generic_category(), "eventfd");
    if (::isatty(m_tty.Get()) == 0)
        ThrowCannotOpen(port, errno);
    TakeExclusively(port);
    Configure();
}

TtyDevice::~TtyDevice() {
    if (m_tty.IsOpen() && !m_isPseudoTerminal)
        ::ioctl(m_tty.Get(), TIOCNXCL);
}

/// The lock keeps out everybody who uses this library, root included; TIOCEXCL everybody else but root. A
/// pseudo-terminal would keep TIOCEXCL after its user was killed, until its other side closes: it gets the lock only.
void TtyDevice::TakeExclusively(const PortInfo& port) {
    struct stat status {};
    if (::fstat(m_tty.Get(), &status) != 0)
        ThrowCannotOpen(port, errno);
    m_isPseudoTerminal = IsPseudoTerminal(status.st_rdev);
    m_supported = BaudRatesUpTo(MaxBitsPerSecond(status.st_rdev));
    if (::flock(m_tty.Get(), LOCK_EX | LOCK_NB) != 0) {
        const int error = errno;
        if (error == EWOULDBLOCK)
            ThrowInUse(status);
        ThrowCannotOpen(port, error);
    }
    if (!m_isPseudoTerminal) {
        int taken = 0;
        if (::ioctl(m_tty.Get(), TIOCGEXCL, &taken) == 0 && taken != 0)
            ThrowInUse(status);
        ::ioctl(m_tty.Get(), TIOCEXCL);
    }
}

void TtyDevice::Configure() {
    termios settings{};
    if (::tcgetattr(m_tty.Get(), &settings) != 0)
        ThrowGone(errno);
    settings.c_iflag = 0;
    settings.c_oflag = 0;
    settings.c_lflag = 0;
    settings.c_cflag = CS8 | CREAD | CLOCAL;
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
    if (::tcsetattr(m_tty.Get(), TCSANOW, &settings) != 0)
        ThrowGone(errno);
    ShortenLatency();
    ApplyBaudRate(kFirstBaudRate, TCSANOW);
    ::tcflush(m_tty.Get(), TCIOFLUSH);
}

/// USB adapters hold bytes back for up to 16 ms unless told otherwise; drivers that do not know the flag refuse it.
void TtyDevice::ShortenLatency() noexcept {
    serial_struct settings{};
    if (!m_isPseudoTerminal && ::ioctl(m_tty.Get(), TIOCGSERIAL, &settings) == 0) {
        settings.flags |= ASYNC_LOW_LATENCY;
        ::ioctl(m_tty.Get(), TIOCSSERIAL, &settings);
    }
}

void TtyDevice::ThrowGone(int error) const {
    throw SerialError(CL_ERR_INVALID_REFERENCE,
                      "The serial port " + m_title + " has gone" + (error == 0 ? "" : ": " + Reason(error)) + ".");
}

void TtyDevice::ThrowInUse(const struct stat& status) const {
    const std::string holder = DescribeHolder(status);
    throw SerialError(CL_ERR_PORT_IN_USE, "The serial port " + m_title + " is in use by " +
                                              (holder.empty() ? "another process" : holder) + ".");
}

/// Waits for an event of the tty; false at the deadline.
bool TtyDevice::WaitFor(short events, Deadline deadline) {
    for (;;) {
        std::array<pollfd, 2> files{{{m_tty.Get(), events, 0}, {m_cancel.Get(), POLLIN, 0}}};
        const timespec left = TimeLeft(deadline);
        const int count = ::ppoll(files.data(), files.size(), &left, nullptr);
        if (count < 0 && errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "ppoll");
        if (count > 0 && files[1].revents != 0)
            throw SerialError(CL_ERR_INVALID_REFERENCE, "The serial port " + m_title + " was closed meanwhile.");
        if (count > 0 && (files[0].revents & (POLLHUP | POLLERR | POLLNVAL)) != 0)
            ThrowGone(0);
        if (count > 0)
            return true;
        if (Clock::now() >= deadline)
            return false;
    }
}

bool TtyDevice::WaitForInput(Deadline deadline) {
    return WaitFor(POLLIN, deadline);
}

std::size_t TtyDevice::TakeInput(std::span<char> buffer) {
    const ssize_t count = ::read(m_tty.Get(), buffer.data(), buffer.size());
    // With at least one byte to wait for, a tty answers 0 only after a hang-up.
    if (count == 0 || (count < 0 && !IsTryAgain(errno)))
        ThrowGone(count == 0 ? 0 : errno);
    return static_cast<std::size_t>(std::max<ssize_t>(count, 0));
}

std::size_t TtyDevice::WriteSome(std::span<const char> bytes, Deadline deadline) {
    do {
        const ssize_t count = ::write(m_tty.Get(), bytes.data(), bytes.size());
        if (count > 0)
            return static_cast<std::size_t>(count);
        if (count < 0 && !IsTryAgain(errno))
            ThrowGone(errno);
    } while (WaitFor(POLLOUT, deadline));
    return 0;
}

int TtyDevice::BytesOf(unsigned long request) {
    int count = 0;
    if (::ioctl(m_tty.Get(), request, &count) != 0)
        ThrowGone(errno);
    return std::max(count, 0);
}

std::size_t TtyDevice::BytesAvailable() {
    const int count = BytesOf(FIONREAD);
    // A hung-up line still answers, with 0: ask for the hang-up itself.
    if (count == 0)
        static_cast<void>(WaitFor(POLLIN, kNoWait));
    return static_cast<std::size_t>(count);
}

void TtyDevice::DiscardInput() {
    if (::tcflush(m_tty.Get(), TCIFLUSH) != 0)
        ThrowGone(errno);
    static_cast<void>(WaitFor(POLLIN, kNoWait));
}

/// tcdrain alone may wait for ever, on an adapter that takes nothing: it is asked only once the queue is empty.
void TtyDevice::WaitUntilSent() {
    const auto begin = Clock::now();
    const nanoseconds byteTime = nanoseconds(std::chrono::seconds(1)) * kBitsPerByte / m_bitsPerSecond;
    const auto deadline = begin + byteTime * BytesOf(TIOCOUTQ) + kSendMargin;
    while (const int queued = BytesOf(TIOCOUTQ)) {
        if (Clock::now() >= deadline) {
            throw SerialError(CL_ERR_TIMEOUT, "The serial port " + m_title +
                                                  " does not send: " + std::to_string(queued) + " bytes are left.");
        }
        std::this_thread::sleep_for(std::clamp<nanoseconds>(byteTime * queued, microseconds(100), milliseconds(10)));
    }
    ::tcdrain(m_tty.Get());
}

void TtyDevice::ApplyBaudRate(std::uint32_t bitsPerSecond, int when) {
    const auto speed = std::find_if(kSpeeds.begin(), kSpeeds.end(),
                                    [bitsPerSecond](const Speed& s) { return s.bitsPerSecond == bitsPerSecond; });
    termios settings{};
    if (speed != kSpeeds.end() && ::tcgetattr(m_tty.Get(), &settings) != 0)
        ThrowGone(errno);
    const bool isKnown = speed != kSpeeds.end() && ::cfsetspeed(&settings, speed->code) == 0;
    bool isSet = isKnown && ::tcsetattr(m_tty.Get(), when, &settings) == 0;
    // A line that fails refuses nothing: the rate may well be set the next time.
    if ((isKnown && !isSet && errno != EINVAL) || (isSet && ::tcgetattr(m_tty.Get(), &settings) != 0))
        ThrowGone(errno);
    isSet = isSet && ::cfgetospeed(&settings) == speed->code;
    if (!isSet) {
        throw SerialError(CL_ERR_BAUD_RATE_NOT_SUPPORTED,
                          "The serial port " + m_title + " refuses " + std::to_string(bitsPerSecond) + " baud.");
    }
    m_bitsPerSecond = bitsPerSecond;
}

void TtyDevice::SetBaudRate(std::uint32_t bitsPerSecond) {
    WaitUntilSent();
    ApplyBaudRate(bitsPerSecond, TCSANOW);
}

void TtyDevice::Cancel() noexcept {
    const std::uint64_t one = 1;
    // Nothing can be done about a failure, and an event counter of a few cannot overflow.
    [[maybe_unused]] const ssize_t written = ::write(m_cancel.Get(), &one, sizeof(one));
}

}  // namespace ClSerTty
