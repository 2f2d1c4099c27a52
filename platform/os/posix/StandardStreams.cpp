/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Standard input, output and error of programs that are started without them
 */

#include "os/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>

#include "os/posix/Descriptor.h"

namespace os {

namespace {

bool IsOpen(int descriptor) noexcept {
    return ::fcntl(descriptor, F_GETFD) != -1;
}

[[maybe_unused]] const bool g_isAsked = HadStandardError();  // while the code is loaded

}  // namespace

/// What is opened gets the lowest number that is free. Standard input is there for writing only and the others for
/// reading, as if they were closed.
void OccupyStandardStreams() noexcept {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (!IsOpen(descriptor) && ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY) < 0)
            return;
}

bool HadStandardError() noexcept {
    static const bool hadIt = IsOpen(STDERR_FILENO);
    return hadIt;
}

/**
 * \brief Move a new descriptor away from the places of standard input, output and error
 * \param[in] descriptor What a system call gave, closed on exec; -1 stays -1
 *
 * In a process that was started without one of the three, whatever is opened next takes its place, and then gets what
 * the application prints.
 *
 * \return A descriptor above 2, closed on exec; -1 with errno when there is none
 */
int AboveStandardDescriptors(int descriptor) noexcept {
    if (descriptor < 0 || descriptor > STDERR_FILENO)
        return descriptor;
    const int moved = ::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int error = errno;
    ::close(descriptor);
    errno = error;
    return moved;
}

}  // namespace os
