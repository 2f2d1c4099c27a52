/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SharedPort: the devices of one port, one after the other
 */
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "os/LockName.h"
#include "vanto/Device.h"

namespace Vanto {

/// What the cameras of one port share in this process: destroying a device ends the connection of its port, even where
/// that is another device's meanwhile. So a closed device that outlived its time, because a feature of it was held,
/// waits until no other one is open. Thread-safe.
///
/// T opens or retires with the mutex held. Who waits for it waits for an opening of the same port, which takes no lock
/// of an application.
class SharedPort {
public:
    static std::shared_ptr<SharedPort> Of(const CDeviceInfo& record);

    void Open(const std::function<void()>& open);
    void NoteClosed() noexcept;
    void Retire(IVantoDevice* device) noexcept;

private:
    void Keep(IVantoDevice* device) noexcept;

    std::mutex m_changing;
    [[no_unique_address]] const os::LockName m_changingName{&m_changing, "application's port"};
    std::atomic<int> m_open{0};  // grows with the mutex only; a removal callback may close a device
    std::vector<IVantoDevice*> m_retired;
};

}  // namespace Vanto
