/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Module: what system, interface, device and stream have in common
 */
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "events/Event.h"
#include "os/LockName.h"
#include "ports/FeatureMap.h"
#include "ports/Port.h"
#include "support/HandleTable.h"

namespace gentl {

/// Something that the port functions take.
class PortObject : public Object, public Port {};

/// Has a handle, a port with features of its own, and events. Thread-safe.
class Module : public PortObject {
public:
    DescriptionFacts Description() const override;
    void Read(std::uint64_t address, std::span<std::uint8_t> bytes) override;
    void Write(std::uint64_t address, std::span<const std::uint8_t> bytes) override;

    std::shared_ptr<Event> RegisterEvent(EVENT_TYPE type);
    void UnregisterEvent(EVENT_TYPE type);

protected:
    explicit Module(HandleTable& handles) : m_handles(handles) {}

    HandleTable& Handles() const noexcept { return m_handles; }
    /// To be called once, by the constructor of the module.
    void SetFeatures(const char* modelName, const char* portName, std::vector<Feature> features);
    /// The queue of an event type that the module has, else null.
    virtual std::shared_ptr<EventQueue> QueueOf(EVENT_TYPE type) = 0;
    /// Ends the handle and the events; those who wait in them come out.
    void Retire() noexcept;

private:
    HandleTable& m_handles;
    std::unique_ptr<const FeatureMap> m_features;
    std::string m_fileName;
    std::string m_description;
    std::mutex m_eventLock;
    [[no_unique_address]] const os::LockName m_eventLockName{&m_eventLock, "GenTL module's events"};
    bool m_isRetired = false;
    std::map<EVENT_TYPE, std::shared_ptr<Event>> m_events;
};

}  // namespace gentl
