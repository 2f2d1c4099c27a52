/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Who wants to be told when a device's camera is gone
 */

#include "VantoCLSer/RemovalCallbacks.h"

#include <algorithm>
#include <atomic>

#include "VantoCLSer/base/Log.h"

namespace Vanto {

namespace {

// One count for all devices of the process: a handle is never used again.
std::atomic<DeviceCallbackHandle> g_nextHandle{1001};

}  // namespace

/**
 * \brief Keep a copy of a callback
 * \return Its handle, unique in the process
 * \context Any thread
 */
DeviceCallbackHandle CRemovalCallbacks::Register(const CDeviceRemovalCallback& callback) {
    std::shared_ptr<const CDeviceRemovalCallback> copy = callback.Clone();
    const GenApi::AutoLock lock(m_lock);
    const DeviceCallbackHandle handle = g_nextHandle++;
    m_entries.push_back({handle, std::move(copy)});
    return handle;
}

/**
 * \brief Forget a callback; one that runs at this moment runs to its end
 * \return false for an unknown handle
 * \context Any thread, the callback's own included
 */
bool CRemovalCallbacks::Deregister(DeviceCallbackHandle handle) {
    std::shared_ptr<const CDeviceRemovalCallback> removed;  // destroyed without the lock
    const GenApi::AutoLock lock(m_lock);
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [handle](const Entry& entry) { return entry.handle == handle; });
    if (found == m_entries.end())
        return false;
    removed = std::move(found->callback);
    m_entries.erase(found);
    return true;
}

/**
 * \brief Let the next removal of an opening call the callbacks
 * \param[in] device What callbacks receive
 * \param[in] opening The number of this opening; a removal of an earlier one, which comes late, calls nobody
 * \context Any thread
 */
void CRemovalCallbacks::Arm(IVantoDevice* device, std::uint64_t opening) noexcept {
    const GenApi::AutoLock lock(m_lock);
    m_device = device;
    m_opening = opening;
}

void CRemovalCallbacks::Disarm() noexcept {
    const GenApi::AutoLock lock(m_lock);
    m_device = nullptr;
}

/**
 * \brief Call every callback in the order of registration, at most once for each Arm
 *
 * An exception of one callback does not keep the others from running.
 */
void CRemovalCallbacks::Fire(std::uint64_t opening) {
    std::vector<Entry> entries;
    IVantoDevice* device = nullptr;
    {
        const GenApi::AutoLock lock(m_lock);
        if (m_device == nullptr || m_opening != opening)
            return;
        entries = m_entries;
        std::swap(device, m_device);
    }
    for (const Entry& entry : entries) {
        try {
            (*entry.callback)(device);
        } catch (...) {
            LogTrace(DeviceLog(), tracelog::kDebug, "Removal callback with handle %u threw an exception.",
                     entry.handle);
        }
    }
}

}  // namespace Vanto
