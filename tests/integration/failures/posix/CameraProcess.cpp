/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A simulated camera in a process of its own
 */

#include "CameraProcess.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <stdexcept>
#include <system_error>

#include "simulator/Simulator.h"

namespace integration {

namespace {

std::array<int, 2> MakePipe() {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    return ends;
}

// Until the other end is closed.
void Play(const std::string& folder, const std::string& name, const MarlowSim::CameraOptions& options, int ready,
          int end) {
    MarlowSim::Simulator simulator(folder);
    simulator.Add(name, options);
    char byte = 0;
    if (::write(ready, &byte, 1) == 1) [[maybe_unused]]
        const ssize_t count = ::read(end, &byte, 1);
}

}  // namespace

CameraProcess::CameraProcess(const std::string& folder, const std::string& name,
                             const MarlowSim::CameraOptions& options) {
    const std::array<int, 2> ready = MakePipe();
    const std::array<int, 2> end = MakePipe();
    m_process = ::fork();
    if (m_process < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (m_process == 0) {
        ::close(end[1]);
        Play(folder, name, options, ready[1], end[0]);
        ::_exit(0);
    }
    ::close(ready[1]);
    ::close(end[0]);
    m_end = end[1];
    char byte = 0;
    if (::read(ready[0], &byte, 1) != 1)
        throw std::runtime_error("The camera's process has ended");
    ::close(ready[0]);
}

CameraProcess::~CameraProcess() {
    ::close(m_end);
    ::waitpid(m_process, nullptr, 0);
}

}  // namespace integration
