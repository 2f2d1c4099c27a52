/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A serial line that is a COM port
 */

#include "ComDevice.h"

#include <algorithm>

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
    while (length > 0 && (text[length - 1] == '\n' || text[length - 1] == '\r' || text[length - 1] == '.')) {
        --length;
    }
    return length > 0 ? std::string(text, length) : "error " + std::to_string(error);
}

[[noreturn]] void ThrowCannotOpen(const std::string& title, DWORD error) {
    if (error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION) {
        throw SerialError(CL_ERR_PORT_IN_USE, "The serial port " + title + " is in use by another process.");
    }
    throw SerialError(CL_ERR_INVALID_INDEX, "The serial port " + title + " cannot be opened: " + Reason(error) + ".");
}

}  // namespace

std::unique_ptr<SerialDevice> SerialDevice::Open(const PortInfo& port) {
    return std::make_unique<ComDevice>(port);
}

ComDevice::ComDevice(const PortInfo& port)
    : m_title("'" + port.name + "' (" + port.path + ")"),
      m_port(CreateFileA(port.path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr)) {
    if (m_port == INVALID_HANDLE_VALUE) {
        ThrowCannotOpen(m_title, GetLastError());
    }
    try {
        SetupComm(m_port, kQueueSize, kQueueSize);
        Apply(kFirstBaudRate);
        PurgeComm(m_port, PURGE_RXCLEAR | PURGE_TXCLEAR);
    } catch (...) {
        CloseHandle(m_port);
        throw;
    }
}

ComDevice::~ComDevice() {
    CloseHandle(m_port);
}

void ComDevice::ThrowGone(DWORD error) const {
    if (m_isCancelled) {
        throw SerialError(CL_ERR_INVALID_REFERENCE, "The serial port " + m_title + " was closed meanwhile.");
    }
    throw SerialError(CL_ERR_INVALID_REFERENCE, "The serial port " + m_title + " has gone: " + Reason(error) + ".");
}

/// The time-out of the next piece of a wait, ms; 0 when the deadline has passed.
DWORD ComDevice::NextWait(Deadline deadline) const {
    if (m_isCancelled) {
        ThrowGone(ERROR_OPERATION_ABORTED);
    }
    const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
    return static_cast<DWORD>(std::clamp<std::int64_t>(left.count(), 0, kLongestWait));
}

/// A read with these settings gives what is there, else waits for the first byte.
void ComDevice::SetWait(DWORD milliseconds) {
    if (milliseconds == m_wait) {
        return;
    }
    COMMTIMEOUTS timeouts{};
    timeouts.ReadIntervalTimeout = MAXDWORD;
    timeouts.ReadTotalTimeoutMultiplier = milliseconds == 0 ? 0 : MAXDWORD;
    timeouts.ReadTotalTimeoutConstant = milliseconds;
    timeouts.WriteTotalTimeoutConstant = std::max<DWORD>(milliseconds, 1);
    if (SetCommTimeouts(m_port, &timeouts) == 0) {
        ThrowGone(GetLastError());
    }
    m_wait = milliseconds;
}

std::size_t ComDevice::ReadSome(std::span<char> buffer, Deadline deadline) {
    for (;;) {
        const DWORD wait = NextWait(deadline);
        SetWait(wait);
        DWORD count = 0;
        if (ReadFile(m_port, buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr) == 0) {
            ThrowGone(GetLastError());
        }
        if (count > 0) {
            return count;
        }
        Status();  // a port that has gone may let reads time out instead of refusing them
        if (wait == 0) {
            return 0;
        }
    }
}

std::size_t ComDevice::WriteSome(std::span<const char> bytes, Deadline deadline) {
    constexpr std::size_t kPiece = 4096;
    for (;;) {
        const DWORD wait = NextWait(deadline);
        SetWait(wait);
        DWORD count = 0;
        if (WriteFile(m_port, bytes.data(), static_cast<DWORD>(std::min(bytes.size(), kPiece)), &count, nullptr) == 0) {
            ThrowGone(GetLastError());
        }
        if (count > 0 || wait == 0) {
            return count;
        }
    }
}

COMSTAT ComDevice::Status() {
    DWORD errors = 0;
    COMSTAT status{};
    if (ClearCommError(m_port, &errors, &status) == 0) {
        ThrowGone(GetLastError());
    }
    return status;
}

std::size_t ComDevice::BytesAvailable() {
    return Status().cbInQue;
}

void ComDevice::DiscardInput() {
    if (PurgeComm(m_port, PURGE_RXCLEAR) == 0) {
        ThrowGone(GetLastError());
    }
    Status();  // as in ReadSome
}

std::uint32_t ComDevice::SupportedBaudRates() {
    Status();
    if (!m_triedRates) {
        m_triedRates = TryFastRates();
    }
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
            if (error.Code() != CL_ERR_BAUD_RATE_NOT_SUPPORTED) {
                throw;
            }
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
        if (Clock::now() >= deadline) {
            throw SerialError(CL_ERR_TIMEOUT, "The serial port " + m_title + " does not send.");
        }
        Sleep(1);
    }
}

void ComDevice::Apply(DWORD bitsPerSecond) {
    DCB settings{};
    settings.DCBlength = sizeof(settings);
    if (GetCommState(m_port, &settings) == 0) {
        ThrowGone(GetLastError());
    }
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
    if (SetCommState(m_port, &settings) == 0) {
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
    m_isCancelled = true;
    CancelIoEx(m_port, nullptr);
}

}  // namespace ClSerTty
