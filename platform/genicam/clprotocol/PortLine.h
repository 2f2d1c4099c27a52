/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What stands for a serial port to drivers, for as long as the module lives
 */
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "CLProtocol/ISerial.h"

namespace CLProtocol {

/// Passes calls on to the connection that is open at the moment; without one they fail with -10006. Thread-safe.
class PortLine final : public ISerial {
public:
    PortLine() = default;
    ~PortLine() override = default;
    PortLine(const PortLine&) = delete;
    PortLine& operator=(const PortLine&) = delete;

    void Attach(std::shared_ptr<ISerial> connection) noexcept;

    CLINT32 clSerialRead(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) noexcept override;
    CLINT32 clSerialWrite(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) noexcept override;
    CLINT32 clGetSupportedBaudRates(CLUINT32* baudRates) noexcept override;
    CLINT32 clSetBaudRate(CLUINT32 baudRate) noexcept override;

private:
    std::shared_ptr<ISerial> Connection() const noexcept;

    mutable std::mutex m_mutex;  // not held during a call
    std::shared_ptr<ISerial> m_connection;
};

/// The lines of all ports. Thread-safe.
class PortLines {
public:
    static PortLines& GetInstance();

    std::shared_ptr<PortLine> Lend(const std::string& portId);

private:
    std::mutex m_mutex;
    std::map<std::string, std::vector<std::shared_ptr<PortLine>>> m_lines;
};

}  // namespace CLProtocol
