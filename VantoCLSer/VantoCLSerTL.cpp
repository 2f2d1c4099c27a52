/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The transport layer: configuration, ports, enumeration and probing
 */

#include "VantoCLSer/VantoCLSerTL.h"

#include <optional>
#include <set>
#include <source_location>

#include "CLProtocol/CLPort.h"
#include "CLProtocol/DeviceID.h"
#include "VantoCLSer/VantoCLSerDevice.h"
#include "VantoCLSer/VantoCLSerTLInfo.h"
#include "VantoCLSer/VantoCLSerTlDeviceInfoImpl.h"
#include "VantoCLSer/base/Log.h"
#include "os/File.h"
#include "os/Path.h"
#include "vanto/internal/VantoException.h"

namespace Vanto {

using CLProtocol::CCLPort;
using CLProtocol::CDeviceID;
using GenICam::GenericException;
using GenICam::InvalidArgumentException;
using GenICam::RuntimeException;

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerTL";

// Only the maker's own cameras are probed for.
constexpr char kManufacturer[] = "Marlow";

gcstring_vector SelectEnabledPorts(const gcstring_vector& available, const PortConfigurationList& entries) {
    std::set<gcstring> enabled;
    for (const PortConfiguration& entry : entries) {
        if (entry.enabled)
            enabled.insert(entry.id);
    }
    gcstring_vector usable;
    for (const gcstring& port : available) {
        if (enabled.count(port) != 0)
            usable.push_back(port);
    }
    return usable;
}

gcstring_vector SelectTemplates(const gcstring_vector& templates) {
    gcstring_vector usable;
    for (const gcstring& text : templates) {
        CDeviceID id;
        if (id.FromString(text) && id.GetCameraManufacturer() == kManufacturer)
            usable.push_back(text);
    }
    return usable;
}

// 0: another maker's; 1: the maker matches, 2: the family, too, 3: the model, too.
int Score(const PortConfiguration& entry, const CDeviceID& id) {
    if (entry.manufacturer != id.GetCameraManufacturer())
        return 0;
    if (entry.family != id.GetCameraFamily())
        return 1;
    return entry.model != id.GetCameraModel() ? 2 : 3;
}

// The port and the camera that a record names.
struct CameraAddress {
    gcstring portId;
    gcstring deviceId;
};

CameraAddress ReadAddress(const IProperties& info, std::source_location where = std::source_location::current()) {
    CameraAddress address;
    if (!info.GetPropertyValue("PortID", address.portId))
        throw VANTO_EXCEPTION_AT(RuntimeException, kSource, where)("Missing PortID property in device info");
    if (!info.GetPropertyValue("DeviceID", address.deviceId))
        throw VANTO_EXCEPTION_AT(RuntimeException, kSource, where)("Missing DeviceID property in device info");
    return address;
}

gcstring GetProperty(const IProperties& info, const char* name) {
    gcstring value;
    return info.GetPropertyValue(name, value) ? value : CInfoBase::PropertyNotAvailable;
}

template <class Exception, class... Arguments>
[[noreturn]] void ThrowLogged(const GenICam::ExceptionReporter<Exception>& reporter, const char* format,
                              const Arguments&... arguments) {
    LogTrace(TlLog(), tracelog::kError, format, arguments...);
    throw reporter.Report(format, arguments...);
}

// The text between the markers of the comment in which a description says where it comes from.
std::optional<gcstring> FindSourceComment(const gcstring& xml) {
    static constexpr char kOpen[] = "<!-- |";
    constexpr std::size_t kOpenLength = sizeof(kOpen) - 1;
    const std::size_t open = xml.find(kOpen);
    if (open == gcstring::npos)
        return std::nullopt;
    const std::size_t close = xml.find("| -->", open + kOpenLength);
    if (close == gcstring::npos)
        return std::nullopt;
    return xml.substr(open + kOpenLength, close - open - kOpenLength);
}

}  // namespace

CVantoCLSerTl::CVantoCLSerTl() {
    FetchLogCategories();
}

