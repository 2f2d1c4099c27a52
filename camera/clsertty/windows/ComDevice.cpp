/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A serial line that is a COM port
 */

#include "ComDevice.h"

#include <algorithm>
#include <utility>

#include "BaudRates.h"
#include "SerialError.h"
#include "clser/ClSerial.h"

namespace ClSerTty {

namespace {

using std::chrono::milliseconds;

constexpr DWORD kFirstBaudRate = 9600;
constexpr DWORD kLongestWait = 50;      // ms; a wait is made of such pieces, so that it can be cancelled
constexpr milliseconds kSendTime{200};  // what a driver or USB adapter may take beyond the line's own time
constexpr DWORD kQueueSize = 64 * 1024;
constexpr char kXon = 0x11;
constexpr char kXoff = 0x13;

std::string Reason(DWORD error) {
    char text[256] = {};
    DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text,
                                  sizeof(text), nullptr);
    while (length > 0 && (text[length - 1] == '\n' || text[length - 1] == '\r' || text[length - 1] == '.'))
        --length;
    return length > 0 ? std::string(text, length) : "error " + std::to_string(error);
}

[[noreturn]] void ThrowCannotOpen(const std::string& title, DWORD error) {
    if (error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION)
        throw SerialError(CL_ERR_PORT_IN_USE, "The serial port " + title + " is in use by another process.");
    throw SerialError(CL_ERR_INVALID_INDEX, "The serial port " + title + " cannot be opened: " + Reason(error) + ".");
}

HANDLE OpenPort(const std::string& path, const std::string& title) {
    const HANDLE port = CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_OVERLAPPED, nullptr);
    if (port == INVALID_HANDLE_VALUE)
        ThrowCannotOpen(title, GetLastError());
    return port;
}

}  // namespace

std::unique_ptr<SerialDevice> SerialDevice::Open(const PortInfo& port) {
    return std::make_unique<ComDevice>(port);
}

ComDevice::ComDevice(const PortInfo& port)
    : m_title("'" + port.name + "' (" + port.path + ")"),
      m_port(OpenPort(port.path, m_title)),
      m_cancel(NewEvent()),
      m_wait(m_port.Get()),
      m_take(m_port.Get()),
      m_write(m_port.Get()) {
    SetupComm(m_port.Get(), kQueueSize, kQueueSize);
    Apply(kFirstBaudRate);
    PurgeComm(m_port.Get(), PURGE_RXCLEAR | PURGE_TXCLEAR);
    SetWriteTimeout(kLongestWait);
}

bool ComDevice::IsCancelled() const {
    return WaitForSingleObject(m_cancel.Get(), 0) == WAIT_OBJECT_0;
}

void ComDevice::ThrowGone(DWORD error) const {
    if (IsCancelled())
        throw SerialError(CL_ERR_INVALID_REFERENCE, "The serial port " + m_title + " was closed meanwhile.");
    throw SerialError(CL_ERR_INVALID_REFERENCE, "The serial port " + m_title + " has gone: " + Reason(error) + ".");
}

void ComDevice::Check(DWORD error) const {
    if (error != ERROR_SUCCESS)
        ThrowGone(error);
}

/// The time-out of the next piece of a wait, ms; 0 when the deadline has passed.
DWORD ComDevice::NextWait(Deadline deadline) const {
    if (IsCancelled())
        ThrowGone(ERROR_OPERATION_ABORTED);
    const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
    return static_cast<DWORD>(std::clamp<std::int64_t>(left.count(), 0, kLongestWait));
}

/// Reads end with their last byte only, which is why none is begun for more bytes than there are but one of one byte.
void ComDevice::SetWriteTimeout(DWORD milliseconds) {
    if (milliseconds == m_writeTimeout)
        return;
    COMMTIMEOUTS timeouts{};
    timeouts.WriteTotalTimeoutConstant = std::max<DWORD>(milliseconds, 1);
    if (SetCommTimeouts(m_port.Get(), &timeouts) == 0)
        ThrowGone(GetLastError());
    m_writeTimeout = milliseconds;
}

/// Thread T waits here without the mutex; who discards input meanwhile ends T's read, and T finds nothing.
bool ComDevice::WaitForInput(Deadline deadline) {
    {
        const std::lock_guard lock(m_inputMutex);
        if (m_hasFirst)
            return true;
        Check(m_wait.BeginRead(&m_first, 1));
    }
    try {
        const bool hasCome = WaitForFirst(deadline);
        const std::lock_guard lock(m_inputMutex);
        CollectFirst();
        return hasCome || m_hasFirst;
    } catch (...) {
        const std::lock_guard lock(m_inputMutex);
        CollectFirst();
        throw;
    }
}

bool ComDevice::WaitForFirst(Deadline deadline) {
    for (;;) {
        const DWORD wait = NextWait(deadline);
        m_wait.Wait(m_cancel.Get(), wait);
        {
            const std::lock_guard lock(m_inputMutex);
            if (!m_wait.IsUnderWay() || m_wait.IsDone())
                return true;
        }
        Status();  // a port that has gone may leave a read waiting instead of refusing it
        if (wait == 0)
            return false;
    }
}

