/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One port that an application has opened: the Camera Link rules on top of the system's serial line
 */

#include "SerialPort.h"

#include <algorithm>
#include <array>
#include <bit>

#include "BaudRates.h"
#include "SerialError.h"
#include "clser/ClSerial.h"

namespace ClSerTty {

namespace {

/// What is taken from the system in one go at most, so that a caller's size is no size to allocate.
constexpr std::size_t kChunk = 4096;

Deadline DeadlineIn(std::uint32_t timeoutMs) {
    return Clock::now() + std::chrono::milliseconds(timeoutMs);
}

}  // namespace

SerialPort::SerialPort(std::string name, std::unique_ptr<SerialDevice> device)
    : m_name(std::move(name)), m_cancel(device.get()), m_device(std::move(device)) {}

/// Refuses from the moment on at which Close begins, so that nobody who got his turn only then keeps it waiting.
SerialDevice& SerialPort::Device() {
    if (m_cancel == nullptr)
        throw SerialError(CL_ERR_INVALID_REFERENCE, "The serial port '" + m_name + "' was closed.");
    return *m_device;
}

/**
 * \brief Read exactly as many bytes as the buffer holds
 * \param[out] buffer Untouched unless all of it arrived
 * \param[in] timeoutMs Time to wait for the last byte, in ms; 0 takes only what is there
 * \throw SerialError CL_ERR_TIMEOUT (what arrived is kept for the next read), CL_ERR_INVALID_REFERENCE when the line
 * has gone
 */
void SerialPort::Read(std::span<char> buffer, std::uint32_t timeoutMs) {
    const Deadline deadline = DeadlineIn(timeoutMs);
    const std::unique_lock turn(m_reading, deadline);
    if (!turn) {
        throw SerialError(CL_ERR_TIMEOUT, "The serial port '" + m_name +
                                              "' was waited for by another read for all of " +
                                              std::to_string(timeoutMs) + " ms.");
    }
    while (!TakeAll(buffer)) {
        if (!Device().WaitForInput(deadline))
            ThrowReadTimeout(buffer.size(), timeoutMs);
    }
}

/// Fills the buffer if enough has arrived; keeps what has if not.
bool SerialPort::TakeAll(std::span<char> buffer) {
    const std::lock_guard lock(m_mutex);
    SerialDevice& device = Device();
    while (m_arrived.size() < buffer.size()) {
        std::array<char, kChunk> chunk;
        const std::size_t wanted = std::min(buffer.size() - m_arrived.size(), kChunk);
        const std::size_t count = device.TakeInput(std::span(chunk).first(wanted));
        if (count == 0)
            return false;
        m_arrived.insert(m_arrived.end(), chunk.begin(), chunk.begin() + count);
    }
    const auto end = m_arrived.begin() + static_cast<std::ptrdiff_t>(buffer.size());
    std::copy(m_arrived.begin(), end, buffer.begin());
    m_arrived.erase(m_arrived.begin(), end);
    return true;
}

void SerialPort::ThrowReadTimeout(std::size_t wanted, std::uint32_t timeoutMs) {
    const std::lock_guard lock(m_mutex);
    throw SerialError(CL_ERR_TIMEOUT, "Only " + std::to_string(m_arrived.size()) + " of " + std::to_string(wanted) +
                                          " bytes arrived at the serial port '" + m_name + "' within " +
                                          std::to_string(timeoutMs) + " ms.");
}

/**
 * \brief Hand bytes to the line
 * \param[in] timeoutMs Time to wait for the line to take them all, in ms
 * \return Number of bytes taken; less than given only at the time-out
 * \throw SerialError CL_ERR_INVALID_REFERENCE when the line has gone
 */
std::size_t SerialPort::Write(std::span<const char> bytes, std::uint32_t timeoutMs) {
    const Deadline deadline = DeadlineIn(timeoutMs);
    const std::unique_lock turn(m_writing, deadline);
    if (!turn || bytes.empty())
        return 0;
    std::size_t done = 0;
    std::size_t count = 0;
    do {
        count = Device().WriteSome(bytes.subspan(done), deadline);
        done += count;
    } while (count > 0 && done < bytes.size() && Clock::now() < deadline);
    return done;
}

/**
 * \brief Count the bytes that a read gets without waiting
 */
std::size_t SerialPort::BytesAvailable() {
    const std::lock_guard lock(m_mutex);
    return m_arrived.size() + Device().BytesAvailable();
}

/**
 * \brief Throw away all bytes that arrived and were not read
 */
void SerialPort::Flush() {
    const std::lock_guard lock(m_mutex);
    Device().DiscardInput();
    m_arrived.clear();
}

/**
 * \brief Give the flags of the rates that the line can do
 */
std::uint32_t SerialPort::SupportedBaudRates() {
    const std::lock_guard turn(m_writing);
    return Device().SupportedBaudRates();
}

/**
 * \brief Change the rate of the line, after what is being written
 * \param[in] flag One flag, or CL_BAUDRATE_FASTEST for the highest that the line can do
 * \throw SerialError CL_ERR_BAUD_RATE_NOT_SUPPORTED for any other flag or a rate that the line refuses
 */
void SerialPort::SetBaudRate(std::uint32_t flag) {
    const std::lock_guard turn(m_writing);
    SerialDevice& device = Device();
    const std::uint32_t supported = device.SupportedBaudRates();
    const std::uint32_t wanted = flag == CL_BAUDRATE_FASTEST ? FastestBaudRate(supported) : flag;
    if (!std::has_single_bit(wanted) || (wanted & supported) == 0) {
        throw SerialError(CL_ERR_BAUD_RATE_NOT_SUPPORTED,
                          "The serial port '" + m_name + "' has no baud rate with the flag " + std::to_string(flag) +
                              "; its rates have the flags " + std::to_string(supported) + ".");
    }
    device.SetBaudRate(BitsPerSecond(wanted));
}

/**
 * \brief Give the line back to the system; a read or write that waits meanwhile ends with an error
 *
 * The line is free when this returns.
 */
void SerialPort::Close() noexcept {
    // The device lives until the locks are had below, so that cancelling it here needs none.
    if (SerialDevice* device = m_cancel.exchange(nullptr)) {
        device->Cancel();
        const std::lock_guard reading(m_reading);
        const std::lock_guard writing(m_writing);
        const std::lock_guard lock(m_mutex);
        m_device.reset();
    }
}

}  // namespace ClSerTty
