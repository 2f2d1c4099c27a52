/* SPDX-License-Identifier: Apache-2.0 */
/*
 * An open serial port, as a driver uses it
 */

#include "SerialConnection.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "CLProtocol/CLException.h"
#include "ErrorReporter.h"
#include "ModuleLog.h"
#include "Texts.h"

namespace CLProtocol {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kPieceSize = 65536;
constexpr std::size_t kPieceMargin = 256;  // some libraries write more than they were asked for
constexpr CLUINT32 kEarlyMs = 5;           // clocks differ: a time-out may come that much before its time
constexpr auto kPause = std::chrono::milliseconds(1);

class Deadline {
public:
    explicit Deadline(CLUINT32 timeoutMs) : m_end(Clock::now() + std::chrono::milliseconds(timeoutMs)) {}

    CLUINT32 Remaining() const {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_end - Clock::now()).count();
        return static_cast<CLUINT32>(std::max<decltype(left)>(left, 0));
    }

private:
    Clock::time_point m_end;
};

}  // namespace

/**
 * \class SerialConnection
 * \brief What the host hands to a driver as ISerial
 *
 * A library's result alone is not believed: bytes are counted, and the time-out is watched here, for there are
 * libraries that ignore theirs and report success with nothing or not all done. What was read of an incomplete
 * answer is kept for the next read, so that a time-out copies nothing, as the standard wants it. An exception of the
 * library becomes -10006.
 *
 * A library's function that does not return can't be interrupted: neither does this then.
 *
 * \context Any thread; calls run one after the other.
 */

/**
 * \brief Open a port at 9600 baud and discard what it has received
 * \throw CLErrException The library refuses
 * \throw GenICam::RuntimeException The library threw
 */
SerialConnection::SerialConnection(std::shared_ptr<const SerialLibrary> library, std::uint32_t index,
                                   const std::string& portId)
    : m_library(std::move(library)),
      m_index(index),
      m_piece(kPieceSize + kPieceMargin),
      m_port(m_library->Open(index, portId)) {
    try {
        const std::int32_t result = SetRate(CL_BAUDRATE_9600);
        // A port without that rate keeps the one it has: the driver looks for the camera at the rates that there are.
        if (result < 0 && result != CL_ERR_BAUD_RATE_NOT_SUPPORTED)
            throw CL_ERR_EXCEPTION(result)(
                "Could not set port '%s' to 9600 baud: function 'clSetBaudRate' of '%s' failed: %s", portId,
                m_library->Path(), m_library->ErrorText(result));
        m_library->Flush(m_port);
    } catch (...) {
        m_library->Close(m_port);
        throw;
    }
}

SerialConnection::~SerialConnection() {
    try {
        m_library->Close(m_port);
    } catch (const std::exception& error) {
        Log(CLP_LOG_ERROR, "Could not close a port: %s", ReasonOf(error));
    }
}

/// Why the library failed the last time, for texts: a driver passes on a code at most. Empty when it has not, or when
/// this was asked before.
std::string SerialConnection::TakeCause() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_cause, {});
}

/// Forgets what the line has shown so far.
void SerialConnection::WatchAnew() {
    const std::lock_guard lock(m_mutex);
    m_evidence = LineEvidence::kUnused;
    m_cause.clear();
}

/// What the line has shown since WatchAnew.
LineEvidence SerialConnection::Evidence() {
    const std::lock_guard lock(m_mutex);
    return m_evidence;
}

// A time-out is no failure of the library's, and neither is a rate that it does not have.
template <class Operation>
CLINT32 SerialConnection::Guarded(const char* function, Operation operation) noexcept {
    try {
        const std::lock_guard lock(m_mutex);
        try {
            const CLINT32 result = operation();
            if (result < 0 && result != CL_ERR_TIMEOUT && result != CL_ERR_BAUD_RATE_NOT_SUPPORTED)
                NoteFailure(function, result);
            return result;
        } catch (const GenICam::GenericException& error) {
            m_evidence = LineEvidence::kFailed;
            m_cause = error.GetDescription();
            Log(CLP_LOG_ERROR, "%s", m_cause);
            return CL_ERR_INVALID_REFERENCE;
        }
    } catch (const std::exception&) {
        return CL_ERR_OUT_OF_MEMORY;
    }
}

// Without memory for the text the code is passed on alone.
void SerialConnection::NoteFailure(const char* function, CLINT32 result) noexcept {
    m_evidence = LineEvidence::kFailed;
    try {
        m_cause = GenICam::FormatText("Function '%s' of '%s' failed: %s (%d)", function, m_library->Path(),
                                      m_library->ErrorText(result), result);
    } catch (const std::exception&) {
        m_cause.clear();
    }
}

/**
 * \brief Read bytes
 * \param[out] buffer Takes the bytes
 * \param[in] bufferSize Number of bytes that are wanted, and copied if the call succeeds. It stays what it is, so that
 * a driver can repeat the call with the same variable.
 * \param[in] serialTimeout Milliseconds until they must have come
 * \return 0, -10004 when they have not come in time, or another error of the library
 */
