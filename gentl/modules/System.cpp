/* SPDX-License-Identifier: Apache-2.0 */
/*
 * System: the producer as a whole, with an interface for each serial port
 */
#include "modules/System.h"

#include <fmt/format.h>

#include <algorithm>

#include "ports/FeatureList.h"
#include "support/Deadline.h"
#include "support/Identity.h"

namespace gentl {

namespace {

// The ports are read from the machine and the configuration, which takes milliseconds; the first time some libraries
// are loaded as well.
constexpr std::uint64_t kPortsPatience = 2000;  // ms

}  // namespace

Info ProducerInfo(TL_INFO_CMD command) {
    switch (command) {
        case TL_INFO_ID:
        case TL_INFO_PATHNAME:
            return ProducerPath();
        case TL_INFO_VENDOR:
            return std::string(kVendor);
        case TL_INFO_MODEL:
            return std::string(kModel);
        case TL_INFO_VERSION:
            return ProducerVersion();
        case TL_INFO_TLTYPE:
            return std::string(kTransportType);
        case TL_INFO_NAME:
            return std::string(kFileName);
        case TL_INFO_DISPLAYNAME:
            return std::string(kDisplayName);
        case TL_INFO_CHAR_ENCODING:
            return std::int32_t{TL_CHAR_ENCODING_UTF8};
        case TL_INFO_GENTL_VER_MAJOR:
            return kGenTLMajor;
        case TL_INFO_GENTL_VER_MINOR:
            return kGenTLMinor;
        default:
            ThrowUnknownCommand(command);
    }
}

/// Begins to look for cameras; which ports there are is known before it returns, where the machine is not very slow.
System::System(HandleTable& handles, Vanto::ITransportLayer& layer, Discovery& discovery)
    : Module(handles), m_layer(layer), m_discovery(discovery) {
    SetFeatures("TLSystem", "TLPort", MakeFeatures());
    m_discovery.Begin();
    m_discovery.WaitForPorts(DeadlineAfter(kPortsPatience));
}

System::~System() {
    Close();
}

/// Closes all interfaces. The second time it does nothing.
void System::Close() noexcept {
    Retire();
    std::map<std::string, std::shared_ptr<Interface>> interfaces;
    {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
        interfaces.swap(m_interfaces);
    }
    for (const auto& [id, one] : interfaces)
        one->Close();
}

bool System::IsOpen() const {
    const std::lock_guard lock(m_mutex);
    return !m_isClosed;
}

/**
 * \brief Renew the list
 * \param[in] timeout Milliseconds to wait for the ports; what is known by then is the list
 * \return Whether it has changed
 */
bool System::UpdateInterfaces(std::uint64_t timeout) {
    m_discovery.Begin();
    m_discovery.WaitForPorts(DeadlineAfter(timeout));
    std::vector<std::string> now;
    for (const PortRecord& port : m_discovery.Ports())
        now.push_back(port.portId);
    const std::lock_guard lock(m_mutex);
    const bool hasChanged = now != m_list;
    m_list = std::move(now);
    return hasChanged;
}

std::size_t System::CountInterfaces() const {
    const std::lock_guard lock(m_mutex);
    return m_list.size();
}

std::string System::InterfaceId(std::size_t index) const {
    const std::lock_guard lock(m_mutex);
    if (index >= m_list.size())
        throw GenTLError(GC_ERR_INVALID_INDEX, fmt::format("The list has no interface {}", index));
    return m_list[index];
}

bool System::IsPort(const std::string& id) const {
    {
        const std::lock_guard lock(m_mutex);
        if (std::ranges::find(m_list, id) != m_list.end())
            return true;
    }
    return m_discovery.Find(id).has_value();
}

Info System::GetInterfaceInfo(const std::string& id, INTERFACE_INFO_CMD command) const {
    if (!IsPort(id))
        throw GenTLError(GC_ERR_INVALID_ID, fmt::format("There is no interface '{}'", id));
    return Interface::GetInfo(id, command);
}

/**
 * \brief Open an interface, also without an update before
 * \throw GenTLError INVALID_ID, RESOURCE_IN_USE
 */
std::shared_ptr<Interface> System::OpenInterface(const std::string& id) {
    if (!IsPort(id)) {
        m_discovery.Begin();
        m_discovery.WaitForPorts(DeadlineAfter(kPortsPatience));
    }
    if (!IsPort(id))
        throw GenTLError(GC_ERR_INVALID_ID, fmt::format("There is no interface '{}'", id));
    const std::lock_guard lock(m_mutex);
    if (m_isClosed)
        throw GenTLError(GC_ERR_INVALID_HANDLE, "The system was closed");
    std::shared_ptr<Interface>& one = m_interfaces[id];
    if (one && one->IsOpen())
        throw GenTLError(GC_ERR_RESOURCE_IN_USE, "The interface is open already");
    one = std::make_shared<Interface>(Handles(), shared_from_this(), m_layer, m_discovery, id);
    Handles().Add(one);
    return one;
}

std::vector<Feature> System::MakeFeatures() {
    const auto text = [](TL_INFO_CMD command) {
        return [command] { return std::get<std::string>(ProducerInfo(command)); };
    };
    const auto select = [this](std::int64_t value) {
        if (value < 0 || value >= std::max<std::int64_t>(1, static_cast<std::int64_t>(CountInterfaces())))
            throw GenTLError(GC_ERR_INVALID_VALUE, "The list has no such interface");
        m_selected = value;
    };
    const auto selectedId = [this] {
        const std::lock_guard lock(m_mutex);
        const auto index = static_cast<std::size_t>(m_selected.load());
        return index < m_list.size() ? m_list[index] : std::string();
    };
    FeatureList list;
    list.Category("SystemInformation")
        .Text("TLID", "ID of the producer", text(TL_INFO_ID))
        .Text("TLVendorName", "Name of the producer's maker", text(TL_INFO_VENDOR))
        .Text("TLModelName", "Name of the producer", text(TL_INFO_MODEL))
        .Text("TLVersion", "Version of the producer", text(TL_INFO_VERSION))
        .Text("TLFileName", "Name of the producer's file", text(TL_INFO_NAME))
        .Text("TLDisplayName", "Name to show", text(TL_INFO_DISPLAYNAME))
        .Text("TLPath", "Path of the producer's file", text(TL_INFO_PATHNAME))
        .Enumeration("TLType", "Kind of transport", TransportTypes(), [] { return 0; })
        .Integer("GenTLVersionMajor", "Major version of GenTL", [] { return kGenTLMajor; })
        .Integer("GenTLVersionMinor", "Minor version of GenTL", [] { return kGenTLMinor; })
        .Integer("GenTLSFNCVersionMajor", "Major version of the naming convention", [] { return 1; })
        .Integer("GenTLSFNCVersionMinor", "Minor version of the naming convention", [] { return 2; })
        .Category("InterfaceEnumeration")
        .Command("InterfaceUpdateList", "Reads the ports again", [this] { UpdateInterfaces(kFeatureUpdatePatience); })
        .Index(
            "InterfaceSelector", "Chooses an interface of the list", [this] { return m_selected.load(); }, select)
        .Text("InterfaceID", "ID of the chosen interface", selectedId, "InterfaceSelector")
        .Text(
            "InterfaceDisplayName", "Name to show of the chosen interface",
            [selectedId] { return "Camera Link port " + selectedId(); }, "InterfaceSelector");
    return list.Take();
}

PortFacts System::Facts() const {
    return {.id = ProducerPath(),
            .vendor = kVendor,
            .model = kModel,
            .module = "TLSystem",
            .version = ProducerVersion(),
            .portName = "TLPort"};
}

}  // namespace gentl
