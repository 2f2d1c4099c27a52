/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The frame that the SDK's transport layers share: filters, lookup by partial info, the registry of devices
 */
#pragma once

#include <atomic>
#include <memory>
#include <source_location>
#include <string>
#include <utility>

#include "GenApi/GenApi.h"
#include "os/Environment.h"
#include "vanto/ConfigFileRegistry.h"
#include "vanto/Device.h"
#include "vanto/TlFactory.h"
#include "vanto/TraceLog.h"
#include "vanto/TransportLayerParams.h"
#include "vanto/VantoFolders.h"
#include "vanto/internal/DeviceRegistry.h"
#include "vanto/internal/VantoException.h"

namespace Vanto {

/// Implements every operation of ITransportLayer upon a few hooks of the concrete transport layer. Thread-safe as far
/// as the hooks are.
template <class Interface>
class CTransportLayerBase : public Interface, public ITransportLayerPrivate, protected CRefCounted {
public:
    CTransportLayerBase() : m_params(CreateDefaultTransportLayerParams(), &DestroyDefaultTransportLayerParams) {
        ++m_references;
        FrameLog();  // so that no message later has to fetch it
        // Read once: later changes of the environment have no effect on this object.
        constexpr std::size_t kBufferSize = 256;
        const os::EnvironmentValue value = os::GetEnvironment("VANTO_USE_TL", kBufferSize);
        if (value.status == os::EnvironmentStatus::kTooLong)
            m_restrictingDeviceClass = gcstring(kBufferSize, '?');  // restricts to a class that no one has
        else
            m_restrictingDeviceClass = value.text;
    }

    CTransportLayerBase(const CTransportLayerBase&) = delete;
    CTransportLayerBase& operator=(const CTransportLayerBase&) = delete;

    int EnumerateDevices(DeviceInfoList& list, const DeviceInfoList& filter, bool addToList = false) override {
        if (!addToList)
            list.clear();
        if (!IsTlAllowed())
            return 0;
        if (filter.empty())
            return InternalEnumerateDevices(list);
        if (!CanSelectThisClass(filter))
            return 0;
        DeviceInfoList all;
        InternalEnumerateDevices(all);
        return FilterDeviceList(all, filter, list);
    }

    int EnumerateDevices(DeviceInfoList& list, bool addToList = false) override {
        return EnumerateDevices(list, DeviceInfoList(), addToList);
    }

    IVantoDevice* CreateDevice(const gcstring& fullName) override {
        if (!IsTlAllowed())
            return nullptr;
        DeviceInfoList all;
        if (InternalEnumerateDevices(all) == 0)
            return nullptr;
        for (const CDeviceInfo& record : all) {
            if (record.GetFullName() == fullName)
                return CreateDevice(record);
        }
        return nullptr;
    }

    IVantoDevice* CreateDevice(const CDeviceInfo& info, const gcstring_vector& injectedXml) override {
        return CreateResolved(info, injectedXml, false);
    }
    IVantoDevice* CreateDevice(const CDeviceInfo& info) override { return CreateDevice(info, gcstring_vector()); }
    IVantoDevice* CreateFirstDevice(const CDeviceInfo& info, const gcstring_vector& injectedXml) override {
        return CreateResolved(info, injectedXml, true);
    }
    IVantoDevice* CreateFirstDevice(const CDeviceInfo& info) override {
        return CreateFirstDevice(info, gcstring_vector());
    }

    void DestroyDevice(IVantoDevice* device) override {
        if (!m_registry->Remove(device))
            throw VANTO_EXCEPTION(LogicalErrorException,
                                  kFrameSource)("Trying to destroy device which hasn't been created by me");
        DeviceRegistry::DestroySelf(device);
        // May delete this object: nothing follows.
        CTlFactory::GetInstance().ReleaseTl(this);
    }

    bool IsDeviceAccessible(const CDeviceInfo& info, AccessModeSet mode = AccessModeSet(),
                            AccessibilityCode* accessibility = nullptr) override {
        if (!info.IsUserProvided())
            return InternalIsDeviceAccessible(info, mode, accessibility);
        CheckDeviceClass(info);
        CDeviceInfo resolved;
        FindDevice(info, resolved, false);
        return InternalIsDeviceAccessible(resolved, mode, accessibility);
    }

