/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Waits until somebody wants the program to end
 */

#include "stage/EndSignal.h"
#include "os/posix/FileDescriptor.h"

#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>

#include <array>
#include <cerrno>

namespace MarlowSim {

namespace {

sigset_t EndSignals() {
    sigset_t signals;
    ::sigemptyset(&signals);
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        ::sigaddset(&signals, number);
    return signals;
}

/// True at the end of the input; what comes before it is thrown away.
bool InputHasEnded() {
    std::array<char, 256> buffer;
    const ssize_t count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
    return count == 0 || (count < 0 && errno != EINTR && errno != EAGAIN);
}

}  // namespace

void KeepEndSignals() {
    const sigset_t signals = EndSignals();
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

void WaitForEnd(bool untilStdinCloses) {
    const sigset_t signals = EndSignals();
    const os::FileDescriptor signalFile(::signalfd(-1, &signals, SFD_CLOEXEC), "signalfd");
    for (;;) {
        std::array<pollfd, 2> files{{{signalFile.Get(), POLLIN, 0}, {untilStdinCloses ? STDIN_FILENO : -1, POLLIN, 0}}};
        if (::poll(files.data(), files.size(), -1) < 0)
            continue;
        if (files[0].revents != 0 || (files[1].revents != 0 && InputHasEnded()))
            return;
    }
}

}  // namespace MarlowSim
