/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CTlFactory: the application's way to transport layers and devices
 */
#pragma once

#include <memory>
#include <vector>

#include "vanto/TransportLayer.h"

namespace Vanto {

/// What a transport-layer library exports.
extern "C" {
using GetTLInfoListFunction = int(TlInfoList& list);
using CreateFunction = ITransportLayer*(const CTlInfo& info);
using DestroyFunction = void(ITransportLayer* tl);
}

/// A library in the folder of transport layers that could not be used, and why.
struct RejectedTl {
    gcstring path;    ///<  the library's file
    gcstring reason;  ///<  why it could not be used
};

/// Loads transport layers from the root's folder of transport layers, hands out, counts and releases them. Thread-safe.
class VANTOBASE_API CTlFactory : public IDeviceFactory {
public:
    static CTlFactory& GetInstance();

    int EnumerateTls(TlInfoList& list);
    ITransportLayer* CreateTl(const CTlInfo& info);
    ITransportLayer* CreateTl(const gcstring& deviceClass);
    void ReleaseTl(const ITransportLayer* tl);
    void ReleaseUnusedTls();
    std::vector<RejectedTl> GetRejectedTls() const;

    int EnumerateDevices(DeviceInfoList& list, const DeviceInfoList& filter, bool addToList = false) override;
    /// Finds the devices of all transport layers.
    int EnumerateDevices(DeviceInfoList& list, bool addToList = false) override;
    IVantoDevice* CreateDevice(const gcstring& fullName) override;
    IVantoDevice* CreateDevice(const CDeviceInfo& info, const gcstring_vector& injectedXml) override;
    /// As of IDeviceFactory, by the transport layer of the record's device class.
    IVantoDevice* CreateDevice(const CDeviceInfo& info) override;
    IVantoDevice* CreateFirstDevice(const CDeviceInfo& info, const gcstring_vector& injectedXml) override;
    /// As of IDeviceFactory, by the transport layer of the record's device class.
    IVantoDevice* CreateFirstDevice(const CDeviceInfo& info) override;
    void DestroyDevice(IVantoDevice* device) override;
    bool IsDeviceAccessible(const CDeviceInfo& info, AccessModeSet mode = AccessModeSet(),
                            AccessibilityCode* accessibility = nullptr) override;

    CTlFactory(const CTlFactory&) = delete;
    CTlFactory& operator=(const CTlFactory&) = delete;

private:
    CTlFactory();
    ~CTlFactory();

    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace Vanto
