/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Lines that are pseudo-terminals
 */

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sched.h>
#include <stdlib.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "line/Line.h"
#include "os/posix/FileDescriptor.h"

namespace MarlowSim {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void ThrowSystemError(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

struct Speed {
    speed_t code;
    std::uint32_t bitsPerSecond;
};

constexpr std::array<Speed, 8> kSpeeds{{{B9600, 9600},
                                        {B19200, 19200},
                                        {B38400, 38400},
                                        {B57600, 57600},
                                        {B115200, 115200},
                                        {B230400, 230400},
                                        {B460800, 460800},
                                        {B921600, 921600}}};

/// A link that its owner removes, unless somebody has put another in its place.
class OwnedLink {
public:
    OwnedLink(fs::path link, std::string target) : m_link(std::move(link)), m_target(std::move(target)) {
        const fs::path fresh = m_link.string() + ".new";
        std::error_code error;
        if (fs::exists(fs::symlink_status(m_link, error)) && !fs::is_symlink(m_link, error))
            throw std::system_error(EEXIST, std::generic_category(), m_link.string());
        fs::remove(fresh, error);
        fs::create_symlink(m_target, fresh);
        fs::rename(fresh, m_link);
    }
    OwnedLink(const OwnedLink&) = delete;
    ~OwnedLink() {
        std::error_code error;
        if (fs::read_symlink(m_link, error) == m_target && !error)
            fs::remove(m_link, error);
    }

private:
    const fs::path m_link;
    const std::string m_target;
};

os::FileDescriptor OpenMaster() {
    os::FileDescriptor master(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC), "posix_openpt");
    if (::grantpt(master.Get()) != 0 || ::unlockpt(master.Get()) != 0)
        ThrowSystemError("unlockpt");
    return master;
}

std::string SlavePath(const os::FileDescriptor& master) {
    std::array<char, 128> name{};
    if (::ptsname_r(master.Get(), name.data(), name.size()) != 0)
        ThrowSystemError("ptsname_r");
    return name.data();
}

/// The slave side is kept open: else each host that closes it would hang up the line.
class PtyLine final : public Line {
public:
    explicit PtyLine(const fs::path& link)
        : m_master(OpenMaster()),
          m_slave(::open(SlavePath(m_master).c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC), "open of a pseudo-terminal"),
          m_link(link, SlavePath(m_master)) {
        termios settings{};
        if (::tcgetattr(m_slave.Get(), &settings) != 0)
            ThrowSystemError("tcgetattr");
        ::cfmakeraw(&settings);
        ::cfsetspeed(&settings, B9600);
        if (::tcsetattr(m_slave.Get(), TCSANOW, &settings) != 0)
            ThrowSystemError("tcsetattr");
    }

    std::size_t Receive(std::span<std::uint8_t> buffer) override {
        const ssize_t count = ::read(m_master.Get(), buffer.data(), buffer.size());
        return count > 0 ? static_cast<std::size_t>(count) : 0;
    }

    void Send(gencp::ByteView bytes) override {
        while (!bytes.empty()) {
            const ssize_t count = ::write(m_master.Get(), bytes.data(), bytes.size());
            if (count <= 0)
                return;
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        }
    }

    std::uint32_t HostBitsPerSecond() const override {
        termios settings{};
        if (::tcgetattr(m_master.Get(), &settings) == 0) {
            const speed_t code = ::cfgetospeed(&settings);
            for (const Speed& speed : kSpeeds) {
                if (speed.code == code)
                    return speed.bitsPerSecond;
            }
        }
        return 0;
    }

    // Unlike a count of the bytes that wait, polling also sees those that the kernel has not handed over yet.
    bool IsRead() const override {
        pollfd slave{m_slave.Get(), POLLIN, 0};
        return ::poll(&slave, 1, 0) <= 0 || (slave.revents & POLLIN) == 0;
    }

    int Handle() const override { return m_master.Get(); }

private:
    os::FileDescriptor m_master;
    os::FileDescriptor m_slave;
    OwnedLink m_link;
};

class PollWaiter final : public LineWaiter {
public:
    PollWaiter() : m_event(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK), "eventfd") {}

    void Wait(std::span<Line* const> lines, std::optional<TimePoint> until) override {
        constexpr std::chrono::seconds kLongest(3600);
        m_files.assign(1, {m_event.Get(), POLLIN, 0});
        for (const Line* line : lines)
            m_files.push_back({line->Handle(), POLLIN, 0});
        const TimePoint now = Clock::now();
        const std::chrono::nanoseconds left =
            until ? std::clamp<std::chrono::nanoseconds>(*until - now, std::chrono::nanoseconds(0), kLongest)
                  : kLongest;
        const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
        timespec time{};
        time.tv_sec = static_cast<time_t>(seconds.count());
        time.tv_nsec = static_cast<long>((left - seconds).count());
        ::ppoll(m_files.data(), m_files.size(), &time, nullptr);
        std::uint64_t count = 0;
        [[maybe_unused]] const ssize_t taken = ::read(m_event.Get(), &count, sizeof(count));
    }

    void Wake() noexcept override {
        const std::uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = ::write(m_event.Get(), &one, sizeof(one));
    }

    /// A camera's line waits for no processor: a thread with a real-time priority, where this user may have one, sends
    /// in time on a busy machine, too. The system lets a thread's timers be 50 us late unless it is told otherwise; on
    /// a fast line that is five bytes.
    void BePunctual() noexcept override {
        ::prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
        sched_param priority{};
        priority.sched_priority = ::sched_get_priority_min(SCHED_RR);
        ::pthread_setschedparam(::pthread_self(), SCHED_RR, &priority);
    }

private:
    os::FileDescriptor m_event;
    std::vector<pollfd> m_files;
};

}  // namespace

std::unique_ptr<Line> Line::Create(const fs::path& link) {
    return std::make_unique<PtyLine>(link);
}

std::unique_ptr<LineWaiter> LineWaiter::Create() {
    return std::make_unique<PollWaiter>();
}

}  // namespace MarlowSim
