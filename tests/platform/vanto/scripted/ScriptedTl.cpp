/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A transport layer without cameras, for tests of the factory
 */

#include <memory>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>

#include "Base/GCException.h"
#include "scripted/ScriptedControl.h"
#include "vanto/TlFactory.h"

namespace {

using namespace Vanto;

constexpr const char* kClasses[] = {SCRIPTED_CLASSES};

scripted::Control g_control;

class ScriptedDevice : public IVantoDevice {
public:
    explicit ScriptedDevice(const CDeviceInfo& info) : m_info(info) { ++g_control.devices; }
    ~ScriptedDevice() override { --g_control.devices; }

    void Open(AccessModeSet) override {}
    void Close() override {}
    bool IsOpen() const override { return false; }
    AccessModeSet GetAccessMode() const override { return AccessModeSet(); }
    const CDeviceInfo& GetDeviceInfo() const override { return m_info; }
    std::uint32_t GetNumStreamGrabberChannels() override { return 0; }
    IStreamGrabber* GetStreamGrabber(std::uint32_t) override { return nullptr; }
    void* GetReserved() override { return nullptr; }
    GenApi::INodeMap* GetNodeMap() override { return nullptr; }
    GenApi::INodeMap* GetTLNodeMap() override { return nullptr; }
    void* CreateChunkParser() override { return nullptr; }
    void DestroyChunkParser(void*) override {}
    void* CreateEventAdapter() override { return nullptr; }
    void DestroyEventAdapter(void*) override {}
    void* CreateSelfReliantChunkParser() override { return nullptr; }
    void DestroySelfReliantChunkParser(void*) override {}
    DeviceCallbackHandle RegisterRemovalCallback(const CDeviceRemovalCallback&) override { return 0; }
    bool DeregisterRemovalCallback(DeviceCallbackHandle) override { return false; }

private:
    CDeviceInfo m_info;
};

class ScriptedTl : public ITransportLayer, public ITransportLayerPrivate {
public:
    int EnumerateDevices(DeviceInfoList& list, const DeviceInfoList& filter, bool addToList) override {
        ++g_control.enumerations;
        if (g_control.failEnumeration)
            throw RUNTIME_EXCEPTION("%s can't enumerate", kClasses[0]);
        if (!addToList)
            list.clear();
        for (int i = 0; i < g_control.devicesOffered; ++i) {
            const CDeviceInfo device = Describe(i);
            bool wanted = filter.empty();
            for (const CDeviceInfo& entry : filter)
                wanted = wanted || device.IsSubset(entry);
            if (wanted)
                list.push_back(device);
        }
        return -1;  // nobody should trust it
    }
    int EnumerateDevices(DeviceInfoList& list, bool addToList) override {
        return EnumerateDevices(list, DeviceInfoList(), addToList);
    }
    IVantoDevice* CreateDevice(const gcstring& fullName) override {
        for (int i = 0; i < g_control.devicesOffered; ++i) {
            if (Describe(i).GetFullName() == fullName)
                return Make(Describe(i));
        }
        return nullptr;
    }
    IVantoDevice* CreateDevice(const CDeviceInfo& info, const gcstring_vector&) override { return Make(info); }
    IVantoDevice* CreateDevice(const CDeviceInfo& info) override { return Make(info); }
    IVantoDevice* CreateFirstDevice(const CDeviceInfo& info, const gcstring_vector&) override { return Make(info); }
    IVantoDevice* CreateFirstDevice(const CDeviceInfo& info) override { return Make(info); }

    void DestroyDevice(IVantoDevice* device) override {
        {
            const std::lock_guard lock(m_mutex);
            const auto found = m_devices.find(device);
            if (found == m_devices.end())
                throw LOGICAL_ERROR_EXCEPTION("Not my device");
            m_devices.erase(found);
            delete static_cast<ScriptedDevice*>(device);
        }
        CTlFactory::GetInstance().ReleaseTl(this);
    }
    bool IsDeviceAccessible(const CDeviceInfo&, AccessModeSet, AccessibilityCode* accessibility) override {
        if (accessibility != nullptr)
            *accessibility = Accessibility_Ok;
        return true;
    }
    CTlInfo GetTlInfo() const override { return CTlInfo(); }
    CDeviceInfo CreateDeviceInfo() override { return CDeviceInfo(); }
    GenApi::INodeMap* GetNodeMap() override { return nullptr; }
    void* ReservedOperation(const CDeviceInfo&, void*) override { return nullptr; }
    IXmlFileProvider* GetXmlFileProvider() override { return nullptr; }

    std::uint32_t Release() override { return --m_references; }
    IDeviceCreationHook* SetCreationHook(IDeviceCreationHook*) override { return nullptr; }

private:
    static CDeviceInfo Describe(int index) {
        CDeviceInfo info;
        const std::string serial = std::to_string(index);
        info.SetDeviceClass(kClasses[0]);
        info.SetDeviceFactory(gcstring("Scripted/") + kClasses[0]);
        info.SetFullName(gcstring(kClasses[0]) + "#" + serial);
        info.SetModelName("Model");
        info.SetSerialNumber(serial);
        return info;
    }

    IVantoDevice* Make(const CDeviceInfo& info) {
        if (g_control.makeNoDevice)
            return nullptr;
        auto device = std::make_unique<ScriptedDevice>(info);
        const std::lock_guard lock(m_mutex);
        m_devices.insert(device.get());
        ++m_references;
        return device.release();
    }

    std::mutex m_mutex;
    std::set<IVantoDevice*> m_devices;
    std::atomic<std::uint32_t> m_references{1};
};

// Notices when Create and Destroy overlap.
class CallGuard {
public:
    CallGuard() {
        if (g_control.inCreateOrDestroy++ != 0)
            ++g_control.overlaps;
    }
    ~CallGuard() { --g_control.inCreateOrDestroy; }
};

ScriptedTl* g_singleton = nullptr;

}  // namespace

extern "C" {

GCBASE_EXPORT scripted::Control* GetControl() {
    return &g_control;
}

GCBASE_EXPORT int GetTLInfoList(TlInfoList& list) {
    for (const char* deviceClass : kClasses) {
        CTlInfo info;
        info.SetDeviceClass(deviceClass);
        info.SetFullName(gcstring("Scripted/") + deviceClass);
        list.push_back(info);
    }
    return 1;
}

GCBASE_EXPORT ITransportLayer* Create(const CTlInfo&) {
    const CallGuard guard;
    if (g_control.createMode == scripted::CreateMode::kThrow)
        throw std::runtime_error("Create failed on purpose");
    if (g_control.createMode == scripted::CreateMode::kNull)
        return nullptr;
    if (g_singleton == nullptr) {
        g_singleton = std::make_unique<ScriptedTl>().release();
        ++g_control.created;
    }
    return g_singleton;
}

GCBASE_EXPORT void Destroy(ITransportLayer* tl) {
    const CallGuard guard;
    if (tl == g_singleton)
        g_singleton = nullptr;
    ++g_control.destroyed;
    const std::unique_ptr<ScriptedTl> owned(dynamic_cast<ScriptedTl*>(tl));
}
}
