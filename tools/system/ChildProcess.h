/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ChildProcess: a program that runs as long as this object lives
 */
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tools {

/// A child process whose standard input and output are pipes to us; its standard error is ours. It is asked to end,
/// then made to, when this object goes; when this process dies without notice, the child's standard input closes.
/// Thread-bound.
class ChildProcess {
public:
    /// Starts a program; throws std::system_error when the system refuses.
    ChildProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// The next line of the child's output, without its end; nothing when the child closed it or the time is over.
    std::optional<std::string> ReadLine(std::chrono::milliseconds timeout);
    /// Asks the child to end, waits, and forces it when it does not.
    void Stop() noexcept;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace tools