    CDeviceInfo CreateDeviceInfo() override { return InternalCreateDeviceInfo(); }

    GenApi::INodeMap* GetNodeMap() override {
        GenApi::INodeMap* own = InternalGetNodeMap();
        return own != nullptr ? own : m_params.get();
    }

    void* ReservedOperation(const CDeviceInfo& info, void* argument) override {
        return InternalReservedOperation(info, argument);
    }

    IXmlFileProvider* GetXmlFileProvider() override { return dynamic_cast<IXmlFileProvider*>(this); }

protected:
    virtual bool IsTlAllowed() const {
        return m_restrictingDeviceClass.empty() || this->GetTlInfo().GetDeviceClass() == m_restrictingDeviceClass;
    }

    /// Makes a device of a complete record: chooses its description, has it build its node map, registers it.
    virtual IVantoDevice* CreateDeviceFromInfo(const CDeviceInfo& info, const gcstring_vector& injectedXml) {
        if (!IsTlAllowed())
            throw VANTO_EXCEPTION(RuntimeException, kFrameSource)(
                "Device creation failed. Transport layer is restricted by the environment");
        CDeviceInfo deviceInfo(info);
        gcstring_vector injected(injectedXml);
        const Binding binding = CConfigFileRegistry::GetInstance().GetXmlFileBinding(deviceInfo);
        if (binding.hasMergeFile) {
            const gcstring text = textFileToString(binding.mergeFile);
            tracelog::LogTrace(FrameLog(), tracelog::kDebug, "About to merge file '%s' into xml.", binding.mergeFile);
            injected.push_back(text);
        }
        RunCreationHook(deviceInfo, injected);
        IVantoDevice* device = InternalCreateDevice(deviceInfo);
        if (device == nullptr)
            throw VANTO_EXCEPTION(RuntimeException,
                                  kFrameSource)("Internal error. Device creation failed. Created device is NULL.");
        auto* self = dynamic_cast<IVantoDevicePrivate*>(device);
        if (self == nullptr) {
            tracelog::LogTrace(FrameLog(), tracelog::kError,
                               "Device creation failed. Device doesn't implement IVantoDevicePrivate interface");
            throw VANTO_EXCEPTION(RuntimeException, kFrameSource)(
                "Internal error. Device creation failed. Device doesn't implement IVantoDevicePrivate interface");
        }
        try {
            const gcstring source = BuildNodeMaps(*device, *self, deviceInfo, binding, injected);
            // The device's own record, which only its maker may label.
            const_cast<CDeviceInfo&>(device->GetDeviceInfo()).SetPropertyValue("XMLSource", source);
            m_registry->Add(device);
            ++m_references;
        } catch (...) {
            self->DestroySelf();
            throw;
        }
        return device;
    }

    virtual void DestroyAllDevices() { m_registry->DestroyAll(); }

    // Hooks of the concrete transport layer

    /// Appends a record for every device found; never clears the list. Returns how many it appended.
    virtual int InternalEnumerateDevices(DeviceInfoList& list) = 0;
    virtual IVantoDevice* InternalCreateDevice(const CDeviceInfo& info) = 0;
    virtual CDeviceInfo InternalCreateDeviceInfo() = 0;
    virtual bool MatchesFilter(const CDeviceInfo& device, const CDeviceInfo& filterEntry) const {
        return device.IsSubset(filterEntry);
    }
    virtual gcstring GetDeviceClass() const = 0;
    virtual bool HasDeviceSpecificDiscovery(const CDeviceInfo&) const { return false; }
    virtual CDeviceInfo FindDeviceSpecific(const CDeviceInfo&) {
        throw "Internal error. No device specific device discovery available.";
    }
    virtual GenApi::INodeMap* InternalGetNodeMap() { return nullptr; }
    virtual void* InternalReservedOperation(const CDeviceInfo&, void*) { return nullptr; }
    virtual bool InternalIsDeviceAccessible(const CDeviceInfo& info, AccessModeSet mode,
                                            AccessibilityCode* accessibility) = 0;

public:
    // What follows stands behind the operations above, as it takes slots, too, of which separately built callers know.

    // ITransportLayerPrivate

    std::uint32_t Release() override {
        // Stops at 0: the destructor counts down, which would take it the whole range of the type.
        std::uint32_t held = m_references;
        do {
            if (held == 0)
                return 0;
        } while (!m_references.compare_exchange_weak(held, held - 1));
        if (held == 1)
            this->OnFinalRelease();
        return held - 1;
    }

