/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How often an application was told that its camera is gone
 */
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "vanto/DeviceRemovalCallback.h"

namespace integration {

/// Counts removals, and can be waited for. Must outlive the devices on which it is registered.
class Removals {
public:
    void Register(Vanto::IVantoDevice& device) { Vanto::RegisterRemovalCallback(device, *this, &Removals::Count); }

    bool Wait(std::chrono::milliseconds timeout) const {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, timeout, [this] { return m_count != 0; });
    }
    int Get() const {
        const std::lock_guard lock(m_mutex);
        return m_count;
    }

private:
    void Count(Vanto::IVantoDevice*) {
        const std::lock_guard lock(m_mutex);
        ++m_count;
        m_changed.notify_all();
    }

    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    int m_count = 0;
};

}  // namespace integration
