/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Interface: one serial port that the configuration enables
 */
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "discovery/Discovery.h"
#include "modules/Device.h"
#include "os/LockName.h"
#include "ports/Module.h"

namespace gentl {

class System;

/// There is one camera behind a port at most. Thread-safe.
class Interface : public Module, public std::enable_shared_from_this<Interface> {
public:
    Interface(HandleTable& handles, std::shared_ptr<System> parent, Vanto::ITransportLayer& layer, Discovery& discovery,
              std::string portId);
    ~Interface() override;

    void Close() noexcept;
    bool IsOpen() const;
    const std::string& PortId() const noexcept { return m_portId; }
    std::shared_ptr<System> Parent() const noexcept { return m_parent.lock(); }
    static Info GetInfo(const std::string& portId, INTERFACE_INFO_CMD command);

    bool UpdateDevices(std::uint64_t timeout);
    std::size_t CountDevices() const;
    std::string DeviceId(std::size_t index) const;
    Info GetDeviceInfo(const std::string& id, DEVICE_INFO_CMD command) const;
    std::shared_ptr<Device> OpenDevice(const std::string& id, DEVICE_ACCESS_FLAGS flags);

    PortFacts Facts() const override;

protected:
    std::shared_ptr<EventQueue> QueueOf(EVENT_TYPE) override { return nullptr; }

private:
    struct Listed {
        CameraRecord camera;
        DEVICE_ACCESS_STATUS status;
    };

    std::optional<Listed> Known() const;
    std::optional<Listed> InList(std::size_t index) const;
    Listed InList(const std::string& id) const;
    bool IsNamed(const CameraRecord& camera, const std::string& id) const;
    CameraRecord Find(const std::string& id);
    std::string SelectedText(std::string CameraRecord::*member) const;
    std::vector<Feature> MakeFeatures();

    const std::weak_ptr<System> m_parent;
    Vanto::ITransportLayer& m_layer;
    Discovery& m_discovery;
    const std::string m_portId;
    std::atomic<std::int64_t> m_selected{0};

    mutable std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "GenTL interface"};
    std::mutex m_opening;  // T that opens the device holds it, for as long as that takes; others want RESOURCE_IN_USE
    [[no_unique_address]] const os::LockName m_openingName{&m_opening, "GenTL opening"};
    bool m_isClosed = false;
    std::optional<Listed> m_list;
    std::shared_ptr<Device> m_device;
};

}  // namespace gentl
