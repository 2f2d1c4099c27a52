/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The devices that a transport layer made and that were not destroyed yet
 */
#pragma once

#include <set>

#include "GenApi/Synch.h"
#include "os/LockName.h"
#include "vanto/Device.h"

namespace Vanto {

/// Thread-safe. A device is destroyed outside the lock: closing it takes its port's lock, which another thread may hold
/// while a removal callback of the application asks the transport layer for something.
class DeviceRegistry {
public:
    void Add(IVantoDevice* device) {
        const GenApi::AutoLock lock(m_lock);
        m_devices.insert(device);
    }

    /// False for a device that is not among them.
    bool Remove(IVantoDevice* device) {
        const GenApi::AutoLock lock(m_lock);
        return m_devices.erase(device) != 0;
    }

    void DestroyAll() {
        while (IVantoDevice* device = TakeFirst())
            DestroySelf(device);
    }

    static void DestroySelf(IVantoDevice* device) {
        if (auto* self = dynamic_cast<IVantoDevicePrivate*>(device))
            self->DestroySelf();
    }

private:
    IVantoDevice* TakeFirst() {
        const GenApi::AutoLock lock(m_lock);
        return m_devices.empty() ? nullptr : m_devices.extract(m_devices.begin()).value();
    }

    std::set<IVantoDevice*> m_devices;
    GenApi::CLock m_lock;
    [[no_unique_address]] const os::LockName m_lockName{&m_lock, "registry"};
};

}  // namespace Vanto
