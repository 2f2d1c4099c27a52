/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One look for cameras, and what was logged meanwhile
 */
#pragma once

#include <set>
#include <string>
#include <vector>

#include "cameras/KnownCameras.h"
#include "cameras/PortAdvice.h"
#include "cameras/TransportLayer.h"
#include "vanto/LogListener.h"

namespace tools {

class Output;

/// An enabled port of this machine on which no camera was found, and why.
struct SilentPort {
    std::string portId;
    PortAdvice advice;
};

/// What looking for cameras found. The log is what the libraries wrote during the look, in order.
struct Enumeration {
    Vanto::DeviceInfoList cameras;
    std::vector<SilentPort> silentPorts;
    std::vector<Vanto::tracelog::LogMessage> log;

    /// Whether a message with this very format text was logged.
    bool Logged(std::string_view format) const;
    /// The first argument of each message with this format text, without repetitions.
    std::vector<std::string> ArgumentsOf(std::string_view format) const;
    /// Messages of level warning and above.
    std::vector<Vanto::tracelog::LogMessage> Problems() const;
    std::set<std::string> PortsInUse() const;
    std::vector<CameraAddress> Addresses() const;
    /// The cameras that were found, with their numbers.
    std::vector<KnownCamera> Numbered(const KnownCameras& known) const;
};

/// \param[in] output Shows which port is asked
Enumeration Enumerate(const TransportLayer& layer, Output& output);
/// The same, and keeps in mind what was found.
Enumeration EnumerateAndRemember(const TransportLayer& layer, Output& output);

}  // namespace tools
