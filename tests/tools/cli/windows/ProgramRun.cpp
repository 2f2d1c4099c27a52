/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Runs vanto-cl as a user does, and keeps what it said
 */
#include "../ProgramRun.h"

#include <windows.h>

#include <array>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "system/windows/CommandLine.h"

namespace tools_test {

namespace {

constexpr DWORD kLongest = 120'000;  // ms

class Handle {
public:
    explicit Handle(HANDLE value = nullptr) : m_value(value) {}
    Handle(Handle&& other) noexcept : m_value(std::exchange(other.m_value, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(m_value, other.m_value);
        return *this;
    }
    ~Handle() {
        if (m_value != nullptr && m_value != INVALID_HANDLE_VALUE)
            ::CloseHandle(m_value);
    }
    HANDLE Get() const { return m_value; }

private:
    HANDLE m_value;
};

/// The test's own environment without the variables of the system under test, plus the given ones.
std::string EnvironmentWith(const Environment& added) {
    std::string block;
    char* const all = ::GetEnvironmentStringsA();
    for (const char* variable = all; *variable != '\0'; variable += std::string(variable).size() + 1) {
        const std::string text = variable;
        const bool isOurs = text.starts_with("VANTO_") || text.starts_with("GENICAM_") || text.starts_with("CLSER");
        if (!isOurs && !added.contains(text.substr(0, text.find('='))))
            block += text + '\0';
    }
    ::FreeEnvironmentStringsA(all);
    for (const auto& [name, value] : added)
        block += name + "=" + value + '\0';
    return block + '\0';
}

/// A file that goes when its last handle is closed, and that a child inherits.
Handle TemporaryFile() {
    std::array<char, MAX_PATH> folder{};
    std::array<char, MAX_PATH> name{};
    ::GetTempPathA(static_cast<DWORD>(folder.size()), folder.data());
    ::GetTempFileNameA(folder.data(), "run", 0, name.data());
    SECURITY_ATTRIBUTES inherited{sizeof(inherited), nullptr, TRUE};
    Handle file(::CreateFileA(name.data(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                              &inherited, CREATE_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    if (file.Get() == INVALID_HANDLE_VALUE)
        throw std::runtime_error("can't make a temporary file");
    return file;
}

PROCESS_INFORMATION Start(const std::vector<std::string>& arguments, const Environment& environment, HANDLE out,
                          HANDLE err, DWORD flags) {
    const std::filesystem::path program = std::filesystem::path(VANTO_CL_PROGRAM).make_preferred();
    std::wstring line = tools::CommandLineOf(program, arguments);
    std::string variables = EnvironmentWith(WithoutTheUsersState(environment));
    SECURITY_ATTRIBUTES inherited{sizeof(inherited), nullptr, TRUE};
    const Handle in(::CreateFileA("NUL", GENERIC_READ, 0, &inherited, OPEN_EXISTING, 0, nullptr));
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = in.Get();
    startup.hStdOutput = out;
    startup.hStdError = err;
    PROCESS_INFORMATION started{};
    if (::CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, flags, variables.data(), nullptr,
                         &startup, &started) == 0)
        throw std::runtime_error("can't start " VANTO_CL_PROGRAM);
    ::CloseHandle(started.hThread);
    return started;
}

/// Waits for the end; a run that takes too long is ended, which shows in its code.
RunResult WaitFor(HANDLE process) {
    if (::WaitForSingleObject(process, kLongest) != WAIT_OBJECT_0)
        ::TerminateProcess(process, static_cast<UINT>(-1));
    ::WaitForSingleObject(process, kLongest);
    DWORD code = 0;
    ::GetExitCodeProcess(process, &code);
    RunResult result;
    result.exitCode = static_cast<int>(code);
    return result;
}

std::string TextOf(HANDLE file) {
    ::SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    std::string text;
    std::array<char, 4096> buffer;
    DWORD count = 0;
    while (::ReadFile(file, buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr) != 0 && count > 0)
        text.append(buffer.data(), count);
    return text;
}

}  // namespace

RunResult RunVantoCl(const std::vector<std::string>& arguments, const Environment& environment) {
    const Handle out = TemporaryFile();
    const Handle err = TemporaryFile();
    const Handle process(Start(arguments, environment, out.Get(), err.Get(), 0).hProcess);
    RunResult result = WaitFor(process.Get());
    result.out = TextOf(out.Get());
    result.err = TextOf(err.Get());
    return result;
}

class BlockedRun::Impl {
public:
    Handle err = TemporaryFile();
    Handle readEnd;
    Handle process;
    DWORD id = 0;
    bool waited = false;
};

/// With a console of its own, without a window, so that it alone gets Ctrl-C.
BlockedRun::BlockedRun(const std::vector<std::string>& arguments, const Environment& environment)
    : m_impl(std::make_unique<Impl>()) {
    constexpr DWORD kSize = 4096;
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    if (::CreatePipe(&readEnd, &writeEnd, nullptr, kSize) == 0)
        throw std::runtime_error("can't make a pipe");
    m_impl->readEnd = Handle(readEnd);
    const Handle out(writeEnd);
    ::SetHandleInformation(writeEnd, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    const PROCESS_INFORMATION started = Start(arguments, environment, writeEnd, m_impl->err.Get(), CREATE_NO_WINDOW);
    m_impl->process = Handle(started.hProcess);
    m_impl->id = started.dwProcessId;
}

BlockedRun::~BlockedRun() {
    if (!m_impl->waited) {
        Kill();
        Wait();
    }
}

bool BlockedRun::IsBlocked() const {
    DWORD bytes = 0;
    return ::PeekNamedPipe(m_impl->readEnd.Get(), nullptr, 0, nullptr, &bytes, nullptr) != 0 && bytes > 0;
}

void BlockedRun::Interrupt() {
    ::FreeConsole();
    if (::AttachConsole(m_impl->id) == 0)
        throw std::runtime_error("the run has no console: " + std::to_string(::GetLastError()));
    ::SetConsoleCtrlHandler(nullptr, TRUE);
    const BOOL isSent = ::GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
    WaitFor(m_impl->process.Get());
    ::FreeConsole();
    ::SetConsoleCtrlHandler(nullptr, FALSE);
    if (isSent == 0)
        throw std::runtime_error("Ctrl-C was not sent");
}

void BlockedRun::Kill() {
    ::TerminateProcess(m_impl->process.Get(), static_cast<UINT>(-1));
}

RunResult BlockedRun::Wait() {
    m_impl->waited = true;
    RunResult result = WaitFor(m_impl->process.Get());
    std::array<char, 4096> buffer;
    DWORD count = 0;
    // Not to the end of the pipe, which programs that it started may hold open.
    while (IsBlocked() &&
           ::ReadFile(m_impl->readEnd.Get(), buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr) != 0)
        result.out.append(buffer.data(), count);
    result.err = TextOf(m_impl->err.Get());
    return result;
}

}  // namespace tools_test
