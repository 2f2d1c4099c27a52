/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One port that an application has opened: the Camera Link rules on top of the system's serial line
 */
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "SerialDevice.h"

namespace ClSerTty {

/// Thread-safe; operations on one port run one at a time, and Close ends one that waits.
class SerialPort {
public:
    SerialPort(std::string name, std::unique_ptr<SerialDevice> device);

    void Read(std::span<char> buffer, std::uint32_t timeoutMs);
    std::size_t Write(std::span<const char> bytes, std::uint32_t timeoutMs);
    std::size_t BytesAvailable();
    void Flush();
    std::uint32_t SupportedBaudRates();
    void SetBaudRate(std::uint32_t flag);
    void Close() noexcept;

private:
    SerialDevice& Device();
    void GiveBack(std::span<char> buffer);

    const std::string m_name;
    std::mutex m_mutex;
    std::atomic<SerialDevice*> m_cancel;
    std::unique_ptr<SerialDevice> m_device;
    std::vector<char> m_arrived;  // bytes taken from the system for a read that has not ended yet
};

}  // namespace ClSerTty
