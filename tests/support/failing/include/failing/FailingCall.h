/* SPDX-License-Identifier: Apache-2.0 */
/*
 * For tests: a process in which a call of the system fails
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace failing {

/// A place in the code of a loaded file from which a function of the system is called.
struct CallPlace {
    std::string function;
    std::string file;
    std::uintptr_t offset = 0;

    std::string ToText() const;
    bool operator<(const CallPlace& other) const noexcept;
    bool operator==(const CallPlace&) const = default;
};

/// One call: the place, and how often it was called before.
struct Call {
    CallPlace place;
    std::size_t index = 0;
};

/// Notes the calls of all threads as long as it lives. One at a time, as FailingCall.
class CallRecorder {
public:
    CallRecorder();
    ~CallRecorder();
    CallRecorder(const CallRecorder&) = delete;
    CallRecorder& operator=(const CallRecorder&) = delete;

    /// Of each place the first calls and the last.
    std::vector<Call> Samples(std::size_t first) const;
};

/// Lets a call fail, as long as it lives: as the system would for want of something, or with an error that is given.
class FailingCall {
public:
    explicit FailingCall(const Call& call, int error = 0);
    ~FailingCall();
    FailingCall(const FailingCall&) = delete;
    FailingCall& operator=(const FailingCall&) = delete;

    bool HasFailed() const;
    /// What the system says of such a failure, as texts quote it.
    std::string Reason() const;
};

}  // namespace failing
