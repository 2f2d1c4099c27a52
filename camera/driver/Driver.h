/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Driver: what the exported functions do, in terms of C++
 */
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "CLProtocol/CLProtocolC.h"
#include "Connection.h"
#include "ErrorTexts.h"
#include "KnownCameras.h"
#include "Logger.h"
#include "os/LockName.h"

namespace marlow {

/// Thread-safe; no lock of it is held while a line is used. All but the getters throw DriverError.
class Driver {
public:
    explicit Driver(Clock& clock) : m_clock(clock) {}

    struct Found {
        CLUINT32 cookie;
        std::string deviceId;
    };

    Found Probe(CLProtocol::ISerial& serial, std::string_view templateOrDeviceId, Duration timeout);
    std::shared_ptr<Connection> Get(CLUINT32 cookie) const;
    void Disconnect(CLUINT32 cookie);
    void StopProbing() noexcept { ++m_stops; }
    void Close();

    std::string ErrorText(CLINT32 code, CLUINT32 cookie) const;
    Logger& Log() noexcept { return m_logger; }
    ErrorTexts& Errors() noexcept { return m_errors; }

private:
    CLUINT32 Add(std::shared_ptr<Connection> connection);

    Clock& m_clock;
    Logger m_logger;
    ErrorTexts m_errors;
    KnownCameras m_known;
    std::atomic<unsigned> m_stops{0};
    mutable std::mutex m_mutex;  // of what follows
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "driver"};
    std::map<CLUINT32, std::shared_ptr<Connection>> m_connections;
    CLUINT32 m_lastCookie = 0;
};

}  // namespace marlow
