/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Runs vanto-cl as a user does, and keeps what it said
 */
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tools_test {

/// How a run ended.
struct RunResult {
    int exitCode = -1;  ///< -1 when a signal ended it
    int signal = 0;
    std::string out;
    std::string err;
};

/// Variables to set, beside a bare environment.
using Environment = std::map<std::string, std::string>;

/// The same with a state folder of these tests, unless it names one itself.
Environment WithoutTheUsersState(Environment environment);

/// Runs vanto-cl to its end, at most two minutes.
RunResult RunVantoCl(const std::vector<std::string>& arguments, const Environment& environment = {});

/// The same on a terminal of this width, not on Windows: what appears there, lines ending in "\n", is in \a out. What a
/// line of progress showed before it was written over is gone; in \a err is all as it was written.
RunResult RunOnTerminal(const std::vector<std::string>& arguments, unsigned short columns,
                        const Environment& environment = {});

/// A run whose standard output nobody reads, so that it stands still as soon as it prints more than a little.
class BlockedRun {
public:
    BlockedRun(const std::vector<std::string>& arguments, const Environment& environment);
    ~BlockedRun();
    BlockedRun(const BlockedRun&) = delete;
    BlockedRun& operator=(const BlockedRun&) = delete;

    bool IsBlocked() const;  ///< has written into its output and not ended
    void Interrupt();        ///< as Ctrl-C does
    void Kill();             ///< without notice
    /// Waits for the end, at most two minutes. Of what it printed there is what nobody had to read before.
    RunResult Wait();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

/// Process ids of the simulators that a run with this folder for temporary files started.
std::vector<int> SimulatorsIn(const std::string& temporaryFolder);

}  // namespace tools_test
