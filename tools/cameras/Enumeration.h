/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One look for cameras, and what was logged meanwhile
 */
#pragma once

#include <string>
#include <vector>

#include "cameras/TransportLayer.h"
#include "vanto/LogListener.h"

namespace tools {

/// A port without a camera, and why.
struct SilentPort {
    std::string portId;
    std::string reason;
    std::string hint;
};

/// What looking for cameras found. The log is what the libraries wrote during the look, in order.
struct Enumeration {
    Vanto::DeviceInfoList cameras;
    std::vector<Vanto::tracelog::LogMessage> log;

    /// Whether a message with this very format text was logged.
    bool Logged(std::string_view format) const;
    /// The first argument of each message with this format text, without repetitions.
    std::vector<std::string> ArgumentsOf(std::string_view format) const;
    /// Messages of level warning and above.
    std::vector<Vanto::tracelog::LogMessage> Problems() const;
    /// Enabled ports of this machine on which no camera was found. With \a askAgain each is asked once more, which
    /// takes its time, to say more precisely why.
    std::vector<SilentPort> SilentPorts(bool askAgain) const;
};

Enumeration Enumerate(const TransportLayer& layer);

/// A property of a record, empty when it is absent.
std::string PropertyOf(const Vanto::IProperties& record, const char* name);

}  // namespace tools
