/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Connection: one camera on one serial line, as a cookie stands for it
 */
#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "CLProtocol/CLProtocolC.h"
#include "CameraFacts.h"
#include "CameraMemory.h"
#include "DescriptionFiles.h"
#include "Exchanger.h"
#include "KnownCameras.h"
#include "Logger.h"
#include "RateChanger.h"
#include "SerialLine.h"
#include "os/LockName.h"

namespace marlow {

/// Thread-safe: calls run one after the other. All throw DriverError. The line of a call is used during it only.
class Connection {
public:
    Connection(CLProtocol::ISerial& serial, Clock& clock, Logger& logger, KnownCameras& known);

    void Open(const DeviceRequest& request, Duration timeout, std::function<void()> stopCheck);
    std::string ShortDeviceId() const { return m_facts.name.ToShortDeviceId(); }

    void Read(CLProtocol::ISerial& serial, std::uint64_t address, std::span<std::uint8_t> data, Duration timeout);
    bool Write(CLProtocol::ISerial& serial, std::uint64_t address, gencp::ByteView data, Duration timeout);
    bool ContinueWrite(CLProtocol::ISerial& serial, bool isWaiting, Duration timeout);
    std::vector<std::string> XmlIds(CLProtocol::ISerial& serial, Duration timeout);
    std::size_t DescriptionSize(CLProtocol::ISerial& serial, const std::string& xmlId, Duration timeout);
    std::string DescriptionDigest(CLProtocol::ISerial& serial, const std::string& xmlId, Duration timeout);
    void FetchDescription(CLProtocol::ISerial& serial, const std::string& xmlId, std::span<std::uint8_t> buffer,
                          Duration timeout);
    std::uint32_t Rate(CLProtocol::ISerial& serial, Duration timeout);
    std::uint32_t SupportedRates(CLProtocol::ISerial& serial, Duration timeout);
    void SetRate(CLProtocol::ISerial& serial, std::uint32_t flag, Duration timeout);
    void WaitUntilIdle();

private:
    [[nodiscard]] std::unique_lock<std::mutex> Begin(CLProtocol::ISerial& serial, Duration timeout);
    void Search(RateFinder& finder, const std::optional<KnownCameras::Camera>& known, bool wasJustAsked,
                const DeviceRequest& request);
    void CheckManufacturerAndRequest(const DeviceRequest& request) const;
    void ChangeRate(const gencp::BaudRate& rate);
    void FindAgain(const gencp::BaudRate& target);
    const DescriptionFile& FindFile(const std::string& xmlId);
    void ListFiles();

    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "driver's connection"};
    SerialLine m_line;
    Logger& m_logger;
    KnownCameras& m_known;
    Exchanger m_exchanger;
    CameraMemory m_memory;
    RateChanger m_changer;
    CLProtocol::ISerial* m_serial;  // of the newest call, to compare only
    CameraFacts m_facts;
    std::optional<DescriptionList> m_descriptions;
    bool m_isRateInDoubt = false;  // a change has lost the camera
};

}  // namespace marlow