CVantoCLSerTl::~CVantoCLSerTl() {
    const std::lock_guard lock(m_lock);
    DestroyAllDevices();
    for (auto& [portId, slot] : m_ports) {
        const std::unique_ptr<CVantoCLSerPort> port = std::move(slot);
        port->Close(false);
    }
}

CTlInfo CVantoCLSerTl::GetTlInfo() const {
    return GetTLInfo();
}

gcstring CVantoCLSerTl::GetDeviceClass() const {
    return kDeviceClass;
}

CDeviceInfo CVantoCLSerTl::InternalCreateDeviceInfo() {
    return CVantoCLSerDeviceInfo();
}

/**
 * \brief Read the port configuration file again if its path or modification time changed
 * \return Entries in the list; 0 when there is no file
 * \throw GenericException No path can be formed
 * \throw RuntimeException The file can't be parsed; the entries of the last good reading are kept
 * \context Any thread; the file is read without the lock, and of two readings at once the later wins
 */
std::size_t CVantoCLSerTl::UpdatePortConfiguration() {
    const std::string path = FindPortConfiguration();
    std::unique_lock lock(m_lock);
    const os::FileStatus status = os::GetFileStatus(path);
    if (status.state == os::FileState::kMissing) {
        m_configurationTime = 0;
        m_entries = std::make_shared<PortConfigurationList>();
        return 0;
    }
    if (status.state == os::FileState::kFound && m_configurationPath == path && m_configurationTime != 0 &&
        m_configurationTime == status.modified)
        return m_entries->size();
    lock.unlock();

    const auto entries = std::make_shared<PortConfigurationList>();
    ReadCLBindings(path, *entries);

    lock.lock();
    m_configurationTime = status.modified;
    m_configurationPath = path;
    m_entries = entries;
    return entries->size();
}

/**
 * \brief The one port object of a port identifier, made on first use and kept as long as the transport layer
 * \context Any thread
 */
CVantoCLSerPort& CVantoCLSerTl::GetOrCreatePort(const gcstring& portId) {
    const std::lock_guard lock(m_lock);
    auto found = m_ports.find(portId);
    // Made before its place: a port that can't be made must not leave an empty one.
    if (found == m_ports.end())
        found = m_ports.emplace(portId, std::make_unique<CVantoCLSerPort>(portId)).first;
    return *found->second;
}

CVantoCLSerTl::Entries CVantoCLSerTl::GetEntries() const {
    const std::lock_guard lock(m_lock);
    return m_entries;
}

/**
 * \brief Append a record for every camera that answers on an enabled port
 * \return The number of records appended; failures are logged and end the enumeration early
 * \context Any thread
 */
int CVantoCLSerTl::InternalEnumerateDevices(DeviceInfoList& list) {
    int count = 0;
    try {
        EnumerateInto(list, count);
    } catch (const GenericException& error) {
        LogTrace(TlLog(), tracelog::kError, "Exception in %s while enumerating devices. '%s'",
                 "Vanto::CVantoCLSerTl::InternalEnumerateDevices", error.GetDescription());
    }
    return count;
}

void CVantoCLSerTl::EnumerateInto(DeviceInfoList& list, int& count) {
    UpdatePortConfiguration();
    const Entries entries = GetEntries();
    gcstring_vector available;
    CCLPort::GetPortIDs(available);
    LogTrace(TlLog(), tracelog::kDebug, "GetPortIDs() found %u ports.", available.size());
    for (const gcstring& port : available)
        LogTrace(TlLog(), tracelog::kDebug, "Found available PortID '%s'", port);

    const gcstring_vector usable = SelectEnabledPorts(available, *entries);
    if (usable.empty()) {
        LogTrace(TlLog(), tracelog::kDebug,
                 "No valid usable PortIDs due to no enabled ports in PortConfiguration.xml. Enumeration will return 0 "
                 "devices.");
        return;
    }
    for (const gcstring& port : usable)
        LogTrace(TlLog(), tracelog::kDebug, "Valid usable PortID '%s'", port);

    gcstring_vector slots;
    ProbePorts(usable, slots);
    for (std::size_t index = 0; index < usable.size(); ++index) {
        if (slots[index].empty())
            continue;
        const PortConfiguration* entry = FindBestPortConfiguration(usable[index], slots[index], *entries);
        CVantoCLSerTlDeviceInfoImpl record(usable[index], slots[index]);
        if (entry != nullptr) {
            record.SetDeviceSpecificString(entry->deviceSpecificString);
            record.SetInitialBaudRate(entry->baudRate);
            // Made by the transport layer, like the rest: whoever looks for changes looks for the application's.
            record.GetInfoImpl().ClearAccessFlags();
        }
        list.push_back(record);
        ++count;
    }
}

