/* SPDX-License-Identifier: Apache-2.0 */
/*
 * RateChanger: a new baud rate for camera and host together
 */
#pragma once

#include <optional>

#include "CameraMemory.h"
#include "Logger.h"
#include "SerialLine.h"

namespace marlow {

/// Thread-bound. For a camera that has serial registers (SBRM), or none.
class RateChanger {
public:
    RateChanger(SerialLine& line, CameraMemory& memory, Logger& logger)
        : m_line(line), m_memory(memory), m_logger(logger) {}

    void SetHasRegisters(bool hasRegisters) { m_hasRegisters = hasRegisters; }

    std::uint32_t SupportedByBoth();
    void Change(const gencp::BaudRate& target);

private:
    /// How far a change has come, and when the camera has surely left a rate that was not confirmed.
    struct Attempt {
        gencp::BaudRate old;
        gencp::BaudRate target;
        bool isAcknowledged = false;
        Time sent{};
    };

    bool TryChange(const gencp::BaudRate& target);
    void Announce(Attempt& attempt);
    void Confirm(const Attempt& attempt);
    void FindAgain(const Attempt& attempt);
    void SleepUntil(Time time);
    bool IsCameraAt(const gencp::BaudRate& rate, unsigned resends);
    std::uint64_t CurrentRateAddress();
    void ReadRegisters();

    SerialLine& m_line;
    CameraMemory& m_memory;
    Logger& m_logger;
    bool m_hasRegisters = false;
    std::optional<std::uint64_t> m_address;  // of the SBRM, once it was read
    std::uint32_t m_supportedByCamera = 0;
};

}  // namespace marlow
