/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A transport layer whose hooks a test fills in
 */
#pragma once

#include <atomic>
#include <functional>
#include <mutex>

#include "vanto/internal/TransportLayerPrivateImpl.h"

namespace clser_test {

using Vanto::CDeviceInfo;
using Vanto::DeviceInfoList;
using Vanto::gcstring;
using Vanto::gcstring_vector;

/// A device that does nothing but exist. Count what is alive with `alive`.
class TestDevice : public Vanto::IVantoDevice {
public:
    explicit TestDevice(const CDeviceInfo& info) : m_info(info) { ++alive; }
    ~TestDevice() override { --alive; }
    static inline std::atomic<int> alive{0};

    void Open(Vanto::AccessModeSet) override {}
    void Close() override {}
    bool IsOpen() const override { return false; }
    Vanto::AccessModeSet GetAccessMode() const override { return {}; }
    const CDeviceInfo& GetDeviceInfo() const override { return m_info; }
    std::uint32_t GetNumStreamGrabberChannels() override { return 0; }
    Vanto::IStreamGrabber* GetStreamGrabber(std::uint32_t) override { return nullptr; }
    void* GetReserved() override { return nullptr; }
    GenApi::INodeMap* GetNodeMap() override { return nullptr; }
    GenApi::INodeMap* GetTLNodeMap() override { return nullptr; }
    void* CreateChunkParser() override { return nullptr; }
    void DestroyChunkParser(void*) override {}
    void* CreateEventAdapter() override { return nullptr; }
    void DestroyEventAdapter(void*) override {}
    void* CreateSelfReliantChunkParser() override { return nullptr; }
    void DestroySelfReliantChunkParser(void*) override {}
    Vanto::DeviceCallbackHandle RegisterRemovalCallback(const Vanto::CDeviceRemovalCallback&) override { return 0; }
    bool DeregisterRemovalCallback(Vanto::DeviceCallbackHandle) override { return false; }

private:
    CDeviceInfo m_info;
};

/// One that a transport layer can register and destroy.
class PrivateTestDevice : public TestDevice, public Vanto::IVantoDevicePrivate {
public:
    using TestDevice::TestDevice;

    void CreateNodeMapFromFile(const gcstring&, const gcstring_vector&) override { ++filesLoaded; }
    void CreateNodeMapFromString(const gcstring&, const gcstring_vector& injected) override {
        {
            static std::mutex mutex;
            const std::lock_guard lock(mutex);
            injectedXml = injected;
        }
        if (onCreateNodeMap)
            onCreateNodeMap();
    }
    void CreateChunkNodeMapFromFile(const gcstring&, const gcstring_vector&) override { ++chunksFromFile; }
    void CreateChunkNodeMapFromString(const gcstring&, const gcstring_vector&) override { ++chunksFromString; }
    bool SupportsChunkParsing() const override { return false; }
    bool IsChunkParsingAvailable() const override { return false; }
    void DestroySelf() override {
        if (onDestroy)
            onDestroy();
        delete this;
    }
    std::shared_ptr<GenApi::CNodeMapRef> CreateChunkNodeMapCopy() override { return nullptr; }

    static inline std::function<void()> onCreateNodeMap;
    static inline gcstring_vector injectedXml;
    static inline std::atomic<int> filesLoaded;
    static inline std::atomic<int> chunksFromFile;
    static inline std::atomic<int> chunksFromString;
    std::function<void()> onDestroy;
};

class TestTl : public Vanto::CTransportLayerBase<Vanto::ITransportLayer>, public Vanto::IXmlFileProvider {
public:
    Vanto::CTlInfo GetTlInfo() const override {
        Vanto::CTlInfo info;
        info.SetDeviceClass("MarlowCameraLink");
        return info;
    }
    bool CanProvideXMLFile(const Vanto::IProperties&) override { return canProvide; }
    void ProvideXMLFile(const Vanto::IProperties&, gcstring&, gcstring& xml) override {
        if (onProvide)
            onProvide();
        xml = "<xml/>";
    }

    void DestroyAll() { DestroyAllDevices(); }
    bool IsAllowed() const { return IsTlAllowed(); }
    bool CallHasDeviceSpecificDiscovery() const {
        return CTransportLayerBase::HasDeviceSpecificDiscovery(CDeviceInfo());
    }
    CDeviceInfo CallFindDeviceSpecific() { return CTransportLayerBase::FindDeviceSpecific(CDeviceInfo()); }

    bool canProvide = true;
    std::function<void()> onProvide;
    DeviceInfoList devices;
    int enumerations = 0;
    std::function<void()> onEnumerate;
    std::function<Vanto::IVantoDevice*(const CDeviceInfo&)> onCreate = [](const CDeviceInfo& info) {
        return new PrivateTestDevice(info);
    };
    std::function<void()> onAccessible;
    std::shared_ptr<int> finalReleases = std::make_shared<int>(0);  ///< may outlive it
    CDeviceInfo created;
    CDeviceInfo asked;
    Vanto::AccessModeSet mode;
    bool isAccessible = true;
    bool hasSpecificDiscovery = false;
    CDeviceInfo specific;
    GenApi::INodeMap* nodeMap = nullptr;
    void* reserved = nullptr;
    const void* reservedArgument = nullptr;
    const CDeviceInfo* reservedInfo = nullptr;

protected:
    void OnFinalRelease() override { ++*finalReleases; }
    int InternalEnumerateDevices(DeviceInfoList& list) override {
        ++enumerations;
        if (onEnumerate)
            onEnumerate();
        for (const CDeviceInfo& info : devices)
            list.push_back(info);
        return static_cast<int>(devices.size());
    }
    Vanto::IVantoDevice* InternalCreateDevice(const CDeviceInfo& info) override {
        {
            const std::lock_guard lock(m_mutex);
            created = info;
        }
        return onCreate(info);
    }
    CDeviceInfo InternalCreateDeviceInfo() override {
        CDeviceInfo info;
        info.SetDeviceClass("MarlowCameraLink");
        return info;
    }
    gcstring GetDeviceClass() const override { return "MarlowCameraLink"; }
    bool HasDeviceSpecificDiscovery(const CDeviceInfo&) const override { return hasSpecificDiscovery; }
    CDeviceInfo FindDeviceSpecific(const CDeviceInfo&) override { return specific; }
    GenApi::INodeMap* InternalGetNodeMap() override { return nodeMap; }
    void* InternalReservedOperation(const CDeviceInfo& info, void* argument) override {
        reservedInfo = &info;
        reservedArgument = argument;
        return reserved;
    }
    bool InternalIsDeviceAccessible(const CDeviceInfo& info, Vanto::AccessModeSet given,
                                    Vanto::AccessibilityCode* code) override {
        asked = info;
        mode = given;
        if (onAccessible)
            onAccessible();
        if (code != nullptr)
            *code = Vanto::Accessibility_Ok;
        return isAccessible;
    }

private:
    std::mutex m_mutex;
};

}  // namespace clser_test
