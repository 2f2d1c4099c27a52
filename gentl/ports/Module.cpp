/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Module: what system, interface, device and stream have in common
 */
#include "ports/Module.h"

#include <fmt/format.h>

#include <algorithm>

#include "support/GenTLError.h"
#include "support/Identity.h"

namespace gentl {

namespace {

// Far behind the registers of any module.
constexpr std::uint64_t kDescriptionAddress = 0x100000000;

const char* NameOfEvent(EVENT_TYPE type) {
    static constexpr const char* kNames[] = {"ERROR",          "NEW_BUFFER",    "FEATURE_INVALIDATE",
                                             "FEATURE_CHANGE", "REMOTE_DEVICE", "MODULE"};
    return type >= 0 && static_cast<std::size_t>(type) < std::size(kNames) ? kNames[type] : "unknown";
}

}  // namespace

void Module::SetFeatures(const char* modelName, const char* portName, std::vector<Feature> features) {
    m_features = std::make_unique<const FeatureMap>(FeatureMap::Layout{.portName = portName}, std::move(features));
    m_description = DescriptionOf(*m_features, modelName, portName);
    // A description that changes gets another name: consumers keep what they have seen under one.
    m_fileName = fmt::format("{}_{}_{:08x}.xml", kVendor, modelName,
                             static_cast<std::uint32_t>(std::hash<std::string>()(m_description)));
}

DescriptionFacts Module::Description() const {
    return {.fileName = m_fileName, .address = kDescriptionAddress, .size = m_description.size()};
}

void Module::Read(std::uint64_t address, std::span<std::uint8_t> bytes) {
    if (address < kDescriptionAddress)
        return m_features->Read(address, bytes);
    const std::uint64_t offset = address - kDescriptionAddress;
    if (offset > m_description.size() || bytes.size() > m_description.size() - offset)
        throw GenTLError(GC_ERR_INVALID_ADDRESS, fmt::format("There is no register at 0x{:x}", address));
    std::copy_n(m_description.begin() + static_cast<std::ptrdiff_t>(offset), bytes.size(), bytes.begin());
}

void Module::Write(std::uint64_t address, std::span<const std::uint8_t> bytes) {
    if (address >= kDescriptionAddress)
        throw GenTLError(GC_ERR_ACCESS_DENIED, "The description can't be written");
    m_features->Write(address, bytes);
}

/**
 * \brief Register for the notifications of a type
 * \throw GenTLError NOT_IMPLEMENTED where the module has no such event, RESOURCE_IN_USE where it is registered
 */
std::shared_ptr<Event> Module::RegisterEvent(EVENT_TYPE type) {
    const std::shared_ptr<EventQueue> queue = QueueOf(type);
    if (queue == nullptr)
        throw GenTLError(GC_ERR_NOT_IMPLEMENTED, fmt::format("This module has no event {}", NameOfEvent(type)));
    const std::lock_guard lock(m_eventLock);
    if (m_isRetired)
        throw GenTLError(GC_ERR_INVALID_HANDLE, "The module was closed");
    if (m_events.contains(type))
        throw GenTLError(GC_ERR_RESOURCE_IN_USE, fmt::format("Event {} is registered already", NameOfEvent(type)));
    auto event = std::make_shared<Event>(type, queue);
    m_events.emplace(type, event);
    m_handles.Add(event);
    return event;
}

/**
 * \brief End a registration; waiters come out with ABORT
 * \throw GenTLError NOT_IMPLEMENTED where the module has no such event, NOT_INITIALIZED where it is not registered
 */
void Module::UnregisterEvent(EVENT_TYPE type) {
    if (QueueOf(type) == nullptr)
        throw GenTLError(GC_ERR_NOT_IMPLEMENTED, fmt::format("This module has no event {}", NameOfEvent(type)));
    std::shared_ptr<Event> event;
    {
        const std::lock_guard lock(m_eventLock);
        const auto found = m_events.find(type);
        if (found == m_events.end())
            throw GenTLError(GC_ERR_NOT_INITIALIZED, fmt::format("Event {} is not registered", NameOfEvent(type)));
        event = std::move(found->second);
        m_events.erase(found);
    }
    m_handles.Remove(*event);
    event->Unregister();
}

void Module::Retire() noexcept {
    m_handles.Remove(*this);
    std::map<EVENT_TYPE, std::shared_ptr<Event>> events;
    {
        const std::lock_guard lock(m_eventLock);
        m_isRetired = true;
        events.swap(m_events);
    }
    for (const auto& [type, event] : events) {
        m_handles.Remove(*event);
        event->Unregister();
    }
}

}  // namespace gentl
