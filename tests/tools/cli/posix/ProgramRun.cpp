/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Runs vanto-cl as a user does, and keeps what it said
 */
#include "../ProgramRun.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

extern char** environ;

namespace tools_test {

namespace {

constexpr std::chrono::minutes kLongest{2};

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// The test's own environment without the variables of the system under test, plus the given ones.
std::vector<std::string> EnvironmentWith(const Environment& added) {
    std::vector<std::string> result;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string text = *variable;
        const bool isOurs = text.starts_with("VANTO_") || text.starts_with("GENICAM_") || text.starts_with("CLSER");
        if (!isOurs && !added.contains(text.substr(0, text.find('='))))
            result.push_back(text);
    }
    for (const auto& [name, value] : added)
        result.push_back(name + "=" + value);
    return result;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

pid_t Start(const std::vector<std::string>& arguments, const Environment& environment, int out, int err) {
    std::vector<std::string> words{VANTO_CL_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables = EnvironmentWith(WithoutTheUsersState(environment));
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, err, STDERR_FILENO);
    pid_t pid = -1;
    const int error =
        ::posix_spawn(&pid, VANTO_CL_PROGRAM, &actions, nullptr, Pointers(words).data(), Pointers(variables).data());
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::runtime_error("can't start " VANTO_CL_PROGRAM);
    return pid;
}

/// Waits for the end; a run that takes too long is killed, which shows as a signal.
RunResult WaitFor(pid_t pid) {
    const auto deadline = std::chrono::steady_clock::now() + kLongest;
    int status = 0;
    while (::waitpid(pid, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline)
            ::kill(pid, SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    RunResult result;
    if (WIFEXITED(status))
        result.exitCode = WEXITSTATUS(status);
    else
        result.signal = WTERMSIG(status);
    return result;
}

/// The terminal ends lines with "\r\n"; progress goes back to the line's beginning and clears it.
std::string WithoutWhatWasWrittenOver(const std::string& text) {
    std::string result;
    std::size_t line = 0;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text.compare(index, 2, "\r\n") == 0)
            continue;
        if (text[index] == '\r')
            result.resize(line);
        else
            result += text[index];
        if (text[index] == '\n')
            line = result.size();
        if (constexpr std::string_view kClear = "\033[K"; std::string_view(result).ends_with(kClear))
            result.resize(result.size() - kClear.size());
    }
    return result;
}

std::string TextOf(std::FILE* file) {
    std::rewind(file);
    std::string text;
    std::array<char, 4096> buffer;
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file))
        text.append(buffer.data(), count);
    return text;
}

}  // namespace

RunResult RunVantoCl(const std::vector<std::string>& arguments, const Environment& environment) {
    const File out(std::tmpfile());
    const File err(std::tmpfile());
    RunResult result = WaitFor(Start(arguments, environment, ::fileno(out.get()), ::fileno(err.get())));
    result.out = TextOf(out.get());
    result.err = TextOf(err.get());
    return result;
}

RunResult RunOnTerminal(const std::vector<std::string>& arguments, unsigned short columns,
                        const Environment& environment) {
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    std::array<char, 256> name{};
    if (terminal < 0 || ::grantpt(terminal) != 0 || ::unlockpt(terminal) != 0 ||
        ::ptsname_r(terminal, name.data(), name.size()) != 0)
        throw std::runtime_error("can't make a pseudo-terminal");
    winsize size{};
    size.ws_col = columns;
    ::ioctl(terminal, TIOCSWINSZ, &size);
    const int slave = ::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    const pid_t pid = Start(arguments, environment, slave, slave);
    ::close(slave);
    std::string text;
    std::array<char, 4096> buffer;
    // The last writer that is gone ends it.
    for (ssize_t count = 0; (count = ::read(terminal, buffer.data(), buffer.size())) > 0;)
        text.append(buffer.data(), static_cast<std::size_t>(count));
    RunResult result = WaitFor(pid);
    ::close(terminal);
    result.out = WithoutWhatWasWrittenOver(text);
    result.err = std::move(text);
    return result;
}

class BlockedRun::Impl {
public:
    File err{std::tmpfile()};
    int readEnd = -1;
    pid_t pid = -1;
    bool waited = false;
};

BlockedRun::BlockedRun(const std::vector<std::string>& arguments, const Environment& environment)
    : m_impl(std::make_unique<Impl>()) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        throw std::runtime_error("can't make a pipe");
    m_impl->readEnd = ends[0];
    ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
    ::fcntl(ends[1], F_SETPIPE_SZ, 4096);
    m_impl->pid = Start(arguments, environment, ends[1], ::fileno(m_impl->err.get()));
    ::close(ends[1]);
}

BlockedRun::~BlockedRun() {
    if (!m_impl->waited) {
        Kill();
        Wait();
    }
    ::close(m_impl->readEnd);
}

bool BlockedRun::IsBlocked() const {
    int bytes = 0;
    return ::ioctl(m_impl->readEnd, FIONREAD, &bytes) == 0 && bytes > 0;
}

void BlockedRun::Interrupt() {
    ::kill(m_impl->pid, SIGINT);
}
void BlockedRun::Kill() {
    ::kill(m_impl->pid, SIGKILL);
}

RunResult BlockedRun::Wait() {
    m_impl->waited = true;
    RunResult result = WaitFor(m_impl->pid);
    std::array<char, 4096> buffer;
    // Not to the end of the pipe, which programs that it started may hold open.
    for (ssize_t count = 0; (count = ::read(m_impl->readEnd, buffer.data(), buffer.size())) > 0;)
        result.out.append(buffer.data(), static_cast<std::size_t>(count));
    result.err = TextOf(m_impl->err.get());
    return result;
}

std::vector<int> SimulatorsIn(const std::string& temporaryFolder) {
    std::vector<int> found;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
        std::ifstream file(entry.path() / "cmdline", std::ios::binary);
        const std::string line{std::istreambuf_iterator<char>(file), {}};
        if (line.find("marlow-sim") != std::string::npos && line.find(temporaryFolder) != std::string::npos)
            found.push_back(std::stoi(entry.path().filename()));
    }
    return found;
}

}  // namespace tools_test
