/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What stands for a serial port to drivers, for as long as the module lives
 */
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "CLProtocol/ISerial.h"
#include "clser/ClSerial.h"
#include "os/LockName.h"

namespace CLProtocol {

/// Passes calls on to the connection that is open at the moment; without one they fail with -10006. Thread-safe.
class PortLine final : public ISerial {
public:
    PortLine() = default;
    PortLine(const PortLine&) = delete;
    PortLine& operator=(const PortLine&) = delete;

    void Attach(std::shared_ptr<ISerial> connection) noexcept;

    /// The rate that was set last, as a flag of the C interface; 9600 baud at the beginning.
    CLUINT32 Rate() const noexcept { return m_rate; }

    /// What is done on a line while one of these lives ends early when the host asks for it. Bytes that come in are
    /// counted: \a count is called with their number, by the thread that reads.
    class Task {
    public:
        explicit Task(PortLine& line, std::function<void(std::size_t bytes)> count = {});
        ~Task();
        Task(const Task&) = delete;
        Task& operator=(const Task&) = delete;

    private:
        friend class PortLine;
        PortLine& m_line;
        std::function<void(std::size_t)> m_count;
    };

    CLINT32 clSerialRead(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) noexcept override;
    CLINT32 clSerialWrite(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) noexcept override;
    CLINT32 clGetSupportedBaudRates(CLUINT32* baudRates) noexcept override;
    CLINT32 clSetBaudRate(CLUINT32 baudRate) noexcept override;

private:
    std::shared_ptr<ISerial> Connection() const noexcept;

    bool MustStop() const noexcept;
    void Count(std::size_t bytes) noexcept;

    mutable std::mutex m_mutex;  // not held during a call on the connection
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "line"};
    std::shared_ptr<ISerial> m_connection;
    std::atomic<const Task*> m_task{nullptr};
    std::atomic<CLUINT32> m_rate{CL_BAUDRATE_9600};
};

/// The lines of all ports. Thread-safe.
class PortLines {
public:
    static PortLines& GetInstance();

    std::shared_ptr<PortLine> Lend(const std::string& portId);

private:
    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "lines"};
    std::map<std::string, std::vector<std::shared_ptr<PortLine>>> m_lines;
};

}  // namespace CLProtocol