CLINT32 SerialConnection::clSerialRead(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) noexcept {
    if (bufferSize == nullptr || (buffer == nullptr && *bufferSize != 0))
        return CL_ERR_INVALID_PTR;
    return Guarded("clSerialRead", [&]() -> CLINT32 {
        const std::size_t wanted = *bufferSize;
        const CLINT32 result = FillBuffer(wanted, serialTimeout);
        if (!m_received.empty())
            m_evidence = LineEvidence::kAnswered;
        else if (m_evidence == LineEvidence::kUnused)
            m_evidence = LineEvidence::kSilent;
        if (result < 0)
            return result;
        const auto end = m_received.begin() + static_cast<std::ptrdiff_t>(wanted);
        std::copy(m_received.begin(), end, buffer);
        m_received.erase(m_received.begin(), end);
        return CL_ERR_NO_ERR;
    });
}

CLINT32 SerialConnection::FillBuffer(std::size_t wanted, CLUINT32 timeoutMs) {
    const Deadline deadline(timeoutMs);
    for (CLUINT32 remaining = timeoutMs; m_received.size() < wanted; remaining = deadline.Remaining()) {
        const std::size_t before = m_received.size();
        const CLINT32 result = ReadPiece(std::min(wanted - before, kPieceSize), remaining);
        if (result < 0 && result != CL_ERR_TIMEOUT)
            return result;
        if (m_received.size() >= wanted)
            break;
        const CLUINT32 left = deadline.Remaining();
        if (left == 0 || (result == CL_ERR_TIMEOUT && left <= kEarlyMs))
            return CL_ERR_TIMEOUT;
        if (m_received.size() == before)
            std::this_thread::sleep_for(kPause);
    }
    return CL_ERR_NO_ERR;
}

CLINT32 SerialConnection::ReadPiece(std::size_t wanted, CLUINT32 timeoutMs) {
    auto count = static_cast<std::uint32_t>(wanted);
    const CLINT32 result = m_library->Read(m_port, m_piece.data(), &count, timeoutMs);
    if (result >= 0) {
        const std::size_t received = std::min<std::size_t>(count, wanted);
        m_received.insert(m_received.end(), m_piece.begin(), m_piece.begin() + static_cast<std::ptrdiff_t>(received));
    }
    return result;
}

/**
 * \brief Write bytes
 * \param[in] buffer The bytes
 * \param[in,out] bufferSize Their number; afterwards of those that were written
 * \param[in] serialTimeout Milliseconds until all must be written
 * \return 0, -10004 when they are not written in time, or another error of the library
 */
CLINT32 SerialConnection::clSerialWrite(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) noexcept {
    if (bufferSize == nullptr || (buffer == nullptr && *bufferSize != 0))
        return CL_ERR_INVALID_PTR;
    return Guarded("clSerialWrite", [&]() -> CLINT32 {
        const CLUINT32 wanted = std::exchange(*bufferSize, 0);
        m_evidence = LineEvidence::kSilent;
        return WriteAll(buffer, wanted, *bufferSize, serialTimeout);
    });
}

CLINT32 SerialConnection::WriteAll(CLINT8* buffer, CLUINT32 wanted, CLUINT32& written, CLUINT32 timeoutMs) {
    const Deadline deadline(timeoutMs);
    for (CLUINT32 remaining = timeoutMs; written < wanted; remaining = deadline.Remaining()) {
        const CLUINT32 rest = wanted - written;
        CLUINT32 count = rest;
        const CLINT32 result = m_library->Write(m_port, buffer + written, &count, remaining);
        // Some libraries say how many bytes a write took that timed out: those must not be sent again.
        const bool isPartial = result == CL_ERR_TIMEOUT && count < rest;
        if (result < 0 && !isPartial)
            return result;
        written += std::min(count, rest);
        const CLUINT32 left = deadline.Remaining();
        if (written < wanted && (left == 0 || (isPartial && left <= kEarlyMs)))
            return CL_ERR_TIMEOUT;
        if (count == 0)
            std::this_thread::sleep_for(kPause);
    }
    return CL_ERR_NO_ERR;
}

/// The rates that the library claims, without those that the port has refused since the library was loaded.
CLINT32 SerialConnection::clGetSupportedBaudRates(CLUINT32* baudRates) noexcept {
    if (baudRates == nullptr)
        return CL_ERR_INVALID_PTR;
    return Guarded("clGetSupportedBaudRates", [&] {
        const CLINT32 result = m_library->GetSupportedBaudRates(m_port, baudRates);
        if (result >= 0)
            *baudRates &= ~m_library->Refused().Of(m_index);
        return result;
    });
}

/// Sets the rate; what came in at the rate before is forgotten.
CLINT32 SerialConnection::clSetBaudRate(CLUINT32 baudRate) noexcept {
    return Guarded("clSetBaudRate", [&] {
        const CLINT32 result = SetRate(baudRate);
        if (result >= 0)
            m_received.clear();
        return result;
    });
}

// What a library claims of its rates is not believed once it has refused one.
CLINT32 SerialConnection::SetRate(CLUINT32 flag) {
    const CLINT32 result = m_library->SetBaudRate(m_port, flag);
    CLUINT32 claimed = 0;
    if (result == CL_ERR_BAUD_RATE_NOT_SUPPORTED && m_library->GetSupportedBaudRates(m_port, &claimed) >= 0 &&
        (claimed & flag) != 0) {
        m_library->Refused().Note(m_index, flag);
        Log(CLP_LOG_WARN, "'%s' claims a baud rate and refuses it (flag 0x%x): it is left out from now on",
            m_library->Path(), flag);
    }
    return result;
}

}  // namespace CLProtocol