    IDeviceCreationHook* SetCreationHook(IDeviceCreationHook* hook) override { return m_creationHook.exchange(hook); }

    virtual ~CTransportLayerBase() {
        // Outstanding references do not keep the object alive.
        ++m_references;
        while (m_references-- != 1) {
        }
        this->OnFinalRelease();
        m_registry->DestroyAll();
        m_registry.reset();
        m_params.reset();
    }

private:
    using Binding = CConfigFileRegistry::CBinding;

    static constexpr char kFrameSource[] = "include/vanto/internal/TransportLayerPrivateImpl";

    static tracelog::CategoryId FrameLog() {
        static const tracelog::CategoryId category = tracelog::LogGetCatID("vanto.base.TL");
        return category;
    }

    // The line is that of whoever calls it.
    [[noreturn]] static void LogAndThrow(const std::string& message,
                                         std::source_location where = std::source_location::current()) {
        tracelog::LogTrace(FrameLog(), tracelog::kError, "%s", message);
        throw VANTO_EXCEPTION_AT(RuntimeException, kFrameSource, where)("%s", message);
    }

    void RunCreationHook(CDeviceInfo& deviceInfo, gcstring_vector& injected) {
        IDeviceCreationHook* hook = m_creationHook;
        if (hook == nullptr)
            return;
        hook->OnCreateDevice(deviceInfo, injected);
        if (deviceInfo.GetInfoImpl().IsModified())
            throw VANTO_EXCEPTION(RuntimeException,
                                  kFrameSource)("Device creation failed. Bad device information supplied.");
    }

    // Returns where the description came from.
    gcstring BuildNodeMaps(IVantoDevice& device, IVantoDevicePrivate& self, const CDeviceInfo& deviceInfo,
                           const Binding& binding, const gcstring_vector& injected) {
        const gcstring name = device.GetDeviceInfo().GetFullName();
        IXmlFileProvider* provider = binding.useDeviceDescription ? GetXmlFileProvider() : nullptr;
        if (provider != nullptr && provider->CanProvideXMLFile(device.GetDeviceInfo()))
            return BuildFromCamera(*provider, self, deviceInfo, injected, name);
        if (!binding.hasDescriptionFile) {
            static constexpr char kText[] =
                "Device creation failed. Don't know what XML configuration file to use for the device %s";
            tracelog::LogTrace(FrameLog(), tracelog::kError, kText, name);
            throw VANTO_EXCEPTION(RuntimeException, kFrameSource)(kText, name);
        }
        tracelog::LogTrace(FrameLog(), tracelog::kDebug, "Using XML from path '%s' for device '%s'",
                           binding.descriptionFile, name);
        self.CreateNodeMapFromFile(binding.descriptionFile, injected);
        if (IsChunkFeatureEnabled())
            self.CreateChunkNodeMapFromFile(binding.descriptionFile, injected);
        return binding.descriptionFile;
    }

    gcstring BuildFromCamera(IXmlFileProvider& provider, IVantoDevicePrivate& self, const CDeviceInfo& deviceInfo,
                             const gcstring_vector& injected, const gcstring& name) {
        try {
            gcstring source;
            gcstring xml;
            provider.ProvideXMLFile(deviceInfo, source, xml);
            tracelog::LogTrace(FrameLog(), tracelog::kDebug, "Downloaded XML from device '%s' length %d", name,
                               xml.size());
            self.CreateNodeMapFromString(xml, injected);
            if (IsChunkFeatureEnabled())
                self.CreateChunkNodeMapFromString(xml, injected);
            return source.empty() ? gcstring("Device") : gcstring("Device") + ":" + source;
        } catch (const std::exception& error) {
            tracelog::LogTrace(FrameLog(), tracelog::kDebug, "Error downloading XML from device '%s': %s", name,
                               error.what());
            throw;
        } catch (...) {
            tracelog::LogTrace(FrameLog(), tracelog::kDebug, "Error downloading XML from device '%s'", name);
            throw;
        }
    }

