/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ChildProcess: a program that runs as long as this object lives
 */
#include "system/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <span>
#include <system_error>
#include <thread>
#include <utility>

#include "os/posix/FileDescriptor.h"
#include "system/LineBuffer.h"

extern char** environ;

namespace tools {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds kGraceOfStop{5};

struct Pipe {
    os::FileDescriptor readEnd;
    os::FileDescriptor writeEnd;
};

[[noreturn]] void Fail(int error, const std::string& what) {
    throw std::system_error(error, std::generic_category(), what);
}

Pipe MakePipe() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        Fail(errno, "can't make a pipe");
    return {os::FileDescriptor(ends[0]), os::FileDescriptor(ends[1])};
}

/// What posix_spawn needs to know, freed at the end.
class SpawnSettings {
public:
    SpawnSettings(int input, int output) {
        ::posix_spawn_file_actions_init(&m_actions);
        ::posix_spawn_file_actions_adddup2(&m_actions, input, STDIN_FILENO);
        ::posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO);
        ::posix_spawnattr_init(&m_attributes);
        // A group of its own: Ctrl-C at the terminal is for us, and we end the child when we no longer need it.
        ::posix_spawnattr_setflags(&m_attributes,
                                   POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        ::posix_spawnattr_setpgroup(&m_attributes, 0);
        sigset_t signals;
        ::sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&m_attributes, &signals);
        for (const int signal : {SIGPIPE, SIGINT, SIGTERM, SIGHUP})
            ::sigaddset(&signals, signal);
        ::posix_spawnattr_setsigdefault(&m_attributes, &signals);
    }
    ~SpawnSettings() {
        ::posix_spawnattr_destroy(&m_attributes);
        ::posix_spawn_file_actions_destroy(&m_actions);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    const posix_spawn_file_actions_t* Actions() const { return &m_actions; }
    const posix_spawnattr_t* Attributes() const { return &m_attributes; }

private:
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

}  // namespace

class ChildProcess::Impl {
public:
    pid_t pid = -1;
    os::FileDescriptor input;
    os::FileDescriptor output;
    LineBuffer pending;

    /// What the child writes next, put into a space; 0 when it closed its output or the time is over.
    std::size_t Read(std::span<char> space, Clock::time_point deadline) {
        for (;;) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
            pollfd waiting{output.Get(), POLLIN, 0};
            const int ready = left.count() > 0 ? ::poll(&waiting, 1, static_cast<int>(left.count())) : 0;
            if (ready < 0 && errno == EINTR)
                continue;
            const ssize_t count = ready > 0 ? ::read(output.Get(), space.data(), space.size()) : 0;
            return static_cast<std::size_t>(std::max<ssize_t>(count, 0));
        }
    }

    /// Waits until the child has ended; false when it has not in time.
    bool WaitForEnd(std::chrono::milliseconds timeout) noexcept {
        const Clock::time_point deadline = Clock::now() + timeout;
        for (;;) {
            const pid_t ended = ::waitpid(pid, nullptr, WNOHANG);
            if (ended == pid || (ended < 0 && errno != EINTR))
                return true;
            if (Clock::now() >= deadline)
                return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }
};

ChildProcess::ChildProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments)
    : m_impl(std::make_unique<Impl>()) {
    Pipe input = MakePipe();
    Pipe output = MakePipe();
    std::vector<std::string> texts{program.string()};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    const SpawnSettings settings(input.readEnd.Get(), output.writeEnd.Get());
    const int error = ::posix_spawn(&m_impl->pid, texts.front().c_str(), settings.Actions(), settings.Attributes(),
                                    pointers.data(), environ);
    if (error != 0)
        Fail(error, "can't start " + texts.front());
    m_impl->input = std::move(input.writeEnd);
    m_impl->output = std::move(output.readEnd);
}

ChildProcess::~ChildProcess() {
    Stop();
}

std::optional<std::string> ChildProcess::ReadLine(std::chrono::milliseconds timeout) {
    return m_impl->pending.Next(
        [&, deadline = Clock::now() + timeout](std::span<char> space) { return m_impl->Read(space, deadline); });
}

void ChildProcess::Stop() noexcept {
    if (m_impl->pid <= 0)
        return;
    m_impl->input.Close();
    ::kill(m_impl->pid, SIGTERM);
    if (!m_impl->WaitForEnd(kGraceOfStop)) {
        ::kill(m_impl->pid, SIGKILL);
        m_impl->WaitForEnd(kGraceOfStop);
    }
    m_impl->pid = -1;
}

}  // namespace tools