/**
 * \brief Ask every port which camera is on it
 * \param[in] ports Ports to probe, one after the other
 * \param[out] slots At the index of its port the device identifier found, or the empty string
 * \return The number of slots that there were before
 */
std::size_t CVantoCLSerTl::ProbePorts(const gcstring_vector& ports, gcstring_vector& slots) {
    const std::size_t before = slots.size();
    slots.clear();
    if (ports.empty())
        return before;
    gcstring_vector templates;
    CCLPort::GetDeviceIDTemplates(templates);
    for (const gcstring& text : templates)
        LogTrace(TlLog(), tracelog::kDebug, "Found DeviceIDTemplate '%s'", text);
    const gcstring_vector usable = SelectTemplates(templates);
    slots.resize(ports.size());
    if (usable.empty()) {
        // The text stays as it is: logs are searched for it.
        LogTrace(TlLog(), tracelog::kDebug, "No usable usable DeviceIDTemplates found!");
        return before;
    }
    for (const gcstring& text : usable)
        LogTrace(TlLog(), tracelog::kDebug, "Usable DeviceIDTemplate: '%s'", text);

    for (std::size_t index = 0; index < ports.size(); ++index) {
        const gcstring deviceId = GetOrCreatePort(ports[index]).Probe(&usable);
        if (deviceId.empty())
            continue;
        LogTrace(TlLog(), tracelog::kDebug, "Port '%s' adding '%s' to slot %u!", ports[index], deviceId, index);
        slots[index] = deviceId;
    }
    for (std::size_t index = 0; index < ports.size(); ++index)
        LogTrace(TlLog(), tracelog::kDebug, "Probed '%s' found '%s'", ports[index], slots[index]);
    return before;
}

/**
 * \brief The configuration entry that fits a camera best
 * \return The enabled entry of the port with the highest score, the first of equals; null when none matches
 */
const PortConfiguration* FindBestPortConfiguration(const gcstring& portId, const gcstring& deviceId,
                                                   const PortConfigurationList& entries) {
    int bestScore = 0;
    const PortConfiguration* best = nullptr;
    for (const PortConfiguration& entry : entries) {
        if (!entry.enabled || entry.id != portId)
            continue;
        CDeviceID id;
        if (!id.FromString(deviceId)) {
            LogTrace(TlLog(), tracelog::kWarning, "Could not parse DeviceID '%s', skipping!", deviceId);
            continue;
        }
        const int score = Score(entry, id);
        if (score > bestScore) {
            bestScore = score;
            best = &entry;
        }
    }
    return best;
}

/**
 * \brief Make the device of a complete record, its port connected to the camera
 * \throw InvalidArgumentException The record names no port
 * \throw RuntimeException It has no device identifier, or the camera can't be connected
 * \context Any thread
 */
IVantoDevice* CVantoCLSerTl::InternalCreateDevice(const CDeviceInfo& info) {
    gcstring portId;
    gcstring deviceId;
    if (!info.GetPropertyValue("PortID", portId) || portId.empty())
        ThrowLogged(GenICam::ExceptionReporter<InvalidArgumentException>(kSource, __LINE__, "InvalidArgumentException"),
                    "Missing PortID property in device info of '%s'", info.GetFullName());
    if (!info.GetPropertyValue("DeviceID", deviceId))
        ThrowLogged(GenICam::ExceptionReporter<RuntimeException>(kSource, __LINE__, "RuntimeException"),
                    "Missing DeviceID property in device info of '%s'", info.GetFullName());
    CVantoCLSerPort& port = GetOrCreatePort(portId);
    if (!port.Connect(deviceId))
        ThrowLogged(GenICam::ExceptionReporter<RuntimeException>(kSource, __LINE__, "RuntimeException"),
                    "Could not open CLPort with PortID '%s' and DeviceID '%s'.", portId, deviceId);
    // The text stays as it is: logs are searched for it.
    LogTrace(TlLog(), tracelog::kDebug, "Successfully opend CLPort with PortID '%s' and DeviceID '%s'.", portId,
             deviceId);
    // Without a device the connection ends: it would keep the camera from being opened again.
    PortConnection connection(&port);
    CVantoCLSerDevice* const device = CVantoCLSerDevice::Create(info, port);
    static_cast<void>(connection.release());
    return device;
}

