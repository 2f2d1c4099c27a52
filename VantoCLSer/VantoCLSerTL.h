/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The transport layer: enumerates Camera Link serial ports and makes devices of the cameras found
 */
#pragma once

#include <map>
#include <memory>
#include <mutex>

#include "VantoCLSer/VantoCLSerPort.h"
#include "VantoCLSer/configuration/PortConfiguration.h"
#include "os/LockName.h"
#include "vanto/internal/TransportLayerPrivateImpl.h"

namespace Vanto {

/// One object a process; see Create in VantoCLSerModule.cpp. Thread-safe.
class CVantoCLSerTl : public CTransportLayerBase<ITransportLayer>, public IXmlFileProvider {
public:
    CVantoCLSerTl();
    ~CVantoCLSerTl() override;

    CTlInfo GetTlInfo() const override;

    bool CanProvideXMLFile(const IProperties& info) override;
    void ProvideXMLFile(const IProperties& info, gcstring& source, gcstring& xml) override;

    std::size_t UpdatePortConfiguration();
    CVantoCLSerPort& GetOrCreatePort(const gcstring& portId);

protected:
    int InternalEnumerateDevices(DeviceInfoList& list) override;
    IVantoDevice* InternalCreateDevice(const CDeviceInfo& info) override;
    CDeviceInfo InternalCreateDeviceInfo() override;
    gcstring GetDeviceClass() const override;
    bool InternalIsDeviceAccessible(const CDeviceInfo& info, AccessModeSet mode,
                                    AccessibilityCode* accessibility) override;

private:
    using Entries = std::shared_ptr<const PortConfigurationList>;

    Entries GetEntries() const;
    void EnumerateInto(DeviceInfoList& list, int& count);
    std::size_t ProbePorts(const gcstring_vector& ports, gcstring_vector& slots);

    // Guards the members below. Recursive, and released while the configuration file is read.
    mutable std::recursive_mutex m_lock;
    [[no_unique_address]] const os::LockName m_lockName{&m_lock, "transport layer"};
    std::map<gcstring, std::unique_ptr<CVantoCLSerPort>> m_ports;
    Entries m_entries = std::make_shared<PortConfigurationList>();
    gcstring m_configurationPath;
    std::int64_t m_configurationTime = 0;
};

const PortConfiguration* FindBestPortConfiguration(const gcstring& portId, const gcstring& deviceId,
                                                   const PortConfigurationList& entries);

}  // namespace Vanto
