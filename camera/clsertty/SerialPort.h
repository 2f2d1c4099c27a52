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
#include "Turn.h"
#include "os/LockName.h"

namespace ClSerTty {

/// Thread-safe. A waiting read keeps nobody from anything but another read, a waiting write nobody but another write or
/// a change of the rate; Close ends both.
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
    bool TakeAll(std::span<char> buffer);
    [[noreturn]] void ThrowReadTimeout(std::size_t wanted, std::uint32_t timeoutMs);

    const std::string m_name;
    Turn m_reading;      // of the thread that reads, while it waits as well; taken before m_mutex
    Turn m_writing;      // of the thread that writes or is about the rate, likewise
    std::mutex m_mutex;  // for what needs no wait
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "serial port"};
    std::atomic<SerialDevice*> m_cancel;
    std::unique_ptr<SerialDevice> m_device;  // used under any of the three mutexes, and changed under all
    std::vector<char> m_arrived;             // under m_mutex: taken from the system for a read that has not ended yet
};

}  // namespace ClSerTty
