/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ChildProcess on Windows: a program in a job that ends with this object
 */
#include "system/ChildProcess.h"

#include <windows.h>

#include <span>
#include <system_error>
#include <thread>
#include <utility>

#include "os/windows/Handle.h"
#include "system/LineBuffer.h"
#include "system/windows/CommandLine.h"

namespace tools {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds kGraceOfStop{5};
constexpr std::chrono::milliseconds kPause{2};

struct Pipe {
    os::Handle readEnd;
    os::Handle writeEnd;
};

[[noreturn]] void Fail(const std::string& what) {
    throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(), what);
}

Pipe MakePipe() {
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    if (::CreatePipe(&readEnd, &writeEnd, nullptr, 0) == 0)
        Fail("can't make a pipe");
    return {os::Handle(readEnd), os::Handle(writeEnd)};
}

/// A job whose processes end when its last handle is closed, however this process ends.
os::Handle MakeJob() {
    os::Handle job(::CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    ::SetInformationJobObject(job.Get(), JobObjectExtendedLimitInformation, &limits, sizeof(limits));
    return job;
}

}  // namespace

class ChildProcess::Impl {
public:
    os::Handle job;
    os::Handle process;
    os::Handle input;
    os::Handle output;
    LineBuffer pending;

    void Start(std::wstring line, const Pipe& in, const Pipe& out, const std::string& name) {
        ::SetHandleInformation(in.readEnd.Get(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
        ::SetHandleInformation(out.writeEnd.Get(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdInput = in.readEnd.Get();
        startup.hStdOutput = out.writeEnd.Get();
        startup.hStdError = ::GetStdHandle(STD_ERROR_HANDLE);
        PROCESS_INFORMATION started{};
        job = MakeJob();
        // A group of its own: Ctrl-C at the console is for us, and we end the child when we no longer need it.
        if (::CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED | CREATE_NEW_PROCESS_GROUP,
                             nullptr, nullptr, &startup, &started) == 0)
            Fail("can't start " + name);
        process = os::Handle(started.hProcess);
        const os::Handle thread(started.hThread);
        ::AssignProcessToJobObject(job.Get(), process.Get());
        ::ResumeThread(thread.Get());
    }

    /// What the child writes next, put into a space; 0 when it closed its output or the time is over.
    std::size_t Read(std::span<char> space, Clock::time_point deadline) {
        DWORD available = 0;
        while (Clock::now() < deadline &&
               ::PeekNamedPipe(output.Get(), nullptr, 0, nullptr, &available, nullptr) != 0) {
            DWORD count = 0;
            if (available == 0)
                std::this_thread::sleep_for(kPause);
            else if (::ReadFile(output.Get(), space.data(), static_cast<DWORD>(space.size()), &count, nullptr) != 0 &&
                     count != 0)
                return count;
        }
        return 0;
    }
};

ChildProcess::ChildProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments)
    : m_impl(std::make_unique<Impl>()) {
    Pipe input = MakePipe();
    Pipe output = MakePipe();
    m_impl->Start(CommandLineOf(program, arguments), input, output, program.string());
    m_impl->input = std::move(input.writeEnd);
    m_impl->output = std::move(output.readEnd);
}

ChildProcess::~ChildProcess() {
    Stop();
}

std::optional<std::string> ChildProcess::ReadLine(std::chrono::milliseconds timeout) {
    auto line = m_impl->pending.Next(
        [&, deadline = Clock::now() + timeout](std::span<char> space) { return m_impl->Read(space, deadline); });
    if (line && line->ends_with('\r'))
        line->pop_back();
    return line;
}

void ChildProcess::Stop() noexcept {
    if (!m_impl->process.IsOpen())
        return;
    // Closing its input is how a console program without a window is asked to end.
    m_impl->input.Close();
    constexpr DWORD kGrace = std::chrono::milliseconds(kGraceOfStop).count();
    if (::WaitForSingleObject(m_impl->process.Get(), kGrace) != WAIT_OBJECT_0) {
        ::TerminateJobObject(m_impl->job.Get(), 1);
        ::WaitForSingleObject(m_impl->process.Get(), kGrace);
    }
    m_impl->process.Close();
    m_impl->job.Close();
}

}  // namespace tools
