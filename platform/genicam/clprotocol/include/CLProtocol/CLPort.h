/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CCLPort: a camera behind a Camera Link serial port, as a register space
 */
#pragma once

#include <cstdint>
#include <memory>

#include "Base/GCString.h"
#include "Base/GCStringVector.h"
#include "CLProtocol/CLException.h"
#include "CLProtocol/ISerial.h"
#include "GenApi/IPort.h"

namespace CLProtocol {

/// One connection to one camera: serial library, driver library and the driver's cookie. The static operations work
/// on all ports and drivers of the machine. Thread-safe: accesses to one port run one after the other.
class CLPROTOCOL_API CCLPort : public GenApi::IPort {
public:
    CCLPort();
    virtual ~CCLPort() noexcept(false);
    CCLPort(const CCLPort&) = delete;
    CCLPort& operator=(const CCLPort&) = delete;

    static void GetPortIDs(GenICam::gcstring_vector& portIds);
    static void GetDeviceIDTemplates(GenICam::gcstring_vector& templates);
    static GenICam::gcstring ProbeDevice(const GenICam::gcstring& portId, const GenICam::gcstring& deviceIdTemplate,
                                         std::uint32_t timeoutMs);

    void Connect(const GenICam::gcstring& portId, const GenICam::gcstring& deviceId);
    void Disconnect();
    /// Whether a camera is connected. Thread-safe.
    bool IsConnected() const;
    void SetSerialTimeOut(std::uint32_t timeoutMs);
    GenICam::gcstring GetDeviceID() const;
    GenICam::gcstring GetXML(bool useCache);
    void GetXMLIDs(GenICam::gcstring_vector& xmlIds);
    ISerial* GetSerial() const;

    GenApi::EAccessMode GetAccessMode() const override;
    void Read(void* buffer, std::int64_t address, std::int64_t length) override;
    void Write(const void* buffer, std::int64_t address, std::int64_t length) override;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace CLProtocol
