/* SPDX-License-Identifier: Apache-2.0 */
/*
 * PortWatch: what was last heard of each serial port
 */
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "os/LockName.h"

namespace CLProtocol {
struct Activity;
}

namespace tools {

/// How a look for a camera on a port ended, or that it goes on.
struct PortNews {
    std::string portId;
    std::string deviceId;        ///< of the camera that answered; empty when none did
    bool hasEnded = false;       ///< the last look; false while it goes on, or when it was given up
    bool hasFailed = false;      ///< then errorCode and reason say why
    std::int32_t errorCode = 0;  ///< of Camera Link or CLProtocol; 0 for a failure without one
    std::string reason;
    std::uint32_t baudRate = 0;  ///< bit/s at which the camera answered; 0 when unknown
    std::uint64_t doneBytes = 0;
    std::uint64_t totalBytes = 0;  ///< of a description that is being fetched; 0 while unknown

    bool IsInUse() const noexcept;     ///< by another program
    bool IsNoAnswer() const noexcept;  ///< nobody answers on the line
};

/// Hears what the libraries below do on ports as long as it lives. One at a time. Thread-safe.
class PortWatch {
public:
    using Listener = std::function<void(const PortNews&)>;

    PortWatch();
    ~PortWatch();
    PortWatch(const PortWatch&) = delete;
    PortWatch& operator=(const PortWatch&) = delete;

    /// What was heard last of a port; nothing when nobody has looked for a camera there.
    std::optional<PortNews> Of(const std::string& portId) const;
    /// Calls \a listener for all news from now on, by any thread; an empty one ends that.
    void Listen(Listener listener);

private:
    void Hear(const CLProtocol::Activity& activity);

    mutable std::mutex m_lock;
    [[no_unique_address]] const os::LockName m_lockName{&m_lock, "watched ports"};
    std::map<std::string, PortNews> m_news;
    Listener m_listener;
};

}  // namespace tools
