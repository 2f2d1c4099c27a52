/* SPDX-License-Identifier: Apache-2.0 */
/*
 * System: the producer as a whole, with an interface for each serial port
 */
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "discovery/Discovery.h"
#include "modules/Interface.h"
#include "os/LockName.h"
#include "ports/Module.h"

namespace gentl {

/// The value of an information command of the producer, with or without a system.
Info ProducerInfo(TL_INFO_CMD command);

/// A port is an interface, as each has a line, a lock and a list of its own: who opens the camera of one port waits for
/// no other. Thread-safe.
class System : public Module, public std::enable_shared_from_this<System> {
public:
    System(HandleTable& handles, Vanto::ITransportLayer& layer, Discovery& discovery);
    ~System() override;

    void Close() noexcept;

    bool IsOpen() const;
    bool UpdateInterfaces(std::uint64_t timeout);
    std::size_t CountInterfaces() const;
    std::string InterfaceId(std::size_t index) const;
    Info GetInterfaceInfo(const std::string& id, INTERFACE_INFO_CMD command) const;
    std::shared_ptr<Interface> OpenInterface(const std::string& id);

    PortFacts Facts() const override;

protected:
    std::shared_ptr<EventQueue> QueueOf(EVENT_TYPE) override { return nullptr; }

private:
    bool IsPort(const std::string& id) const;
    std::vector<Feature> MakeFeatures();

    Vanto::ITransportLayer& m_layer;
    Discovery& m_discovery;
    std::atomic<std::int64_t> m_selected{0};

    mutable std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "GenTL system"};
    bool m_isClosed = false;
    std::vector<std::string> m_list;
    std::map<std::string, std::shared_ptr<Interface>> m_interfaces;
};

}  // namespace gentl
