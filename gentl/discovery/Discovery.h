/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Discovery: which cameras are behind which ports, found in the background
 */
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "CLProtocol/Activity.h"
#include "discovery/CameraRecord.h"
#include "os/LockName.h"
#include "vanto/LogListener.h"
#include "vanto/TransportLayer.h"

namespace gentl {

/// A port that the configuration enables, and what is known of it.
struct PortRecord {
    enum class State {
        kUnknown,  ///< not asked yet
        kEmpty,    ///< nothing answers
        kCamera,
        kBusy  ///< another program holds the port
    };
    std::string portId;
    State state = State::kUnknown;
    std::optional<CameraRecord> camera;  ///< also of a busy port, when any process saw it before
};

using Clock = std::chrono::steady_clock;

/// Asking ports takes seconds, and consumers want a list in milliseconds: so a thread asks, and the lists show what is
/// known. One look is under way at most. The listener of CLProtocol's activities is taken for as long as this lives.
/// Thread-safe.
class Discovery {
public:
    explicit Discovery(Vanto::ITransportLayer& layer);
    ~Discovery();
    Discovery(const Discovery&) = delete;
    Discovery& operator=(const Discovery&) = delete;

    void Begin();
    bool WaitForPorts(Clock::time_point deadline);
    bool WaitForPort(const std::string& portId, Clock::time_point deadline);
    bool WaitForLook(Clock::time_point deadline);
    std::vector<PortRecord> Ports() const;
    std::optional<PortRecord> Find(const std::string& portId) const;

private:
    void Run();
    void Look();
    void OnMessage(const Vanto::tracelog::LogMessage& message);
    void OnActivity(const CLProtocol::Activity& activity);
    void KeepPortsLocked();
    void TakeRecords(const Vanto::DeviceInfoList& found);
    PortRecord* FindLocked(const std::string& portId);

    Vanto::ITransportLayer& m_layer;
    mutable std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "GenTL discovery"};
    std::condition_variable m_changed;
    std::vector<PortRecord> m_ports;
    std::vector<std::string> m_seen;   // ports of the look that is under way
    std::vector<std::string> m_asked;  // those of them that have answered or not
    bool m_arePortsKnown = false;      // in the look that is under way
    bool m_isLooking = false;
    bool m_isWanted = false;
    bool m_isEnding = false;
    std::thread m_thread;
};

}  // namespace gentl
