/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What stands for a serial port to drivers, for as long as the module lives
 */

#include "PortLine.h"

#include <utility>

#include "ActivityTeller.h"
#include "base/Immortal.h"

namespace CLProtocol {

/// Makes \a connection the one that calls go to; null for none.
void PortLine::Attach(std::shared_ptr<ISerial> connection) noexcept {
    const std::lock_guard lock(m_mutex);
    m_connection.swap(connection);
    m_rate = CL_BAUDRATE_9600;
}

PortLine::Task::Task(PortLine& line, std::function<void(std::size_t)> count) : m_line(line), m_count(std::move(count)) {
    m_line.m_task = this;
}

PortLine::Task::~Task() {
    const std::lock_guard lock(m_line.m_mutex);
    m_line.m_task = nullptr;
}

// -10006 and no time-out, after which a driver would try again.
bool PortLine::MustStop() const noexcept {
    return m_task != nullptr && IsStopRequested();
}

// Under the lock, so that the task does not end meanwhile.
void PortLine::Count(std::size_t bytes) noexcept {
    const std::lock_guard lock(m_mutex);
    const Task* const task = m_task;
    if (task == nullptr || !task->m_count)
        return;
    try {
        task->m_count(bytes);
    } catch (const std::exception&) {  // what is counted is for the eye only
    }
}

std::shared_ptr<ISerial> PortLine::Connection() const noexcept {
    const std::lock_guard lock(m_mutex);
    return m_connection;
}

CLINT32 PortLine::clSerialRead(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) noexcept {
    const auto connection = Connection();
    if (!connection || MustStop())
        return CL_ERR_INVALID_REFERENCE;
    const CLINT32 result = connection->clSerialRead(buffer, bufferSize, serialTimeout);
    if (result >= 0 && bufferSize != nullptr)
        Count(*bufferSize);
    return result;
}

CLINT32 PortLine::clSerialWrite(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) noexcept {
    const auto connection = Connection();
    if (!connection || MustStop())
        return CL_ERR_INVALID_REFERENCE;
    return connection->clSerialWrite(buffer, bufferSize, serialTimeout);
}

CLINT32 PortLine::clGetSupportedBaudRates(CLUINT32* baudRates) noexcept {
    const auto connection = Connection();
    return connection ? connection->clGetSupportedBaudRates(baudRates) : CL_ERR_INVALID_REFERENCE;
}

CLINT32 PortLine::clSetBaudRate(CLUINT32 baudRate) noexcept {
    const auto connection = Connection();
    const CLINT32 result = connection ? connection->clSetBaudRate(baudRate) : CL_ERR_INVALID_REFERENCE;
    if (result >= 0)
        m_rate = baudRate;
    return result;
}

/**
 * \class PortLines
 * \brief Gives drivers one and the same line object for a port, each time that it is opened
 *
 * A driver is not told which port it works on: the object is all that it can remember one by, for instance for the
 * baud rate that the camera on it was left at. A line never becomes that of another port.
 *
 * \context Any thread.
 */
PortLines& PortLines::GetInstance() {
    static base::Immortal<PortLines> instance;
    return instance.Get();
}

/// The line of a port until the result is given up. Who opens a port twice at the same time gets two.
std::shared_ptr<PortLine> PortLines::Lend(const std::string& portId) {
    const std::lock_guard lock(m_mutex);
    std::vector<std::shared_ptr<PortLine>>& lines = m_lines[portId];
    for (const std::shared_ptr<PortLine>& line : lines)
        if (line.use_count() == 1)
            return line;
    return lines.emplace_back(std::make_shared<PortLine>());
}

}  // namespace CLProtocol