/// Ends the read of the first byte, under the mutex.
void ComDevice::CollectFirst() {
    if (m_wait.IsUnderWay()) {
        const auto [error, count] = m_wait.End();
        m_hasFirst = m_hasFirst || count > 0;
        Check(error);
    }
}

std::size_t ComDevice::TakeInput(std::span<char> buffer) {
    const std::lock_guard lock(m_inputMutex);
    std::size_t first = 0;
    if (m_hasFirst && !buffer.empty()) {
        buffer[first++] = m_first;
        m_hasFirst = false;
    }
    const auto rest = std::min<std::size_t>(Status().cbInQue, buffer.size() - first);
    if (rest == 0)
        return first;
    Check(m_take.BeginRead(buffer.data() + first, static_cast<DWORD>(rest)));
    m_take.Wait(m_cancel.Get(), kLongestWait);
    const auto [error, count] = m_take.End();
    Check(error);
    return first + count;
}

std::size_t ComDevice::WriteSome(std::span<const char> bytes, Deadline deadline) {
    constexpr std::size_t kPiece = 4096;
    for (;;) {
        const DWORD wait = NextWait(deadline);
        SetWriteTimeout(wait);
        Check(m_write.BeginWrite(bytes.data(), static_cast<DWORD>(std::min(bytes.size(), kPiece))));
        m_write.Wait(m_cancel.Get(), INFINITE);  // no longer than the port's own time-out
        const auto [error, count] = m_write.End();
        Check(error);
        if (count > 0 || wait == 0)
            return count;
    }
}

COMSTAT ComDevice::Status() {
    DWORD errors = 0;
    COMSTAT status{};
    if (ClearCommError(m_port.Get(), &errors, &status) == 0)
        ThrowGone(GetLastError());
    return status;
}

std::size_t ComDevice::BytesAvailable() {
    const std::lock_guard lock(m_inputMutex);
    if (m_wait.IsDone())
        CollectFirst();
    return (m_hasFirst ? 1U : 0U) + Status().cbInQue;
}

void ComDevice::DiscardInput() {
    const std::lock_guard lock(m_inputMutex);
    CollectFirst();
    m_hasFirst = false;
    if (PurgeComm(m_port.Get(), PURGE_RXCLEAR) == 0)
        ThrowGone(GetLastError());
    Status();  // as in WaitForFirst
}

std::uint32_t ComDevice::SupportedBaudRates() {
    Status();
    if (!m_triedRates)
        m_triedRates = TryFastRates();
    return BaudRatesUpTo(CBR_115200) | *m_triedRates;
}

/// The port's properties do not tell: they have no names for these rates, and that it takes rates of the user's choice
/// is said of ports with any limit.
std::uint32_t ComDevice::TryFastRates() {
    WaitUntilSent();
    const DWORD before = m_bitsPerSecond;
    std::uint32_t taken = 0;
    for (std::uint32_t flag = 1; flag <= kAllBaudRates; flag <<= 1U) {
        try {
            if (BitsPerSecond(flag) > CBR_115200) {
                Apply(BitsPerSecond(flag));
                taken |= flag;
            }
        } catch (const SerialError& error) {
            if (error.Code() != CL_ERR_BAUD_RATE_NOT_SUPPORTED)
                throw;
        }
    }
    Apply(before);
    return taken;
}

void ComDevice::WaitUntilSent() {
    constexpr DWORD kBitsPerByte = 10;
    const milliseconds sending(std::int64_t{Status().cbOutQue} * kBitsPerByte * 1000 / m_bitsPerSecond);
    const Deadline deadline = Clock::now() + sending + kSendTime;
    while (Status().cbOutQue > 0) {
        if (Clock::now() >= deadline)
            throw SerialError(CL_ERR_TIMEOUT, "The serial port " + m_title + " does not send.");
        Sleep(1);
    }
}

void ComDevice::Apply(DWORD bitsPerSecond) {
    DCB settings{};
    settings.DCBlength = sizeof(settings);
    if (GetCommState(m_port.Get(), &settings) == 0)
        ThrowGone(GetLastError());
    settings = DCB{};
    settings.DCBlength = sizeof(settings);
    settings.BaudRate = bitsPerSecond;
    settings.fBinary = TRUE;
    settings.ByteSize = 8;
    settings.Parity = NOPARITY;
    settings.StopBits = ONESTOPBIT;
    settings.fDtrControl = DTR_CONTROL_ENABLE;
    settings.fRtsControl = RTS_CONTROL_ENABLE;
    // Not used, but settings in which the two are the same are refused.
    settings.XonChar = kXon;
    settings.XoffChar = kXoff;
    if (SetCommState(m_port.Get(), &settings) == 0) {
        throw SerialError(CL_ERR_BAUD_RATE_NOT_SUPPORTED,
                          "The serial port " + m_title + " refuses " + std::to_string(bitsPerSecond) + " baud.");
    }
    m_bitsPerSecond = bitsPerSecond;
}

void ComDevice::SetBaudRate(std::uint32_t bitsPerSecond) {
    WaitUntilSent();
    Apply(bitsPerSecond);
}

void ComDevice::Cancel() noexcept {
    SetEvent(m_cancel.Get());
}

}  // namespace ClSerTty