    bool IsChunkFeatureEnabled() {
        GenApi::INodeMap* nodeMap = GetNodeMap();
        auto* enable = dynamic_cast<GenApi::IBoolean*>(
            nodeMap != nullptr ? nodeMap->GetNode("ChunkNodeMapSupportEnable") : nullptr);
        return enable != nullptr && GenApi::IsReadable(enable->GetAccessMode()) && enable->GetValue();
    }

    bool CanSelectThisClass(const DeviceInfoList& filter) const {
        for (const CDeviceInfo& entry : filter) {
            if (!entry.IsDeviceClassAvailable() || entry.GetDeviceClass() == GetDeviceClass())
                return true;
        }
        return false;
    }

    int FilterDeviceList(const DeviceInfoList& all, const DeviceInfoList& filter, DeviceInfoList& out) const {
        int count = 0;
        for (const CDeviceInfo& record : all) {
            for (const CDeviceInfo& entry : filter) {
                if (!MatchesFilter(record, entry))
                    continue;
                out.push_back(record);
                ++count;
                break;
            }
        }
        if (!all.empty())
            tracelog::LogTrace(FrameLog(), tracelog::kDebug,
                               "Filter applied to device list, count of devices before filter step = %d, after filter "
                               "step = %d.",
                               all.size(), count);
        return count;
    }

    void CheckDeviceClass(const CDeviceInfo& partial) const {
        if (!partial.IsDeviceClassAvailable() || partial.GetDeviceClass() == GetDeviceClass())
            return;
        LogAndThrow((gcstring("The device class ") + partial.GetDeviceClass() +
                     " is not supported by this transport layer. This transport layer supports " + GetDeviceClass() +
                     ".")
                        .str());
    }

    // Resolves a partial record of the user to the complete record of one device.
    void FindDevice(const CDeviceInfo& partial, CDeviceInfo& result, bool allowAmbiguous) {
        if (!IsTlAllowed())
            throw VANTO_EXCEPTION(RuntimeException, kFrameSource)(
                "Device not accessible. Transport layer is restricted by the environment");
        if (HasDeviceSpecificDiscovery(partial)) {
            result = FindDeviceSpecific(partial);
            if (MatchesFilter(result, partial))
                return;
            throw VANTO_EXCEPTION(RuntimeException, kFrameSource)(
                "The found device does not contain all the provided device info properties.");
        }
        CheckDeviceClass(partial);
        result = SelectDevice(partial, allowAmbiguous);
        gcstring bornFree;
        if (partial.GetPropertyValue("_BornFree", bornFree)) {
            result.SetPropertyValue("_BornFree", bornFree);
            // The transport layer's own mark: a creation hook that changes nothing has not modified the record.
            result.GetInfoImpl().ClearAccessFlags();
        }
    }

    CDeviceInfo SelectDevice(const CDeviceInfo& partial, bool allowAmbiguous) {
        DeviceInfoList all;
        if (InternalEnumerateDevices(all) == 0)
            LogAndThrow((gcstring("Cannot find device, no devices of ") + GetDeviceClass() + " available.").str());
        DeviceInfoList filter;
        filter.push_back(partial);
        DeviceInfoList matches;
        const int count = FilterDeviceList(all, filter, matches);
        if (count == 0)
            LogAndThrow("No device contains the provided device info properties. The number of possible devices is " +
                        std::to_string(all.size()) + ".");
        if (count != 1 && !allowAmbiguous)
            LogAndThrow("Ambiguous device info properties. " + std::to_string(count) + " out of " +
                        std::to_string(all.size()) + " devices contain the provided device info properties.");
        return matches.front();
    }

    IVantoDevice* CreateResolved(const CDeviceInfo& info, const gcstring_vector& injectedXml, bool allowAmbiguous) {
        if (!info.IsUserProvided())
            return CreateDeviceFromInfo(info, injectedXml);
        CDeviceInfo resolved;
        FindDevice(info, resolved, allowAmbiguous);
        return CreateDeviceFromInfo(resolved, injectedXml);
    }

    std::atomic<std::uint32_t> m_references{0};
    // Those of its devices that were not destroyed yet.
    std::unique_ptr<DeviceRegistry> m_registry = std::make_unique<DeviceRegistry>();
    gcstring m_restrictingDeviceClass;
    std::unique_ptr<GenApi::INodeMap, void (*)(GenApi::INodeMap*)> m_params;
    std::atomic<IDeviceCreationHook*> m_creationHook{nullptr};
};

}  // namespace Vanto