/**
 * \brief Whether the camera of a record holds a description
 * \return false, logged, also when it can't be asked
 * \context Any thread; the port is opened for the call where it is closed
 */
bool CVantoCLSerTl::CanProvideXMLFile(const IProperties& info) {
    static constexpr char kText[] = "Exception while calling CCLPort::GetXML error: '%s'";
    try {
        const CameraAddress address = ReadAddress(info);
        return GetOrCreatePort(address.portId).HasXML(address.deviceId);
    } catch (const GenericException& error) {
        LogTrace(TlLog(), tracelog::kError, kText, error.GetDescription());
    } catch (const std::exception& error) {
        LogTrace(TlLog(), tracelog::kError, kText, error.what());
    } catch (...) {
        LogTrace(TlLog(), tracelog::kError, "Unspecified exception while calling CCLPort::GetXML");
    }
    return false;
}

/**
 * \brief Fetch the description that the camera of a record holds
 * \param[out] source What the description says of its own source in a comment; untouched without one
 * \param[out] xml The description
 * \throw RuntimeException It can't be fetched
 * \context Any thread; the port is opened for the call where it is closed
 */
void CVantoCLSerTl::ProvideXMLFile(const IProperties& info, gcstring& source, gcstring& xml) {
    const auto fail = [&info](const char* reason, std::source_location where = std::source_location::current()) {
        LogTrace(TlLog(), tracelog::kError, "Exception while calling CCLPort::GetXML error: '%s'", reason);
        return VANTO_EXCEPTION_AT(RuntimeException, kSource, where)("Could not get XML for device '%s' (%s)",
                                                                    GetProperty(info, "FriendlyName"), reason);
    };
    gcstring text;
    try {
        const CameraAddress address = ReadAddress(info);
        text = GetOrCreatePort(address.portId).GetXML(address.deviceId);
        if (const std::optional<gcstring> comment = FindSourceComment(text))
            source = *comment;
    } catch (const GenericException& error) {
        throw fail(error.GetDescription());
    } catch (const std::exception& error) {
        throw fail(error.what());
    }
    if (text.empty()) {
        LogTrace(TlLog(), tracelog::kWarning, "ProvideXMLFile will return an empty string!");
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Could not get XML for device '%s'",
                                                         GetProperty(info, "FriendlyName"));
    }
    constexpr std::size_t kLoggedCharacters = 500;
    LogTrace(TlLog(), tracelog::kTrace, "Downloaded XML starts with '%s'...", text.substr(0, kLoggedCharacters));
    xml = text;
}

/**
 * \brief Whether the camera of a record could be opened; the camera itself is not asked
 * \param[out] accessibility May be null
 * \context Any thread
 */
bool CVantoCLSerTl::InternalIsDeviceAccessible(const CDeviceInfo& info, AccessModeSet,
                                               AccessibilityCode* accessibility) {
    AccessibilityCode code = Accessibility_Unknown;
    try {
        const CameraAddress address = ReadAddress(info);
        const std::lock_guard lock(m_lock);
        code = GetOrCreatePort(address.portId).IsConnected() ? Accessibility_OpenedExclusively : Accessibility_Ok;
    } catch (const std::exception& error) {
        LogTrace(TlLog(), tracelog::kError, "Error checking accessibility err='%hs'...", error.what());
    }
    if (accessibility != nullptr)
        *accessibility = code;
    return code == Accessibility_Ok;
}

}  // namespace Vanto
