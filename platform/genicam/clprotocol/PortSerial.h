/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The serial line of a connected port, as an application uses it
 */
#pragma once

#include <chrono>
#include <functional>

#include "CLProtocol/ISerial.h"

namespace CLProtocol {

/// Passes each call on to where the port's foreign code runs. Thread-safe.
class PortSerial final : public ISerial {
public:
    using Call = std::function<CLINT32(ISerial&)>;
    /// Runs a call on the line that is open, and gives up on one that hangs; its time-out is part of its work.
    using Runner = std::function<CLINT32(Call, std::chrono::milliseconds timeout)>;

    explicit PortSerial(Runner runner) : m_runner(std::move(runner)) {}

    CLINT32 clSerialRead(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) noexcept override;
    CLINT32 clSerialWrite(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) noexcept override;
    CLINT32 clGetSupportedBaudRates(CLUINT32* baudRates) noexcept override;
    CLINT32 clSetBaudRate(CLUINT32 baudRate) noexcept override;

private:
    CLINT32 Run(Call call, CLUINT32 timeoutMs = 0) noexcept;

    Runner m_runner;
};

}  // namespace CLProtocol
