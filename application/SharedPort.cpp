/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SharedPort: the devices of one port, one after the other
 */
#include "SharedPort.h"

#include <map>
#include <utility>

#include "os/LockName.h"
#include "vanto/TlFactory.h"
#include "vanto/TraceLog.h"

namespace Vanto {

namespace {

void DestroyDevice(IVantoDevice* device) noexcept {
    try {
        CTlFactory::GetInstance().DestroyDevice(device);
    } catch (const std::exception& error) {
        tracelog::LogTrace(tracelog::LogGetCatID("Vanto.Camera"), tracelog::kWarning, "Can't destroy a device: %s",
                           error.what());
    }
}

}  // namespace

void SharedPort::Keep(IVantoDevice* device) noexcept {
    try {
        if (device != nullptr)
            m_retired.push_back(device);
    } catch (const std::bad_alloc&) {
        // It stays until the process ends.
    }
}

/// The one of a record's port. There are as few as ports, so they stay.
std::shared_ptr<SharedPort> SharedPort::Of(const CDeviceInfo& record) {
    static std::mutex mutex;
    [[maybe_unused]] static const os::LockName mutexName(&mutex, "application's ports");
    static std::map<std::string, std::shared_ptr<SharedPort>> ports;
    gcstring name;
    if (!record.GetPropertyValue("PortID", name))
        name = record.GetFullName();
    const std::lock_guard lock(mutex);
    std::shared_ptr<SharedPort>& port = ports[name.str()];
    if (!port)
        port = std::make_shared<SharedPort>();
    return port;
}

/// Runs what makes and opens a device, beside no destruction. What it throws passes through; the port counts as open
/// unless it throws.
void SharedPort::Open(const std::function<void()>& open) {
    const std::lock_guard lock(m_changing);
    open();
    ++m_open;
}

/// A device that was opened is closed.
void SharedPort::NoteClosed() noexcept {
    --m_open;
}

/// Destroys a device that is closed, or keeps it until the last one that is open has gone. Null is ignored.
void SharedPort::Retire(IVantoDevice* device) noexcept {
    const std::lock_guard lock(m_changing);
    if (m_open > 0) {
        Keep(device);
        return;
    }
    if (device != nullptr)
        DestroyDevice(device);
    for (IVantoDevice* const retired : std::exchange(m_retired, {}))
        DestroyDevice(retired);
}

}  // namespace Vanto
