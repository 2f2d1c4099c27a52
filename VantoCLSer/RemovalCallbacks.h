/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Who wants to be told when a device's camera is gone
 */
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "GenApi/Synch.h"
#include "os/LockName.h"
#include "vanto/DeviceRemovalCallback.h"

namespace Vanto {

/// The removal callbacks of one device. Thread-safe; callbacks run without the lock.
class CRemovalCallbacks {
public:
    DeviceCallbackHandle Register(const CDeviceRemovalCallback& callback);
    bool Deregister(DeviceCallbackHandle handle);

    void Arm(IVantoDevice* device, std::uint64_t opening) noexcept;
    void Disarm() noexcept;
    void Fire(std::uint64_t opening);

private:
    struct Entry {
        DeviceCallbackHandle handle;
        std::shared_ptr<const CDeviceRemovalCallback> callback;
    };

    GenApi::CLock m_lock;
    [[no_unique_address]] const os::LockName m_lockName{&m_lock, "removal callbacks"};
    IVantoDevice* m_device = nullptr;  // null while there is nobody to tell
    std::uint64_t m_opening = 0;
    std::vector<Entry> m_entries;
};

}  // namespace Vanto
