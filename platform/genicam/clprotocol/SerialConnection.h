/* SPDX-License-Identifier: Apache-2.0 */
/*
 * An open serial port, as a driver uses it
 */
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "CLProtocol/ISerial.h"
#include "Failures.h"
#include "SerialLibrary.h"
#include "os/LockName.h"

namespace CLProtocol {

class SerialConnection final : public ISerial {
public:
    SerialConnection(std::shared_ptr<const SerialLibrary> library, std::uint32_t index, const std::string& portId);
    ~SerialConnection();

    CLINT32 clSerialRead(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) noexcept override;
    CLINT32 clSerialWrite(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) noexcept override;
    CLINT32 clGetSupportedBaudRates(CLUINT32* baudRates) noexcept override;
    CLINT32 clSetBaudRate(CLUINT32 baudRate) noexcept override;

    const SerialLibrary& Library() const noexcept { return *m_library; }
    std::string TakeCause();
    void WatchAnew();
    LineEvidence Evidence();

private:
    template <class Operation>
    CLINT32 Guarded(const char* function, Operation operation) noexcept;
    void NoteFailure(const char* function, CLINT32 result) noexcept;
    CLINT32 FillBuffer(std::size_t wanted, CLUINT32 timeoutMs);
    CLINT32 ReadPiece(std::size_t wanted, CLUINT32 timeoutMs);
    CLINT32 WriteAll(CLINT8* buffer, CLUINT32 wanted, CLUINT32& written, CLUINT32 timeoutMs);

    CLINT32 SetRate(CLUINT32 flag);

    const std::shared_ptr<const SerialLibrary> m_library;
    const std::uint32_t m_index;
    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "serial connection"};
    std::vector<char> m_received;  // what has come in and was not asked for completely yet
    std::vector<char> m_piece;
    std::string m_cause;  // why the last call failed, as the library says
    LineEvidence m_evidence = LineEvidence::kUnused;
    hSerRef m_port = nullptr;
};

}  // namespace CLProtocol
