/* SPDX-License-Identifier: Apache-2.0 */
/*
 * For tests: a process without standard streams
 */
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <initializer_list>

namespace test_support {

inline bool IsOpen(int descriptor) {
    return ::fcntl(descriptor, F_GETFD) != -1;
}

/// Closes standard input, output and error for its own lifetime. What the test itself prints meanwhile is lost.
class ClosedStreams {
public:
    ClosedStreams() {
        for (const int stream : {0, 1, 2})
            m_saved[stream] = ::fcntl(stream, F_DUPFD_CLOEXEC, 100);
        for (const int stream : {0, 1, 2})
            ::close(stream);
    }
    ~ClosedStreams() {
        for (const int stream : {0, 1, 2}) {
            ::dup2(m_saved[stream], stream);
            ::close(m_saved[stream]);
        }
    }
    ClosedStreams(const ClosedStreams&) = delete;
    ClosedStreams& operator=(const ClosedStreams&) = delete;

private:
    int m_saved[3];
};

}  // namespace test_support
