/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SerialLine: the host's serial line, with deadlines and byte counts of the driver's own
 */

#include "SerialLine.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "DriverError.h"
#include "clser/ClSerial.h"

namespace marlow {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kStopCheckInterval{50};  // a probe ends so soon after it was told to
constexpr milliseconds kEmptyCallPause{1};      // for libraries that return at once with nothing done
constexpr std::size_t kMaxWaiting = 0x10000;    // a line that never falls silent

void CheckCode(CLINT32 code, const char* function) {
    if (code < 0)
        throw DriverError(code, fmt::format("The serial library failed: {} returned {}.", function, code));
}

}  // namespace

/**
 * \brief Go on with the line that the host passed with its newest call
 * \param[in] serial Used until the next Attach
 */
void SerialLine::Attach(CLProtocol::ISerial& serial) {
    if (m_serial == &serial)
        return;
    m_serial = &serial;
    m_supported.reset();
    m_hasFixedRate = false;
    SupportedRates();
    SetRate(m_rate);
}

/**
 * \brief Write all bytes
 * \param[in] bytes What to write
 * \param[in] deadline When to give up
 *
 * \return False when not all were written in time
 * \throw DriverError The serial library failed
 */
bool SerialLine::Write(gencp::ByteView bytes, Time deadline) {
    for (;;) {
        const Time begin = m_clock.Now();
        const std::size_t written = WriteOnce(bytes, RestMs(deadline));
        bytes = bytes.subspan(written);
        if (bytes.empty())
            return true;
        if (m_clock.Now() >= deadline)
            return false;
        if (m_stopCheck)
            m_stopCheck();
        if (written == 0)
            PauseAfterEmptyCall(begin);
    }
}

/**
 * \brief Read bytes, as many as fit, as soon as all are there
 * \param[out] buffer Asked for in full; a library may give fewer
 * \param[in] deadline When to give up; what waits is taken even behind it
 *
 * \return Number of bytes, 0 after the deadline
 * \throw DriverError The serial library failed, or a probe was stopped
 */
std::size_t SerialLine::Read(std::span<std::uint8_t> buffer, Time deadline) {
    for (;;) {
        if (m_stopCheck)
            m_stopCheck();
        const Time begin = m_clock.Now();
        const milliseconds most = m_stopCheck ? kStopCheckInterval : kLongestWait;
        const std::size_t count = ReadOnce(buffer, RestMs(deadline, most));
        if (count > 0 || m_clock.Now() >= deadline)
            return count;
        PauseAfterEmptyCall(begin);
    }
}

/**
 * \brief All bytes that wait, without waiting for more
 *
 * A read for more bytes than wait takes none of them, so this asks for fewer and fewer.
 */
gencp::Bytes SerialLine::TakeWaiting() {
    gencp::Bytes bytes;
    std::array<std::uint8_t, 256> buffer;
    for (std::size_t size = buffer.size(); size > 0 && bytes.size() < kMaxWaiting;) {
        const std::size_t count = ReadOnce(std::span(buffer).first(size), 0);
        bytes.insert(bytes.end(), buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(count));
        if (count == 0)
            size /= 4;
    }
    return bytes;
}

/**
 * \brief The rates that the host's side can do, as Camera Link flags; without those that it has refused nevertheless
 *
 * A library without the function (Camera Link 1.0) has a fixed rate of 9600 baud.
 */
std::uint32_t SerialLine::SupportedRates() {
    if (m_supported)
        return *m_supported;
    CLUINT32 mask = 0;
    if (m_serial->clGetSupportedBaudRates(&mask) < 0)
        mask = 0;
    mask &= gencp::kAllBaudRateFlags;
    m_hasFixedRate = mask == 0;
    m_supported = m_hasFixedRate ? gencp::kStartBaudRate.flag : mask;
    return *m_supported;
}

/**
 * \brief Set the rate of the host's side
 * \param[in] rate One of gencp::kBaudRates
 *
 * \throw DriverError The library can't
 */
void SerialLine::SetRate(const gencp::BaudRate& rate) {
    if ((SupportedRates() & rate.flag) == 0)
        throw DriverError(CL_ERR_BAUD_RATE_NOT_SUPPORTED,
                          fmt::format("The host's serial port can't do {} baud.", rate.bitsPerSecond));
    const CLINT32 code = m_hasFixedRate ? CLINT32{CL_ERR_NO_ERR} : m_serial->clSetBaudRate(rate.flag);
    if (code == CL_ERR_BAUD_RATE_NOT_SUPPORTED)
        *m_supported &= ~rate.flag;
    CheckCode(code, "clSetBaudRate");
    m_rate = rate;
}

std::size_t SerialLine::ReadOnce(std::span<std::uint8_t> buffer, std::uint32_t timeoutMs) {
    auto size = static_cast<CLUINT32>(buffer.size());
    const CLINT32 code = m_serial->clSerialRead(reinterpret_cast<CLINT8*>(buffer.data()), &size, timeoutMs);
    if (code == CL_ERR_TIMEOUT)
        return 0;
    CheckCode(code, "clSerialRead");
    if (size > buffer.size())
        throw DriverError(kSerialNonsense, "The serial library says that it read more bytes than were asked for.");
    m_received += size;
    return size;
}

std::size_t SerialLine::WriteOnce(gencp::ByteView bytes, std::uint32_t timeoutMs) {
    // The interface takes no constant bytes; a copy keeps a library from changing ours.
    gencp::Bytes copy(bytes.begin(), bytes.end());
    auto size = static_cast<CLUINT32>(copy.size());
    const CLINT32 code = m_serial->clSerialWrite(reinterpret_cast<CLINT8*>(copy.data()), &size, timeoutMs);
    // Bytes that a write took before its time was over are on their way. A size that was left alone says nothing.
    if (code == CL_ERR_TIMEOUT)
        return size < bytes.size() ? size : 0;
    CheckCode(code, "clSerialWrite");
    if (size > bytes.size())
        throw DriverError(kSerialNonsense, "The serial library says that it wrote more bytes than were given.");
    return size;
}

std::uint32_t SerialLine::RestMs(Time deadline, std::chrono::milliseconds most) const {
    const auto rest = std::chrono::ceil<milliseconds>(deadline - m_clock.Now());
    return static_cast<std::uint32_t>(std::clamp(rest, milliseconds(0), most).count());
}

void SerialLine::PauseAfterEmptyCall(Time begin) {
    if (m_clock.Now() - begin < kEmptyCallPause)
        m_clock.Sleep(kEmptyCallPause);
}

}  // namespace marlow
