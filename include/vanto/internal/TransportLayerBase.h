/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The frame that the SDK's transport layers share: filters, lookup by partial info, the registry of devices
 */
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <utility>

#include "GenApi/GenApi.h"
#include "os/Environment.h"
#include "vanto/TransportLayer.h"
#include "vanto/TransportLayerParams.h"
#include "vanto/internal/DeviceRegistry.h"
#include "vanto/internal/TransportLayerMessages.h"

namespace Vanto {

/// Implements every operation of ITransportLayer upon a few hooks of the concrete transport layer. Thread-safe as far
/// as the hooks are.
template <class Interface>
class CTransportLayerBase : public Interface, public ITransportLayerPrivate, protected CRefCounted {
public:
    CTransportLayerBase() : m_params(CreateDefaultTransportLayerParams(), &DestroyDefaultTransportLayerParams) {
        ++m_references;
        Messages::Log();  // so that no message later has to fetch it
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

    int EnumerateDevices(DeviceInfoList& list, const DeviceInfoList& filter, bool addToList = false) override;

    int EnumerateDevices(DeviceInfoList& list, bool addToList = false) override {
        return EnumerateDevices(list, DeviceInfoList(), addToList);
    }

    IVantoDevice* CreateDevice(const gcstring& fullName) override;

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

    void DestroyDevice(IVantoDevice* device) override;

    bool IsDeviceAccessible(const CDeviceInfo& info, AccessModeSet mode = AccessModeSet(),
                            AccessibilityCode* accessibility = nullptr) override;

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
    virtual IVantoDevice* CreateDeviceFromInfo(const CDeviceInfo& info, const gcstring_vector& injectedXml);

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
    using Messages = TransportLayerMessages;

    bool CanSelectThisClass(const DeviceInfoList& filter) const;
    int FilterDeviceList(const DeviceInfoList& all, const DeviceInfoList& filter, DeviceInfoList& out) const;
    void CheckDeviceClass(const CDeviceInfo& partial) const;
    // Resolves a partial record of the user to the complete record of one device.
    void FindDevice(const CDeviceInfo& partial, CDeviceInfo& result, bool allowAmbiguous);
    CDeviceInfo SelectDevice(const CDeviceInfo& partial, bool allowAmbiguous);
    IVantoDevice* CreateResolved(const CDeviceInfo& info, const gcstring_vector& injectedXml, bool allowAmbiguous);
    void RunCreationHook(CDeviceInfo& deviceInfo, gcstring_vector& injected);

    std::atomic<std::uint32_t> m_references{0};
    // Those of its devices that were not destroyed yet.
    std::unique_ptr<DeviceRegistry> m_registry = std::make_unique<DeviceRegistry>();
    gcstring m_restrictingDeviceClass;
    std::unique_ptr<GenApi::INodeMap, void (*)(GenApi::INodeMap*)> m_params;
    std::atomic<IDeviceCreationHook*> m_creationHook{nullptr};
};

}  // namespace Vanto
